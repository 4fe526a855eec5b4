#include "packer/check/PropertyCheck.h"

#include <algorithm>
#include <string_view>

#include "launcher/base/TextUtil.h"
#include "packer/Nearest.h"
#include "packer/Text.h"
#include "packer/check/NumberCheck.h"

namespace vessant {
namespace {

constexpr std::string_view kComputed = "vessant.";
constexpr std::string_view kNameCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
constexpr std::string_view kPrefixMark = "...";

class PropertyCheck {
 public:
  PropertyCheck(const std::string& file, const TextValue& value, Findings& findings)
      : file_(file), line_(value.line), property_(value.text), findings_(findings) {}

  void run();

 private:
  [[nodiscard]] bool hasForeignOperator() const;
  void checkName();
  void checkValue();
  void checkVersion();
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
  if (bad == std::string::npos) return;
  error(quotedName(name_) + " is no name of a property: it goes into a shell command as it stands");
}

void PropertyCheck::checkValue() {
  if (value_.ends_with("*") || value_.ends_with("+")) {
    return error("nothing stands for \"any\" or \"or newer\": write a prefix as " +
                 quotedName(value_.substr(0, value_.size() - 1) + "...") +
                 ", and a version or newer as vessant.java.min.17=true");
  }
  if (value_ == kPrefixMark) error("every value begins with nothing: remove this property");
  checkVersion();
  if (name_.starts_with(kComputed)) checkComputed();
}

/// The specification version is a bare number, and until 8 it was called 1.8.
void PropertyCheck::checkVersion() {
  constexpr std::int64_t kFirstBareVersion = 9;
  const std::optional<std::int64_t> number = wholeNumber(value_);
  if (name_ == "java.version" && number) {
    return findings_.warning(file_, line_, "bad-property",
                             "only the very first release of Java " + value_ + " says just " +
                                 value_ + ": write java.specification.version=" + value_);
  }
  if (name_ != "java.specification.version" || value_.ends_with(kPrefixMark)) return;
  if (number && *number < kFirstBareVersion) {
    return error("Java " + value_ + " calls its specification 1." + value_);
  }
  const bool isOld = value_.starts_with("1.") && wholeNumber(value_.substr(2));
  if (!number && !isOld) {
    error("no Java has the specification version " + quotedName(value_) +
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

}  // namespace

void checkProperties(const TagText& jvmFile, Findings& findings) {
  for (const TextValue& value : jvmFile.valuesOf("JVM_PROPERTIES")) {
    PropertyCheck(jvmFile.file(), value, findings).run();
  }
}

}  // namespace vessant
