#include "packer/check/JavaCommand.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::array<std::string_view, 3> kClassPathOptions = {"-cp", "-classpath", "--class-path"};
/// Options whose value is the next word.
constexpr std::array<std::string_view, 9> kOptionsWithValue = {
    "-p",          "--upgrade-module-path", "--add-modules",  "--add-exports", "--add-opens",
    "--add-reads", "--limit-modules",       "--patch-module", "--source"};

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count>& options, const std::string& word) {
  return std::find(options.begin(), options.end(), word) != options.end();
}

bool hasPath(const std::string& text) {
  return text.find(kPathBegin) != std::string::npos;
}

/// Java takes a class name with slashes, too.
std::string withDots(std::string name) {
  std::replace(name.begin(), name.end(), '/', '.');
  return name;
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  std::size_t end = separator.empty() ? std::string::npos : text.find(separator);
  while (end != std::string::npos) {
    parts.push_back(text.substr(start, end - start));
    start = end + separator.size();
    end = text.find(separator, start);
  }
  parts.push_back(text.substr(start));
  return parts;
}

/// A class of the same simple name, which the author may have meant.
std::string sameSimpleName(const JarFile& jar, const std::string& className) {
  const std::string simple = className.substr(className.rfind('.') + 1) + ".class";
  std::string best;
  for (const std::string& name : jar.names) {
    const bool isSame = name == simple || name.ends_with("/" + simple);
    if (isSame && (best.empty() || name < best)) best = name;
  }
  if (best.empty()) return "";
  return "; did you mean \"" + withDots(best.substr(0, best.size() - 6)) + "\"?";
}

/// The words behind the Java program, up to the end of its command.
std::vector<ShellWord> argumentsOfJava(const ShellReading& command, const std::string& executable) {
  const auto isJava = [&executable](const ShellWord& word) {
    return !executable.empty() && word.text.ends_with("/" + executable);
  };
  const auto isOperator = [](const ShellWord& word) { return word.isOperator; };
  const auto java = std::find_if(command.words.begin(), command.words.end(), isJava);
  if (java == command.words.end()) return {};
  return {java + 1, std::find_if(java, command.words.end(), isOperator)};
}

std::size_t placeBehindJava(const ShellReading& command, const std::string& executable) {
  const std::size_t count = argumentsOfJava(command, executable).size();
  for (std::size_t i = 0; i < command.words.size(); ++i) {
    if (!executable.empty() && command.words[i].text.ends_with("/" + executable)) {
      return i + 1 + count;
    }
  }
  return command.words.size();
}

bool isClassPathOption(const ShellWord& word) {
  return !word.isOperator && isOneOf(kClassPathOptions, word.text);
}

/// Words in front of the program that a shell or a helper reads.
bool precedesProgram(const std::string& word) {
  const std::size_t equals = word.find('=');
  const bool isSetting =
      equals != std::string::npos && equals > 0 && word.find_first_of(" /'\"") > equals;
  return isSetting || word == "exec" || word == "env" || word == "nohup";
}

/// Why the shell cannot start this program; empty when it can, or when that cannot be told.
std::string whyProgramFails(const std::string& word, const std::string& executable) {
  constexpr std::string_view kHomeTag = "\x01tag JVM_HOME\x02";
  if (word.starts_with('\'') || word.starts_with('"')) {
    return "the program's path holds a quote: one pair of quotes is too many";
  }
  if (word == executable && word.find('/') != std::string::npos) {
    return quotedName(word) + " lies in a Java home: write '@JVM_HOME@/@JVM_EXE@'";
  }
  const bool isNamed = !executable.empty() && word.ends_with("/" + executable);
  if (!isNamed && (word.ends_with("/javaw") || word.ends_with(".exe"))) {
    return "Linux knows Java as bin/java: write '@JVM_HOME@/@JVM_EXE@'";
  }
  if (!word.starts_with(kHomeTag)) return "";
  const std::string_view rest = std::string_view(word).substr(kHomeTag.size());
  if (rest.empty()) return "@JVM_HOME@ is a directory: write '@JVM_HOME@/@JVM_EXE@'";
  if (rest.front() == '/') return "";
  return "a slash must stand behind @JVM_HOME@: write '@JVM_HOME@/@JVM_EXE@'";
}

void addProgramFlaws(const ShellReading& command, const std::string& executable,
                     std::vector<CommandFlaw>& flaws) {
  bool isProgram = true;
  for (const ShellWord& word : command.words) {
    const bool isRedirection = word.text == "<" || word.text == ">";
    if (word.isOperator && !isRedirection) isProgram = true;
    if (word.isOperator || !isProgram || precedesProgram(word.text)) continue;
    isProgram = false;
    const std::string reason = whyProgramFails(word.text, executable);
    if (!reason.empty()) flaws.push_back({"bad-program", Severity::Error, reason});
  }
}

/// A class path option takes the next word, whatever that is.
void addSwitchFlaws(const std::vector<ShellWord>& words, std::vector<CommandFlaw>& flaws) {
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (!isClassPathOption(words[i]) || !words[i + 1].text.starts_with('-')) continue;
    flaws.push_back({"doubled-switch", Severity::Error,
                     words[i].text + " is followed by " + quotedName(words[i + 1].text) +
                         ": %CP%() writes the switch itself"});
  }
}

/// The launcher appends the user's arguments to the whole command, so they reach its last program.
void addArgumentFlaws(const ShellReading& command, std::size_t behindJava,
                      std::vector<CommandFlaw>& flaws) {
  for (std::size_t i = std::max<std::size_t>(1, behindJava); i < command.words.size(); ++i) {
    const ShellWord& word = command.words[i];
    const std::string& before = command.words[i - 1].text;
    const bool isDescriptor = word.text == "&" && (before == ">" || before == "<");  // 2>&1
    const bool isEnd = word.isOperator && !isDescriptor &&
                       std::string_view(";&|").find(word.text) != std::string::npos;
    if (!isEnd) continue;
    const bool isDouble = i + 1 < command.words.size() && command.words[i + 1].isOperator;
    const bool isBackground = word.text == "&" && !isDouble;
    flaws.push_back({"lost-arguments", isBackground ? Severity::Error : Severity::Warning,
                     "the user's arguments follow the whole command, so what stands behind " +
                         quotedName(word.text) + " gets them and not the program"});
    return;
  }
}

/// How a Windows script hands arguments on.
void addMarkFlaws(const ShellReading& command, std::vector<CommandFlaw>& flaws) {
  for (const ShellWord& word : command.words) {
    const bool isMark = word.text.size() == 2 && word.text.front() == '%' &&
                        std::string_view("*123456789").find(word.text.back()) != std::string::npos;
    if (!isMark) continue;
    flaws.push_back({"lone-mark", Severity::Error,
                     quotedName(word.text) +
                         " reaches the program as it stands: remove it, the user's arguments "
                         "follow the command by themselves"});
  }
}

std::string whyJarFails(const JarFile* jar) {
  if (jar == nullptr || !jar->isZip()) return "";
  if (jar->mainClass.empty()) return "the manifest of the jar names no Main-Class";
  if (!jar->classPath.empty() || jar->holdsClass(jar->mainClass)) return "";
  return "the jar has no class " + quotedName(jar->mainClass) + ", which its manifest names" +
         sameSimpleName(*jar, jar->mainClass);
}

}  // namespace

std::vector<CommandFlaw> flawsOf(const ShellReading& command, const std::string& executable) {
  std::vector<CommandFlaw> flaws;
  addProgramFlaws(command, executable, flaws);
  addSwitchFlaws(argumentsOfJava(command, executable), flaws);
  addArgumentFlaws(command, placeBehindJava(command, executable), flaws);
  addMarkFlaws(command, flaws);
  return flaws;
}

JavaStart readJavaStart(const ShellReading& command, const std::string& executable) {
  const std::vector<ShellWord> words = argumentsOfJava(command, executable);
  JavaStart start;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& text = words[i].text;
    const bool hasNext = i + 1 < words.size();
    if (text == "-jar") return {hasNext, "", hasNext ? words[i + 1].text : ""};
    if (isOneOf(kClassPathOptions, text) && hasNext) start.classPath = words[i + 1].text;
    if (isOneOf(kClassPathOptions, text) || isOneOf(kOptionsWithValue, text)) ++i;
    if (text.starts_with("-m") || text.starts_with("--module")) return {};
    if (text.starts_with('-')) continue;
    start.isKnown = !words[i].isComputed && !text.starts_with('@') && !hasPath(text);
    start.mainClass = withDots(text);
    start.hasLatePath =
        std::any_of(words.begin() + static_cast<std::ptrdiff_t>(i), words.end(), isClassPathOption);
    return start;
  }
  const bool isPlain = std::none_of(words.begin(), words.end(),
                                    [](const ShellWord& word) { return word.isComputed; });
  start.isNothing = isPlain && !words.empty();
  return start;
}

std::string whyStartFails(const JavaStart& start, const std::string& separator,
                          const JarOfEntry& jarOfEntry) {
  if (start.isNothing) {
    return "there is no class to start: Java would take the user's first argument for one";
  }
  if (!start.isKnown) return "";
  if (start.hasLatePath && start.classPath.empty()) {
    return "the class path stands behind the class " + quotedName(start.mainClass) +
           ", where it is an argument of the program: put it in front";
  }
  if (start.mainClass.empty()) return whyJarFails(jarOfEntry(start.classPath));
  std::string hint;
  bool hasJar = false;
  for (const std::string& entry : split(start.classPath, separator)) {
    if (entry.empty()) continue;
    const JarFile* jar = jarOfEntry(entry);
    const bool isAll = jar != nullptr && jar->isZip() && jar->classPath.empty();
    if (!isAll || jar->holdsClass(start.mainClass)) return "";
    hasJar = true;
    if (hint.empty()) hint = sameSimpleName(*jar, start.mainClass);
  }
  if (!hasJar) return "";
  return "no packed jar has the class " + quotedName(start.mainClass) + hint;
}

}  // namespace vessant
