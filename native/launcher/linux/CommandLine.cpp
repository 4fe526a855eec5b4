#include "launcher/linux/CommandLine.h"

#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr char kQuote = '"';
constexpr char kBackslash = '\\';

class ArgumentScanner {
 public:
  explicit ArgumentScanner(std::string_view text) : text_(text) {}

  /// Moves to the next character that is not whitespace; false when there is none.
  bool skipSpace() {
    while (!atEnd() && isSpaceChar(text_[position_])) ++position_;
    return !atEnd();
  }

  /// Reads from the current character. A quoted section inside an argument is read as an argument
  /// of its own.
  SString readArgument(bool isProgram);

 private:
  [[nodiscard]] bool atEnd() const { return position_ >= text_.size(); }
  /// Takes the character behind a backslash.
  void takeEscaped(SString& argument);

  std::string_view text_;
  std::size_t position_ = 0;
};

SString ArgumentScanner::readArgument(bool isProgram) {
  SString argument;
  const bool isQuoted = text_[position_] == kQuote;
  if (isQuoted) ++position_;
  while (!atEnd()) {
    const char character = text_[position_];
    if (character == kBackslash && !isProgram) {
      takeEscaped(argument);
    } else if (character == kQuote) {
      if (!isQuoted) {
        argument.append(readArgument(isProgram));
        continue;
      }
      ++position_;
      break;
    } else if (!isQuoted && isSpaceChar(character)) {
      break;
    } else {
      argument += character;
      ++position_;
    }
  }
  return argument;
}

void ArgumentScanner::takeEscaped(SString& argument) {
  ++position_;
  if (atEnd()) return;
  const char character = text_[position_];
  if (character != kQuote) argument += kBackslash;
  argument += character;
  ++position_;
}

}  // namespace

bool splitCommandLine(StringDeque& list, const SString& commandLine) {
  list.clear();
  ArgumentScanner scanner(commandLine);
  while (scanner.skipSpace()) {
    const SString argument = scanner.readArgument(list.isEmpty());
    if (!argument.isEmpty()) list.add(argument);
  }
  return true;
}

}  // namespace vessant
