#include "packer/check/ShellCommand.h"

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

}  // namespace

ShellReading readShellWords(std::string_view command) {
  return ShellReader(command).read();
}

}  // namespace vessant
