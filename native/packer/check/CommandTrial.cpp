#include "packer/check/CommandTrial.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "launcher/base/Exceptions.h"
#include "launcher/launch/MacroFunctions.h"
#include "launcher/launch/MacroHandler.h"
#include "packer/Session.h"
#include "packer/Text.h"
#include "packer/check/ShellCommand.h"
#include "packer/check/TagRules.h"

namespace vessant {
namespace {

bool isWord(std::string_view name) {
  const auto isPart = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
  return !name.empty() && std::all_of(name.begin(), name.end(), isPart);
}

std::string pathMark(const std::string& what) {
  return kPathBegin + what + kPathEnd;
}

/// One expansion of one text for one delimiter.
class Trial final : public MacroHandler {
 public:
  Trial(const TrialWorld& world, const TagText& jvmFile, Findings& findings)
      : world_(world), jvmFile_(jvmFile), findings_(findings) {}
  Trial(const Trial&) = default;
  Trial& operator=(const Trial&) = delete;
  virtual ~Trial() = default;

  std::string expand(const std::string& text, char delimiter);
  TrialCommand run();

  void handleMacro(MacroText& text, char delimiter, SString::Size end) override;

 private:
  void handleFunction(MacroText& text, const std::string& name, SString::Size end);
  [[nodiscard]] bool readArguments(const MacroText& text, SString::Size& position,
                                   StringDeque& arguments);
  [[nodiscard]] std::string evaluate(const std::string& name, const StringDeque& arguments);
  [[nodiscard]] std::string systemTag(const char* tag, const char* usual) const;
  [[nodiscard]] std::string replaceAll(const StringDeque& arguments);
  [[nodiscard]] std::string ifExists(const StringDeque& arguments);
  [[nodiscard]] std::string applicationArchive(bool isEmbedded);
  [[nodiscard]] std::string classPath(const StringDeque& arguments);
  void append(std::string& path, const std::string& entry) const;
  [[nodiscard]] std::string tagValue(const std::string& name);
  [[nodiscard]] std::string environmentValue(const std::string& name) const;
  [[nodiscard]] bool isKnownTag(const std::string& name) const;
  [[nodiscard]] std::vector<std::string> allTags() const;
  void checkLoneMarks(const std::string& text, char delimiter);
  void error(const char* name, const std::string& text, const std::string& what = "");

  const TrialWorld& world_;
  const TagText& jvmFile_;
  Findings& findings_;
  TrialCommand result_;
  std::string uncollapsed_;
  bool inArchive_ = false;
};

TrialCommand Trial::run() {
  const TextValue* command = world_.launchScript.value("COMMAND");
  if (command == nullptr) return {};
  result_.text = command->meant;
  for (const char delimiter : {'%', '@', '#'}) result_.text = expand(result_.text, delimiter);
  return std::move(result_);
}

std::string Trial::expand(const std::string& text, char delimiter) {
  uncollapsed_ = text;
  try {
    std::string result = str(expandMacros(sstr(text), *this, delimiter));
    checkLoneMarks(uncollapsed_, delimiter);
    return result;
  } catch (const LauncherException& failure) {
    error("endless-macro", "a macro leads back to itself: " + str(failure.message()));
    return "";
  }
}

/// A macro whose name is no word was not meant as one: its opening mark goes, so that the marks
/// behind it find their partners again.
void Trial::handleMacro(MacroText& text, char delimiter, SString::Size end) {
  const std::string name = str(macroName(text, end));
  if (!isWord(name)) {
    const std::string mark(1, delimiter);
    error("lone-mark",
          "\"" + mark + "\" and the next one enclose " + quotedName(name) +
              ", which is no name: a \"" + mark + "\" is missing or too much",
          mark + name);
    text.replace(1, "");
  } else if (delimiter == '%') {
    handleFunction(text, name, end);
  } else {
    const std::string value = delimiter == '@' ? tagValue(name) : environmentValue(name);
    text.replace(end + 1, value);
  }
  uncollapsed_ = str(text.whole());
}

void Trial::handleFunction(MacroText& text, const std::string& name, SString::Size end) {
  const std::string call = "%" + name + "%";
  const MacroFunction* function = findMacroFunction(sstr(name));
  if (function == nullptr) {
    static const std::vector<std::string> names = {
        "REPLACE",   "RUNTIME_SYSTEMPROP", "RUNTIME_JAVAARGS", "SYSTEMPROP",          "CP",
        "IF_EXISTS", "LAUNCHER_FILE",      "LAUNCHER_DIR",     "APPLICATION_ARCHIVE", "TEMP_DIR"};
    error("unknown-function", "there is no function " + call + suggestion(name, names), call);
  }
  StringDeque arguments;
  SString::Size position = end + 1;
  const bool isRead = readArguments(text, position, arguments);
  const bool isGood = function != nullptr && isRead && function->accepts(arguments.count());
  if (function != nullptr && isRead && !isGood) {
    error("argument-count", str(SString(function->countMessage)), call);
  }
  text.replace(position, isGood ? evaluate(name, arguments) : "");
}

/// Leaves `position` behind what can be skipped.
bool Trial::readArguments(const MacroText& text, SString::Size& position, StringDeque& arguments) {
  const SString::Size start = position;
  NoLog log;
  try {
    parseFunctionArguments(text, position, arguments, log);
  } catch (const LauncherException& failure) {
    const std::string message = str(failure.message());
    const auto says = [&message](const char* words) {
      return message.find(words) != std::string::npos;
    };
    if (says("string arg")) {
      error("unquoted-argument", "arguments of a function stand in double quotes: " + message);
    } else if (says("parenthesis")) {
      error("missing-parenthesis", "a function is called as %NAME%(\"argument\", ...): " + message);
    } else {
      error("unclosed-quote", "the double quote of an argument is not closed: " + message);
    }
    position = start;
    result_.isBroken = true;
    return false;
  }
  if (position == SString::npos && !text.rest().ends_with(')')) {
    error("missing-parenthesis", "the closing parenthesis of the last function is missing");
  }
  return true;
}

std::string Trial::evaluate(const std::string& name, const StringDeque& arguments) {
  if (name == "REPLACE") return replaceAll(arguments);
  if (name == "IF_EXISTS") return ifExists(arguments);
  if (name == "CP") return classPath(arguments);
  if (name == "APPLICATION_ARCHIVE") return applicationArchive(arguments.isEmpty());
  if (name == "RUNTIME_SYSTEMPROP") return "";
  if (name == "RUNTIME_JAVAARGS") {
    const std::string required = jvmFile_.textOf("REQ_JAVA_ARGS");
    return required.empty() ? "" : " " + required;
  }
  if (name != "SYSTEMPROP") return pathMark("function " + name);
  result_.usesSystemProperties = true;
  return systemTag("SYSTEM", "-D") + str(arguments.get(0)) + systemTag("SYSTEM_SEPARATOR", "=") +
         Trial(*this).expand(str(arguments.get(1)), '@');
}

/// One that is missing is reported elsewhere.
std::string Trial::systemTag(const char* tag, const char* usual) const {
  return jvmFile_.find(tag) == nullptr ? usual : jvmFile_.textOf(tag);
}

/// The launcher goes on behind each replacement, so that none is replaced again.
std::string Trial::replaceAll(const StringDeque& arguments) {
  const std::string search = Trial(*this).expand(str(arguments.get(0)), '@');
  const std::string replacement = Trial(*this).expand(str(arguments.get(1)), '@');
  std::string subject = str(arguments.get(2));
  if (search.empty()) return subject;
  std::size_t position = subject.find(search);
  while (position != std::string::npos) {
    subject.replace(position, search.size(), replacement);
    position = subject.find(search, position + replacement.size());
  }
  return subject;
}

/// The home is the one tag that every JVM file has by the time of a launch: the search puts it in.
std::string Trial::ifExists(const StringDeque& arguments) {
  const std::string tag = str(arguments.get(0));
  if (!isKnownTag(tag)) {
    error("unknown-jvm-tag", "%IF_EXISTS% asks for " + quotedName(tag) + ", which no JVM file has" +
                                 suggestion(tag, allTags()));
  }
  const bool exists = tag == "JVM_HOME" || !jvmFile_.textOf(tag).empty();
  return exists ? Trial(*this).expand(str(arguments.get(1)), '@') : "";
}

/// Without an argument it is what was packed; with one, a copy of a file that only a run can find.
std::string Trial::applicationArchive(bool isEmbedded) {
  result_.usesApplicationArchive = result_.usesApplicationArchive || isEmbedded;
  if (isEmbedded && !world_.hasApplicationArchive) {
    error("missing-archive",
          "%APPLICATION_ARCHIVE%() is empty, since no file is packed as \"application\"");
  }
  return pathMark(isEmbedded ? kApplicationMark : "function APPLICATION_ARCHIVE");
}

/// In the launcher's order; the options of the user begin and end it, and are empty here.
std::string Trial::classPath(const StringDeque& arguments) {
  result_.usesClassPath = true;
  if (inArchive_) {
    error("archive-in-archive", "ARCHIVE is a part of the class path and cannot hold %CP%");
    return "";
  }
  std::string path = "\"\"";
  append(path, jvmFile_.textOf("JVM_CLASSPATH"));
  for (const SString& argument : arguments) append(path, str(argument));
  inArchive_ = true;
  const TextValue* archive = world_.launchScript.value("ARCHIVE");
  const std::string outer = uncollapsed_;
  if (archive != nullptr) append(path, expand(archive->meant, '%'));
  uncollapsed_ = outer;
  inArchive_ = false;
  for (const std::uint32_t id : world_.archives) {
    append(path, "\"" + pathMark(archiveMark(id)) + "\"");
  }
  append(path, "\"\"");
  if (jvmFile_.textOf("USE_CP_ENV_VAR") == "1") return "";
  return kClassPathBegin + jvmFile_.textOf("CLASSPATH") + path;
}

void Trial::append(std::string& path, const std::string& entry) const {
  if (!entry.empty()) path += jvmFile_.textOf("CLASSPATH_SEPARATOR") + entry;
}

/// A tag that another JVM file has is empty here, as it is for the launcher.
std::string Trial::tagValue(const std::string& name) {
  if (name == "JVM_HOME") return pathMark("tag JVM_HOME");
  if (!isKnownTag(name)) {
    const std::string macro = "@" + name + "@";
    error("unknown-jvm-tag", "no JVM file has a tag for " + macro + suggestion(name, allTags()),
          macro);
  }
  return jvmFile_.textOf(name);
}

/// Variables with these names hold paths; what others hold is anybody's guess.
std::string Trial::environmentValue(const std::string& name) const {
  const bool isPath = name.ends_with("HOME") || name.ends_with("DIR") || name == "PWD";
  return isPath ? pathMark("variable " + name) : std::string(1, kAnything);
}

bool Trial::isKnownTag(const std::string& name) const {
  return findTagRule(TextKind::JvmFile, name) != nullptr ||
         std::any_of(world_.jvmFiles.begin(), world_.jvmFiles.end(),
                     [&name](const TagText* file) { return file->find(name) != nullptr; });
}

std::vector<std::string> Trial::allTags() const {
  std::vector<std::string> names = tagNames(TextKind::JvmFile);
  for (const TagText* file : world_.jvmFiles) {
    for (const TextTag& tag : file->tags()) names.push_back(tag.name);
  }
  return names;
}

/// Doubled marks stand for one. A single one that begins a name was meant to begin a macro.
void Trial::checkLoneMarks(const std::string& text, char delimiter) {
  for (std::size_t i = text.find(delimiter); i != std::string::npos;
       i = text.find(delimiter, i + 1)) {
    const char next = i + 1 < text.size() ? text[i + 1] : ' ';
    if (next == delimiter) {
      ++i;
      continue;
    }
    const bool isName = std::isalpha(static_cast<unsigned char>(next)) != 0 || next == '_';
    if (!isName && delimiter != '@') continue;
    const std::string mark(1, delimiter);
    error("lone-mark", "this \"" + mark + "\" has no partner: write " + mark + "NAME" + mark +
                           ", or " + mark + mark + " for one \"" + mark +
                           "\": " + quotedName(text.substr(i, 20)));
  }
}

/// A mistake is reported where `what` stands, which may be a JVM file.
void Trial::error(const char* name, const std::string& text, const std::string& what) {
  const TagText& script = world_.launchScript;
  const auto holds = [&what](const TextValue& value) {
    return !what.empty() && value.meant.find(what) != std::string::npos;
  };
  for (const char* tag : {"COMMAND", "ARCHIVE"}) {
    const TextValue* value = script.value(tag);
    if (value != nullptr && holds(*value))
      return findings_.error(script.file(), value->line, name, text);
  }
  for (const TextTag& tag : jvmFile_.tags()) {
    const TextValue& value = tag.values.front();
    if (holds(value)) return findings_.error(jvmFile_.file(), value.line, name, text);
  }
  const TextValue* place = script.value(inArchive_ ? "ARCHIVE" : "COMMAND");
  findings_.error(script.file(), place->line, name, text);
}

}  // namespace

TrialCommand tryCommand(const TrialWorld& world, const TagText& jvmFile, Findings& findings) {
  return Trial(world, jvmFile, findings).run();
}

std::string archiveMark(std::uint32_t id) {
  return "archive " + std::to_string(id);
}

std::string writtenFormOf(const std::string& mark) {
  const std::string name = mark.substr(mark.find(' ') + 1);
  if (mark.starts_with("tag ")) return "@" + name + "@";
  if (mark.starts_with("variable ")) return "#" + name + "#";
  if (mark.starts_with("function ")) return "%" + name + "%()";
  return mark == kApplicationMark ? "%APPLICATION_ARCHIVE%()" : mark;
}

std::vector<std::string> macroTagsIn(std::string_view text) {
  constexpr std::string_view kQuestion = "%IF_EXISTS%(\"";
  std::vector<std::string> names;
  std::size_t open = text.find('@');
  while (open != std::string_view::npos) {
    const std::size_t close = text.find('@', open + 1);
    if (close == std::string_view::npos) break;
    const std::string_view name = text.substr(open + 1, close - open - 1);
    if (isWord(name)) names.emplace_back(name);
    open = isWord(name) ? text.find('@', close + 1) : close;
  }
  std::size_t question = text.find(kQuestion);
  while (question != std::string_view::npos) {
    const std::size_t start = question + kQuestion.size();
    names.emplace_back(text.substr(start, text.find('"', start) - start));
    question = text.find(kQuestion, start);
  }
  return names;
}

}  // namespace vessant
