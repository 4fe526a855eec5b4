#include "packer/jvm/JvmFileText.h"

#include <algorithm>

#include "packer/Text.h"
#include "packer/WrittenText.h"
#include "packer/jvm/JavaRange.h"

namespace vessant {
namespace {

constexpr std::string_view kModuleCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.";

/// How every Java takes its class path and its properties.
constexpr std::string_view kSwitches =
    "CLASSPATH: \"-classpath \"\n"
    "CLASSPATH_SEPARATOR: \":\"\n"
    "SYSTEM: \"-D\"\n"
    "SYSTEM_SEPARATOR: \"=\"\n";

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
