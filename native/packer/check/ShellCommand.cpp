#include "packer/check/ShellCommand.h"

#include <algorithm>
#include <array>

#include "packer/Text.h"

namespace vessant {
namespace {

class ShellReader {
 public:
  explicit ShellReader(std::string_view command) : command_(command) {}

  ShellReading read();

 private:
  void readOutside(char character);
  void readQuoted(char character);
  void readMark(char mark);
  void take(char character);
  void endWord();
  [[nodiscard]] bool escapesInQuotes() const;

  std::string_view command_;
  std::size_t position_ = 0;
  ShellReading reading_;
  ShellWord word_;
  bool inWord_ = false;
  char quote_ = 0;
};

ShellReading ShellReader::read() {
  while (position_ < command_.size()) {
    const char character = command_[position_];
    if (character == kPathBegin || character == kClassPathBegin) {
      readMark(character);
    } else if (quote_ != 0) {
      readQuoted(character);
    } else if (character == '#' && !inWord_) {
      break;  // the rest is a comment
    } else {
      readOutside(character);
    }
    ++position_;
  }
  endWord();
  reading_.openQuote = quote_;
  return std::move(reading_);
}

void ShellReader::readMark(char mark) {
  if (mark == kClassPathBegin) {
    reading_.classPathInQuotes = reading_.classPathInQuotes || quote_ != 0;
    return;
  }
  const std::size_t end = command_.find(kPathEnd, position_);
  const std::string_view path = command_.substr(position_, end - position_ + 1);
  if (quote_ == 0) reading_.barePaths.emplace_back(path.substr(1, path.size() - 2));
  word_.text.append(path);
  inWord_ = true;
  position_ = end;
}

void ShellReader::readOutside(char character) {
  constexpr std::string_view kOperators = ";&|()<>\n";
  if (character == '\'' || character == '"') {
    quote_ = character;
    inWord_ = true;
  } else if (character == '\\' && position_ + 1 < command_.size()) {
    take(command_[++position_]);
  } else if (kOperators.find(character) != std::string_view::npos) {
    endWord();
    reading_.words.push_back({std::string(1, character), true, false});
  } else if (character == ' ' || character == '\t' || character == '\r') {
    endWord();
  } else {
    if (character == '$' || character == '`' || character == kAnything) word_.isComputed = true;
    take(character);
  }
}

void ShellReader::readQuoted(char character) {
  if (character == quote_) {
    quote_ = 0;
  } else if (character == '\\' && escapesInQuotes()) {
    take(command_[++position_]);
  } else {
    const bool isDouble = quote_ == '"';
    if (isDouble && (character == '$' || character == '`')) word_.isComputed = true;
    if (character == kAnything) word_.isComputed = true;
    take(character);
  }
}

bool ShellReader::escapesInQuotes() const {
  if (quote_ == '\'' || position_ + 1 >= command_.size()) return false;
  return std::string_view("$`\"\\").find(command_[position_ + 1]) != std::string_view::npos;
}

void ShellReader::take(char character) {
  word_.text += character;
  inWord_ = true;
}

void ShellReader::endWord() {
  if (inWord_) reading_.words.push_back(std::move(word_));
  word_ = {};
  inWord_ = false;
}

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

std::string whyJarFails(const JarFile* jar) {
  if (jar == nullptr || !jar->isZip()) return "";
  if (jar->mainClass.empty()) return "the manifest of the jar names no Main-Class";
  if (!jar->classPath.empty() || jar->holdsClass(jar->mainClass)) return "";
  return "the jar has no class " + quotedName(jar->mainClass) + ", which its manifest names" +
         sameSimpleName(*jar, jar->mainClass);
}

}  // namespace

ShellReading readShellWords(std::string_view command) {
  return ShellReader(command).read();
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
    return start;
  }
  return {};
}

std::string whyStartFails(const JavaStart& start, const std::string& separator,
                          const JarOfEntry& jarOfEntry) {
  if (!start.isKnown) return "";
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
