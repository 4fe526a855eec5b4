#include "packer/check/PropertyCheck.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <string_view>

#include "launcher/base/TextUtil.h"
#include "packer/Text.h"
#include "packer/check/Statement.h"

namespace vessant {
namespace {

constexpr std::string_view kComputed = "vessant.";
constexpr std::string_view kNameCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
constexpr std::string_view kPrefixMark = "...";
constexpr std::string_view kMinVersion = "vessant.java.min.";
constexpr std::string_view kMaxVersion = "vessant.java.max.";

// The properties that every Java has (System.getProperties) and those that OpenJDK's add: what is
// nearly one of them is a slip.
constexpr std::array<std::string_view, 36> kUsualNames = {"java.version",
                                                          "java.version.date",
                                                          "java.vendor",
                                                          "java.vendor.url",
                                                          "java.vendor.version",
                                                          "java.home",
                                                          "java.class.path",
                                                          "java.class.version",
                                                          "java.library.path",
                                                          "java.io.tmpdir",
                                                          "java.compiler",
                                                          "java.vm.name",
                                                          "java.vm.vendor",
                                                          "java.vm.version",
                                                          "java.vm.info",
                                                          "java.vm.specification.name",
                                                          "java.vm.specification.vendor",
                                                          "java.vm.specification.version",
                                                          "java.runtime.name",
                                                          "java.runtime.version",
                                                          "java.specification.name",
                                                          "java.specification.vendor",
                                                          "java.specification.version",
                                                          "os.name",
                                                          "os.arch",
                                                          "os.version",
                                                          "user.name",
                                                          "user.home",
                                                          "user.dir",
                                                          "file.encoding",
                                                          "file.separator",
                                                          "path.separator",
                                                          "line.separator",
                                                          "sun.arch.data.model",
                                                          "sun.cpu.endian",
                                                          "native.encoding"};

/// What others call a machine, and what Java on Linux does.
struct MachineName {
  std::string_view others;
  std::string_view java;
};
constexpr MachineName kMachineNames[] = {
    {"x86_64", "amd64"},  {"x64", "amd64"},  {"x86-64", "amd64"},   {"arm64", "aarch64"},
    {"armv8", "aarch64"}, {"x86", "i386"},   {"i686", "i386"},      {"i586", "i386"},
    {"armhf", "arm"},     {"armv7l", "arm"}, {"ppc64el", "ppc64le"}};

class PropertyCheck {
 public:
  PropertyCheck(const std::string& file, const TextValue& value, Findings& findings)
      : file_(file), line_(value.line), property_(value.text), findings_(findings) {}

  void run();

 private:
  [[nodiscard]] bool hasForeignOperator() const;
  void checkName();
  void checkSpelling();
  void checkValue();
  void checkVersion();
  void checkSystem();
  void checkComputed();
  void checkComputedVersion(const std::string& number);
  void error(const std::string& text) { findings_.error(file_, line_, "bad-property", text); }

  const std::string& file_;
  int line_;
  const std::string& property_;
  Findings& findings_;
  std::string name_;
  std::string value_;
};

void PropertyCheck::run() {
  if (hasForeignOperator()) {
    return error(
        "only \"name=value\" can be said of a property, and \"name=value...\" for a "
        "prefix; a range of Java versions is vessant.java.min.17=true and "
        "vessant.java.max.21=true");
  }
  const std::size_t equals = property_.find('=');
  if (equals == std::string::npos) {
    return error("there is no \"=\" in " + quotedName(property_) +
                 ", so it is not looked at: write name=value");
  }
  name_ = str(trimmed(sstr(property_.substr(0, equals))));
  value_ = str(trimmed(sstr(property_.substr(equals + 1))));
  checkName();
  checkValue();
}

bool PropertyCheck::hasForeignOperator() const {
  const std::size_t operation = property_.find_first_of("=<>~!");
  if (operation == std::string::npos) return false;
  const bool isForeign = property_[operation] != '=';
  const char next = operation + 1 < property_.size() ? property_[operation + 1] : ' ';
  return isForeign || std::string_view("=<>~").find(next) != std::string_view::npos;
}

void PropertyCheck::checkName() {
  if (name_.empty()) return error("there is no name in front of the \"=\"");
  const std::size_t bad = name_.find_first_not_of(kNameCharacters);
  if (bad == std::string::npos) return checkSpelling();
  error(quotedName(name_) + " is no name of a property: it goes into a shell command as it stands");
}

/// A name that is one or two letters off a usual one. Others may be anybody's own.
void PropertyCheck::checkSpelling() {
  constexpr int kSlip = 2;
  const auto isSlip = [this](std::string_view usual) {
    const int distance = editDistance(name_, usual);
    return distance <= kSlip && name_ != usual;
  };
  if (std::find(kUsualNames.begin(), kUsualNames.end(), name_) != kUsualNames.end()) return;
  const auto meant = std::find_if(kUsualNames.begin(), kUsualNames.end(), isSlip);
  if (meant == kUsualNames.end()) return;
  error("no Java knows " + quotedName(name_) + "; did you mean \"" + std::string(*meant) + "\"?");
}

/// What Java says of a Linux system.
void PropertyCheck::checkSystem() {
  if (name_ == "os.arch") {
    for (const MachineName& name : kMachineNames) {
      if (value_ != name.others) continue;
      error("Java calls the machine " + quotedName(value_) + " " + quotedName(name.java));
    }
  }
  const bool isPrefix = value_.ends_with(kPrefixMark);
  const std::string start = value_.substr(0, value_.size() - (isPrefix ? kPrefixMark.size() : 0));
  const bool isLinux =
      value_ == "Linux" || (isPrefix && std::string_view("Linux").starts_with(start));
  if (name_ == "os.name" && !isLinux) error("os.name is \"Linux\" wherever the launcher runs");
  const bool isWidth = value_ == "32" || value_ == "64";
  if (name_ == "sun.arch.data.model" && !isWidth) error(name_ + " is 32 or 64");
}

void PropertyCheck::checkValue() {
  if (value_.ends_with("*") || value_.ends_with("+")) {
    return error("nothing stands for \"any\" or \"or newer\": write a prefix as " +
                 quotedName(value_.substr(0, value_.size() - 1) + "...") +
                 ", and a version or newer as vessant.java.min.17=true");
  }
  if (value_ == kPrefixMark) error("every value begins with nothing: remove this property");
  checkVersion();
  checkSystem();
  if (name_.starts_with(kComputed)) checkComputed();
}

/// The value of java.specification.version is a bare number; that of Java 8 and older ones is 1.8
/// and the like.
void PropertyCheck::checkVersion() {
  constexpr std::int64_t kFirstBareVersion = 9;
  const std::size_t dash = value_.find('-');
  const bool isRange = dash != std::string::npos && wholeNumber(value_.substr(0, dash)) &&
                       wholeNumber(value_.substr(dash + 1));
  if (isRange && name_ == "java.version") {
    return error("a range of versions is vessant.java.min." + value_.substr(0, dash) +
                 "=true and vessant.java.max." + value_.substr(dash + 1) + "=true");
  }
  const std::optional<std::int64_t> number = wholeNumber(value_);
  if (name_ == "java.version" && number) {
    return findings_.warning(file_, line_, "bad-property",
                             "only the very first release of Java " + value_ + " says just " +
                                 value_ + ": write java.specification.version=" + value_);
  }
  if (name_ != "java.specification.version" || value_.ends_with(kPrefixMark)) return;
  if (number && *number < kFirstBareVersion) {
    return error("the java.specification.version of Java " + value_ + " is 1." + value_);
  }
  const bool isOld = value_.starts_with("1.") && wholeNumber(value_.substr(2));
  if (!number && !isOld) {
    error("no Java has the java.specification.version " + quotedName(value_) +
          ": it is a number, such as 17; for a range write vessant.java.min.17=true");
  }
}

/// The properties that the verification class works out.
void PropertyCheck::checkComputed() {
  const std::string rest = name_.substr(kComputed.size());
  if (rest == "bits") {
    if (value_ != "32" && value_ != "64") error(name_ + " is 32 or 64");
    return;
  }
  const bool isVersion = rest.starts_with("java.min.") || rest.starts_with("java.max.");
  const bool isModule = rest.starts_with("module.") && rest.size() > 7;
  if (!isVersion && !isModule && rest != "jdk") {
    return error("the verification class does not know " + quotedName(name_) +
                 ": it knows vessant.java.min.N, vessant.java.max.N, vessant.jdk, "
                 "vessant.module.NAME and vessant.bits");
  }
  if (value_ != "true" && value_ != "false") return error(name_ + " is true or false");
  if (isVersion) checkComputedVersion(rest.substr(9));
}

void PropertyCheck::checkComputedVersion(const std::string& number) {
  const std::optional<std::int64_t> version = wholeNumber(number);
  if (version && *version > 0) return;
  error(quotedName(number) + " is no feature version of Java: write 8 for 1.8, 17 for 17.0.2");
}

/// Which versions the computed properties of a file leave.
struct WantedRange {
  std::int64_t min = 0;
  std::int64_t max = std::numeric_limits<std::int64_t>::max();
};

/// Properties that each may be right and that no Java has together.
class ContradictionCheck {
 public:
  ContradictionCheck(const std::string& file, Findings& findings)
      : file_(file), findings_(findings) {}

  void add(const TextValue& property);

 private:
  void addVersion(const TextValue& property, const std::string& name);
  void error(const TextValue& property, const std::string& text) {
    findings_.error(file_, property.line, "bad-property", text);
  }

  const std::string& file_;
  Findings& findings_;
  std::map<std::string, std::string> values_;
  WantedRange range_;
};

/// Whether one text can be what both values ask for.
bool areCompatible(const std::string& a, const std::string& b) {
  const auto prefixOf = [](const std::string& value) {
    return value.ends_with(kPrefixMark) ? value.substr(0, value.size() - kPrefixMark.size())
                                        : value;
  };
  if (a == b) return true;
  return (a.ends_with(kPrefixMark) && prefixOf(b).starts_with(prefixOf(a))) ||
         (b.ends_with(kPrefixMark) && prefixOf(a).starts_with(prefixOf(b)));
}

void ContradictionCheck::add(const TextValue& property) {
  const std::size_t equals = property.text.find('=');
  if (equals == std::string::npos) return;
  const std::string name = str(trimmed(sstr(property.text.substr(0, equals))));
  const std::string value = str(trimmed(sstr(property.text.substr(equals + 1))));
  const auto [known, isNew] = values_.try_emplace(name, value);
  if (!isNew && !areCompatible(known->second, value)) {
    return error(property, "no Java has both " + quotedName(known->second) + " and " +
                               quotedName(value) + " for " + printable(name) +
                               ": every property must be right, so write a JVM file for each");
  }
  if (value == "true") addVersion(property, name);
}

void ContradictionCheck::addVersion(const TextValue& property, const std::string& name) {
  const bool isMin = name.starts_with(kMinVersion);
  if (!isMin && !name.starts_with(kMaxVersion)) return;
  const std::optional<std::int64_t> version = wholeNumber(name.substr(kMinVersion.size()));
  if (!version) return;
  if (isMin) range_.min = std::max(range_.min, *version);
  if (!isMin) range_.max = std::min(range_.max, *version);
  if (range_.min <= range_.max) return;
  error(property, "no Java is " + std::to_string(range_.min) + " or newer and " +
                      std::to_string(range_.max) + " or older");
}

}  // namespace

void checkProperties(const TagText& jvmFile, Findings& findings) {
  ContradictionCheck contradictions(jvmFile.file(), findings);
  for (const TextValue& value : jvmFile.valuesOf("JVM_PROPERTIES")) {
    PropertyCheck(jvmFile.file(), value, findings).run();
    contradictions.add(value);
  }
}

}  // namespace vessant
