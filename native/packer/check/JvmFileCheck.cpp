#include "packer/check/JvmFileCheck.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "packer/Text.h"
#include "packer/check/PropertyCheck.h"
#include "packer/check/TagCheck.h"

namespace vessant {
namespace {

/// As POSIX has it; the shell could not set another one.
bool isEnvironmentName(std::string_view name) {
  const auto isPart = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
  return !name.empty() && std::isdigit(static_cast<unsigned char>(name.front())) == 0 &&
         std::all_of(name.begin(), name.end(), isPart);
}

/// Programs of a JDK that people name by mistake, and Java's name on Windows.
bool isOtherProgram(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  return name == "javac" || name == "javaw" || name == "jar" || name == "javadoc";
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
  void checkSwitches();
  void checkRequiredArguments();
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
  checkSwitches();
  checkRequiredArguments();
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
  } else if (path.find_first_of(" \t") != std::string::npos) {
    error(*executable, "bad-executable",
          "JVM_EXE is a path and nothing else: options belong into REQ_JAVA_ARGS");
  } else if (isOtherProgram(path)) {
    error(*executable, "bad-executable", quotedName(path) + " starts no class: write bin/java");
  } else if (path.find('/') == std::string::npos) {
    findings_.warning(text_.file(), executable->line, "bad-executable",
                      "in a Java home the program is bin/java, and " + quotedName(path) +
                          " lies only in its directory bin");
  }
}

/// What Java on Linux takes in front of a class path and of a system property.
void JvmFileCheck::checkSwitches() {
  for (const char* name : {"CLASSPATH", "SYSTEM"}) {
    const TextValue* option = text_.value(name);
    if (option == nullptr || option->text.empty() || option->text.starts_with('-')) continue;
    error(*option, "bad-option",
          quotedName(option->text) + " is no option of Java: those begin with \"-\"");
  }
  const TextValue* separator = text_.value("SYSTEM_SEPARATOR");
  const bool isUsual = text_.textOf("SYSTEM") == "-D";
  if (isUsual && separator != nullptr && !separator->text.empty() && separator->text != "=") {
    error(
        *separator, "bad-separator",
        "Java separates a property from its value with \"=\", not " + quotedName(separator->text));
  }
}

/// The launcher puts them into the command of every verification, where a word that is no option
/// would be the class. A macro or a variable may become one.
void JvmFileCheck::checkRequiredArguments() {
  const TextValue* arguments = text_.value("REQ_JAVA_ARGS");
  if (arguments == nullptr || arguments->text.empty()) return;
  constexpr std::string_view kStarts = "-@%#$\"'";
  if (kStarts.find(arguments->text.front()) != std::string_view::npos) return;
  error(*arguments, "bad-option",
        "Java would take " + quotedName(arguments->text) +
            " for the class to start: options begin with \"-\"");
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

/// Hints are paths of directories as they stand: no shell reads them.
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
    if (equals != std::string::npos && isEnvironmentName(setting.text.substr(0, equals))) continue;
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
