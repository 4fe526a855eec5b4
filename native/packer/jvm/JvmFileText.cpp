#include "packer/jvm/JvmFileText.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <span>

#include "packer/Text.h"
#include "packer/WrittenText.h"

namespace vessant {
namespace {

// The versions that are still looked after and so lie on people's machines. What else a machine
// has is found through JAVA_HOME and PATH.
constexpr int kInUse[] = {27, 26, 25, 21, 17, 11, 8};

/// Stands for the feature version in the names below.
constexpr char kVersionMark = '*';

constexpr std::string_view kHomeVariables[] = {"JAVA_HOME", "JDK_HOME", "JRE_HOME"};

// Set by the images of build services, and by the people who imitate them.
constexpr std::string_view kVersionVariables[] = {
    "JAVA_HOME_*_X64",
    "JAVA_HOME_*_ARM64",
    "JAVA_HOME_*",
};

constexpr std::string_view kAnyVersion[] = {
    "jre",
    // What the administrator chose: Debian, Arch, Fedora, SUSE, Oracle.
    "/usr/lib/jvm/default-java",
    "/usr/lib/jvm/default-runtime",
    "/usr/lib/jvm/default",
    "/usr/lib/jvm/java",
    "/usr/lib/jvm/jre",
    "/usr/lib64/jvm/java",
    "/usr/lib64/jvm/jre",
    "/usr/java/default",
    "/usr/java/latest",
    // Images of containers, and by hand.
    "/opt/java/openjdk",
    "/opt/java",
    "/opt/jdk",
    "/opt/jre",
    "/usr/local/java",
};

constexpr std::string_view kEachVersion[] = {
    // Debian and Ubuntu.
    "/usr/lib/jvm/java-*-openjdk-amd64",
    "/usr/lib/jvm/java-*-openjdk-arm64",
    // Fedora, Arch, Alpine; SUSE.
    "/usr/lib/jvm/java-*-openjdk",
    "/usr/lib/jvm/jre-*-openjdk",
    "/usr/lib64/jvm/java-*-openjdk",
    "/usr/lib64/jvm/jre-*-openjdk",
    // Temurin, as deb and as rpm.
    "/usr/lib/jvm/temurin-*-jdk-amd64",
    "/usr/lib/jvm/temurin-*-jre-amd64",
    "/usr/lib/jvm/temurin-*-jdk-arm64",
    "/usr/lib/jvm/temurin-*-jre-arm64",
    "/usr/lib/jvm/temurin-*-jdk",
    "/usr/lib/jvm/temurin-*-jre",
    // Corretto.
    "/usr/lib/jvm/java-*-amazon-corretto",
    // Zulu.
    "/usr/lib/jvm/zulu-*-amd64",
    "/usr/lib/jvm/zulu-*-arm64",
    "/usr/lib/jvm/zulu-*",
    "/usr/lib/jvm/zulu*",
    // Liberica.
    "/usr/lib/jvm/bellsoft-java*-amd64",
    "/usr/lib/jvm/bellsoft-java*-aarch64",
    // GraalVM.
    "/usr/lib/jvm/java-*-graalvm",
    "/usr/lib64/graalvm/graalvm-java*",
    "/opt/graalvm-jdk-*",
    // Others' packages.
    "/usr/lib/jvm/msopenjdk-*-amd64",
    "/usr/lib/jvm/msopenjdk-*-arm64",
    "/usr/lib/jvm/sapmachine-*",
    "/usr/lib/jvm/ibm-semeru-open-*-jdk",
    "/usr/lib/jvm/ibm-semeru-open-*-jre",
    "/usr/lib/jvm/jdk-*-oracle-x64",
    "/usr/lib/jvm/jdk-*-oracle-aarch64",
    // By hand.
    "/usr/lib/jvm/jdk-*",
    "/usr/lib/jvm/openjdk-*",
    "/usr/java/jdk-*",
    "/usr/local/openjdk-*",
    "/opt/java/*",
    "/opt/java/jdk-*",
    "/opt/jdk-*",
};

// Java 8 is called 1.8 or 1.8.0 by some.
constexpr std::string_view kJava8[] = {
    "/usr/lib/jvm/java-1.8.0-openjdk",  "/usr/lib/jvm/jre-1.8.0-openjdk",
    "/usr/lib/jvm/java-1.8-openjdk",    "/usr/lib64/jvm/java-1.8.0-openjdk",
    "/usr/lib64/jvm/jre-1.8.0-openjdk", "/usr/lib/jvm/java-1.8.0-amazon-corretto",
    "/usr/java/jdk1.8-amd64",
};

std::string forVersion(std::string_view pattern, int version) {
  std::string name(pattern);
  name.replace(name.find(kVersionMark), 1, std::to_string(version));
  return name;
}

/// Those in use that lie in the range and its two ends, newest first.
std::vector<int> versionsOf(const JavaRange& range) {
  std::vector<int> versions = {range.min};
  if (range.max) versions.push_back(*range.max);
  for (const int version : kInUse) {
    if (version >= range.min && version <= range.max.value_or(version)) versions.push_back(version);
  }
  std::sort(versions.begin(), versions.end(), std::greater<>());
  versions.erase(std::unique(versions.begin(), versions.end()), versions.end());
  return versions;
}

void addEach(std::vector<std::string>& names, std::span<const std::string_view> patterns,
             const JavaRange& range) {
  for (const int version : versionsOf(range)) {
    for (const std::string_view pattern : patterns) names.push_back(forVersion(pattern, version));
  }
}

constexpr std::string_view kModuleCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.";

/// How every Java takes its class path and its properties.
constexpr std::string_view kSwitches =
    "CLASSPATH: \"-classpath \"\n"
    "CLASSPATH_SEPARATOR: \":\"\n"
    "SYSTEM: \"-D\"\n"
    "SYSTEM_SEPARATOR: \"=\"\n";

/// The name becomes a part of a property's name, and that a word of the command that verifies.
void checkModule(const std::string& name) {
  if (!name.empty() && name.find_first_not_of(kModuleCharacters) == std::string::npos) return;
  throw failure("\"" + name + "\" is no name of a module");
}

void checkVendor(const std::string& vendor) {
  const auto isControl = [](unsigned char c) { return c < ' '; };
  if (std::none_of(vendor.begin(), vendor.end(), isControl)) return;
  throw failure("the vendor must be one line of text");
}

std::vector<std::string> wantedProperties(const JavaWish& wish) {
  std::vector<std::string> wanted;
  wanted.push_back("vessant.java.min." + std::to_string(wish.range.min) + "=true");
  if (wish.range.max) {
    wanted.push_back("vessant.java.max." + std::to_string(*wish.range.max) + "=true");
  }
  if (wish.jdk) wanted.emplace_back("vessant.jdk=true");
  if (!wish.vendor.empty()) wanted.push_back("java.vendor=" + wish.vendor);
  for (const std::string& module : wish.modules) {
    wanted.push_back("vessant.module." + module + "=true");
  }
  return wanted;
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

}  // namespace

/// Only 1.8 keeps its old name: nothing older is accepted, and 9 was never called 1.9.
int parseJavaVersion(std::string_view text) {
  const std::string_view digits = text == "1.8" ? text.substr(2) : text;
  const char* end = digits.data() + digits.size();
  int version = 0;
  const auto [last, error] = std::from_chars(digits.data(), end, version);
  if (error != std::errc() || last != end || version > JavaRange::kLargest || version < 0) {
    throw failure("\"" + std::string(text) + "\" is no Java version such as 17");
  }
  if (version < JavaRange::kOldest) {
    throw failure("Java " + std::string(digits) +
                  " is too old: the verification class needs Java 8");
  }
  return version;
}

JavaRange parseJavaRange(std::string_view text) {
  const std::size_t dash = text.find('-');
  JavaRange range{.min = parseJavaVersion(text.substr(0, dash)), .max = std::nullopt};
  if (dash != std::string_view::npos) range.max = parseJavaVersion(text.substr(dash + 1));
  checkJavaRange(range);
  return range;
}

void checkJavaRange(const JavaRange& range) {
  if (!range.max || *range.max >= range.min) return;
  throw failure("there is no Java that is " + std::to_string(range.min) + " or newer and " +
                std::to_string(*range.max) + " or older");
}

std::string describe(const JavaRange& range) {
  std::string text = "Java " + std::to_string(range.min);
  if (!range.max) return text + " or newer";
  if (*range.max == range.min) return text;
  return text + " to " + std::to_string(*range.max);
}

std::vector<std::string> platformHints() {
  return {std::begin(kHomeVariables), std::end(kHomeVariables)};
}

std::vector<std::string> platformHints(const JavaRange& range) {
  std::vector<std::string> names = platformHints();
  addEach(names, kVersionVariables, range);
  return names;
}

std::vector<std::string> pathHints(const JavaRange& range) {
  std::vector<std::string> places(std::begin(kAnyVersion), std::end(kAnyVersion));
  addEach(places, kEachVersion, range);
  if (range.min == JavaRange::kOldest) {
    places.insert(places.end(), std::begin(kJava8), std::end(kJava8));
  }
  return places;
}

std::string describe(const JavaWish& wish) {
  std::string text = describe(wish.range);
  if (wish.jdk) text += " (JDK)";
  if (!wish.vendor.empty()) text += " of " + wish.vendor;
  if (!wish.modules.empty()) text += " with " + joined(wish.modules);
  return text;
}

std::string jvmFileText(const JavaWish& wish) {
  checkJavaRange(wish.range);
  checkVendor(wish.vendor);
  for (const std::string& module : wish.modules) checkModule(module);
  return tagLine("DESC", describe(wish)) + tagBlock("JVM_PROPERTIES", wantedProperties(wish)) +
         "JVM_EXE: bin/java\n" + tagBlock("PLATFORM_HINT", platformHints(wish.range)) +
         tagBlock("PATH_HINT", pathHints(wish.range)) + std::string(kSwitches);
}

std::string jvmFileText(const KnownJava& java) {
  std::vector<std::string> wanted;
  for (const auto& [name, value] : java.properties) wanted.push_back(name + "=" + value);
  std::string text = tagLine("DESC", java.description) + tagBlock("JVM_PROPERTIES", wanted) +
                     "JVM_EXE: bin/java\n";
  if (java.isLookedFor) {
    text += tagBlock("PLATFORM_HINT", platformHints()) + tagLine("PATH_HINT", java.home);
  }
  return text + tagLine("JVM_HOME", java.home) + std::string(kSwitches);
}

}  // namespace vessant
