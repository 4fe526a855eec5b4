#include "packer/check/JvmFileCheck.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "launcher/base/TextUtil.h"
#include "packer/Text.h"
#include "packer/check/Statement.h"
#include "packer/check/TagCheck.h"

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

/// The value of java.specification.version is a bare number; that of Java 8 and older ones is 1.8
/// and the like.
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

void checkProperties(const TagText& jvmFile, Findings& findings) {
  for (const TextValue& value : jvmFile.valuesOf("JVM_PROPERTIES")) {
    PropertyCheck(jvmFile.file(), value, findings).run();
  }
}

bool isEnvironmentName(std::string_view name) {
  const auto isPart = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
  return !name.empty() && std::isdigit(static_cast<unsigned char>(name.front())) == 0 &&
         std::all_of(name.begin(), name.end(), isPart);
}

bool looksLikeComment(std::string_view value) {
  return value.starts_with("#") || value.starts_with("//");
}

class JvmFileCheck {
 public:
  JvmFileCheck(const TagText& text, Findings& findings) : text_(text), findings_(findings) {}

  void run();

 private:
  void checkRequired();
  void checkExecutable();
  void checkClassPath();
  void checkPlatformHints();
  void checkPathHints();
  void checkPathHint(const TextValue& hint);
  void checkSettings();
  [[nodiscard]] bool isComment(const TextValue& value);
  void error(const TextValue& value, const char* name, const std::string& text) {
    findings_.error(text_.file(), value.line, name, text);
  }

  const TagText& text_;
  Findings& findings_;
};

void JvmFileCheck::run() {
  checkRequired();
  checkExecutable();
  checkClassPath();
  checkProperties(text_, findings_);
  checkPlatformHints();
  checkPathHints();
  checkSettings();
}

void JvmFileCheck::checkRequired() {
  requireTag(text_, "DESC", "which users see: \"Searching for Java 17\"", findings_);
  requireTag(text_, "JVM_EXE", "the path of the Java program in a Java home: bin/java", findings_);
  requireTag(text_, "JVM_PROPERTIES", "without which no JVM is ever accepted", findings_);
  const bool usesEnvironment = text_.textOf("USE_CP_ENV_VAR") == "1";
  if (usesEnvironment) {
    requireTag(text_, "CP_ENV_VAR", "the variable for the class path that USE_CP_ENV_VAR asks for",
               findings_);
  } else {
    requireTag(text_, "CLASSPATH", "the switch before the class path: \"-classpath \"", findings_);
  }
  requireTag(text_, "CLASSPATH_SEPARATOR", "what stands between class path entries: \":\"",
             findings_);
}

void JvmFileCheck::checkExecutable() {
  const TextValue* executable = text_.value("JVM_EXE");
  if (executable == nullptr) return;
  const std::string& path = executable->text;
  if (path.starts_with('/') || path.ends_with('/')) {
    error(*executable, "bad-executable",
          "JVM_EXE is a path inside a Java home, such as bin/java, not " + quotedName(path));
  } else if (path.find('\\') != std::string::npos || path.ends_with(".exe")) {
    error(*executable, "bad-executable", "write JVM_EXE as Linux does: bin/java");
  }
}

/// Blanks at an end are lost unless they stand in quotes.
void JvmFileCheck::checkClassPath() {
  const TextValue* separator = text_.value("CLASSPATH_SEPARATOR");
  if (separator != nullptr && !separator->text.empty() && separator->text != ":") {
    error(*separator, "bad-separator",
          "Java on Linux separates class path entries with \":\", not " +
              quotedName(separator->text));
  }
  const TextValue* option = text_.value("CLASSPATH");
  if (option == nullptr || !option->text.starts_with('-')) return;
  const char last = option->text.back();
  if (last == ' ' || last == '=' || last == ':') return;
  error(*option, "missing-blank",
        "the class path follows right behind " + quotedName(option->text) +
            ": put the blank between them in quotes: \"" + printable(option->text) + " \"");
}

bool JvmFileCheck::isComment(const TextValue& value) {
  if (!looksLikeComment(value.text)) return false;
  error(value, "no-comments", "there are no comments here: remove this line");
  return true;
}

void JvmFileCheck::checkPlatformHints() {
  for (const TextValue& hint : text_.valuesOf("PLATFORM_HINT")) {
    if (hint.text.empty() || isComment(hint) || isEnvironmentName(hint.text)) continue;
    error(hint, "bad-hint",
          "PLATFORM_HINT names an environment variable, such as JAVA_HOME, one a line, not " +
              quotedName(hint.text));
  }
}

void JvmFileCheck::checkPathHints() {
  for (const TextValue& hint : text_.valuesOf("PATH_HINT")) {
    if (!isComment(hint)) checkPathHint(hint);
  }
}

void JvmFileCheck::checkPathHint(const TextValue& hint) {
  const std::string& path = hint.text;
  const std::string executable = text_.textOf("JVM_EXE");
  if (path.starts_with('~') || path.find_first_of("$*?") != std::string::npos) {
    return error(hint, "bad-hint",
                 "PATH_HINT is taken as it stands, so nothing in " + quotedName(path) +
                     " is expanded: write out each path; PLATFORM_HINT names variables");
  }
  if (path.find('%') != std::string::npos) {
    return error(hint, "bad-hint", "a Java home with a percent sign is never tried");
  }
  if (path.find(':') != std::string::npos) {
    return error(hint, "bad-hint", "PATH_HINT has one path a line");
  }
  const bool isProgram = !executable.empty() && path.ends_with("/" + executable);
  if (isProgram || path.ends_with("/bin") || path.ends_with("/bin/")) {
    error(hint, "bad-hint",
          "PATH_HINT is a Java home, the directory that holds " +
              (executable.empty() ? "bin/java" : executable) + ", not " + quotedName(path));
  }
}

void JvmFileCheck::checkSettings() {
  for (const TextValue& setting : text_.valuesOf("SET_ENV_FOR_WIZARD")) {
    if (setting.text.empty() || isComment(setting)) continue;
    const std::size_t equals = setting.text.find('=');
    if (equals != std::string::npos && equals > 0) continue;
    error(setting, "bad-setting", "write NAME=value, not " + quotedName(setting.text));
  }
}

}  // namespace

bool isMessageFile(const TagText& jvmFile) {
  return jvmFile.isReadable() && jvmFile.find("JVM_EXE") == nullptr &&
         jvmFile.find("JVM_PROPERTIES") == nullptr;
}

void checkJvmFile(const TagText& jvmFile, bool isLaunched, Findings& findings) {
  if (!jvmFile.isReadable() || (isLaunched && isMessageFile(jvmFile))) return;
  JvmFileCheck(jvmFile, findings).run();
}

}  // namespace vessant
