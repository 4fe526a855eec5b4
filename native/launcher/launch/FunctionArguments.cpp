#include "launcher/launch/FunctionArguments.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

/// Three states and the end. An error names the place where the step that failed began, ahead of
/// the whitespace in front of what is wrong: that is where the author stopped writing.
class ArgumentListParser {
 public:
  ArgumentListParser(const MacroText& text, SString::Size position, StringDeque& arguments,
                     LogSink& log)
      : text_(text),
        rest_(text.rest()),
        position_(position),
        mark_(position),
        arguments_(arguments),
        log_(log) {}

  SString::Size parse();

 private:
  enum class State { BeforeList, ExpectingArgument, AfterArgument, Done };

  void step();
  void stepBeforeList(char character);
  void stepExpectingArgument(char character);
  void stepAfterArgument(char character);
  [[noreturn]] void fail(const char* message) const;

  const MacroText& text_;
  const std::string_view rest_;
  SString::Size position_;
  SString::Size mark_;  // where the current step began
  StringDeque& arguments_;
  LogSink& log_;
  State state_ = State::BeforeList;
};

SString::Size ArgumentListParser::parse() {
  while (position_ != SString::npos && state_ != State::Done) {
    step();
    mark_ = position_;
  }
  return position_;
}

void ArgumentListParser::step() {
  while (position_ < rest_.size() && isSpaceChar(rest_[position_])) ++position_;
  // A text that has ended looks like a character that no state accepts.
  const char character = position_ < rest_.size() ? rest_[position_] : '\0';
  if (state_ == State::BeforeList) {
    stepBeforeList(character);
  } else if (state_ == State::ExpectingArgument) {
    stepExpectingArgument(character);
  } else {
    stepAfterArgument(character);
  }
}

void ArgumentListParser::stepBeforeList(char character) {
  if (character != '(') fail("Expected left parenthesis.");
  ++position_;
  state_ = State::ExpectingArgument;
}

void ArgumentListParser::stepExpectingArgument(char character) {
  if (character != '"' && character != ')') fail("Expected string arg.");
  ++position_;
  if (character == ')') {
    state_ = State::Done;
    return;
  }
  SString argument;
  nextArgument(argument, rest_, position_, ArgumentForm::Quoted, text_.position());
  arguments_.add(argument);
  state_ = State::AfterArgument;
}

void ArgumentListParser::stepAfterArgument(char character) {
  if (character != ',' && character != ')') fail("Expected right parenthesis.");
  ++position_;
  state_ = character == ',' ? State::ExpectingArgument : State::Done;
}

void ArgumentListParser::fail(const char* message) const {
  const auto mark = static_cast<std::int32_t>(text_.position() + mark_);
  launchScriptError(text_.whole(),
                    SString(message) + " (near character " + longToString(mark) + ")", log_);
}

}  // namespace

void parseFunctionArguments(const MacroText& text, SString::Size& position, StringDeque& arguments,
                            LogSink& log) {
  position = ArgumentListParser(text, position, arguments, log).parse();
}

void launchScriptError(const SString& command, const SString& message, LogSink& log) {
  log.log("Launch command:", LogLevel::Information);
  log.log(command, LogLevel::Information);
  throw LauncherException("Launch script error: " + message);
}

}  // namespace vessant
