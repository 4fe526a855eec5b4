#include "packer/check/Statement.h"

#include <charconv>
#include <limits>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/instructions/Interpreter.h"
#include "packer/Text.h"

namespace vessant {
namespace {

using enum ArgumentKind;

constexpr ArgumentKind kTwoSwitches[] = {Switch, Switch};
constexpr ArgumentKind kTwoSwitchesAndId[] = {Switch, Switch, Id};
constexpr ArgumentKind kLabel[] = {Label};
constexpr ArgumentKind kNumberAndLabel[] = {Number, Label};
constexpr ArgumentKind kId[] = {Id};
constexpr ArgumentKind kIdAndSeconds[] = {Id, Seconds};
constexpr ArgumentKind kTextAndSeconds[] = {Text, Seconds};
constexpr ArgumentKind kMode[] = {Mode};
constexpr ArgumentKind kVariableAndText[] = {Variable, Text};

constexpr CommandForm kForms[] = {
    {Verb::FindJvm, "FIND_JVM", kTwoSwitches, "FIND_JVM show-progress show-failure"},
    {Verb::Goto, "GOTO", kLabel, "GOTO label"},
    {Verb::ILaunch, "ILAUNCH", kIdAndSeconds, "ILAUNCH id seconds"},
    {Verb::InitializeUi, "INITIALIZE_UI", {}, "INITIALIZE_UI"},
    {Verb::InstallJvm, "INSTALL_JVM", kMode, "INSTALL_JVM mode"},
    {Verb::Jmp0, "JMP0", kNumberAndLabel, "JMP0 number label"},
    {Verb::Launch, "LAUNCH", kTextAndSeconds, "LAUNCH \"jvm file\" seconds"},
    {Verb::Set, "SET", kVariableAndText, "SET variable = value"},
    {Verb::Verify, "VERIFY", kTwoSwitchesAndId, "VERIFY show-progress show-failure id"},
    {Verb::ExecuteLauncher, "EXECUTE_LAUNCHER", kId, "EXECUTE_LAUNCHER id"},
};

Verb verbOf(const std::string& word) {
  if (word.starts_with(kLabelMark)) return Verb::Label;
  const InstructionCommand* command = findInstructionCommand(word);
  if (command == nullptr) return Verb::Unknown;
  for (const CommandForm& form : kForms) {
    if (word == form.name) return form.verb;
  }
  return Verb::Comment;
}

/// SET takes all that is left: it has two arguments or, without "=", one.
void readSet(Statement& statement, const StatementArguments& arguments) {
  const std::string_view rest = arguments.rest();
  const std::size_t equals = rest.find('=');
  if (rest.empty()) return;
  statement.arguments.emplace_back(trimmedView(rest.substr(0, equals)));
  if (equals == std::string_view::npos) return;
  statement.arguments.emplace_back(trimmedView(rest.substr(equals + 1)));
}

std::string_view nextArgumentOf(const Statement& statement, StatementArguments& arguments) {
  const bool isText = statement.verb == Verb::Launch && statement.arguments.empty();
  return isText ? arguments.nextText("") : arguments.nextToken();
}

void readArguments(Statement& statement, StatementArguments& arguments, std::size_t count) {
  const std::string_view all = arguments.rest();
  try {
    while (statement.arguments.size() < count) {
      const std::string_view argument = nextArgumentOf(statement, arguments);
      if (argument.empty()) break;
      statement.arguments.emplace_back(argument);
    }
  } catch (const LauncherException&) {
    statement.arguments.emplace_back(all);  // a quote that is not closed takes all
    return;
  }
  statement.ignored = arguments.rest();
}

}  // namespace

std::optional<std::int64_t> wholeNumber(const std::string& text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc::invalid_argument || stopped != end) return std::nullopt;
  if (error != std::errc::result_out_of_range) return number;
  return text.starts_with('-') ? std::numeric_limits<std::int64_t>::min()
                               : std::numeric_limits<std::int64_t>::max();
}

Statement readStatement(const std::string& text, int line) {
  Statement statement;
  statement.text = text;
  statement.line = line;
  StatementArguments arguments(text);
  statement.word = arguments.nextToken();
  statement.verb = verbOf(statement.word);
  const CommandForm* form = findCommandForm(statement.verb);
  if (statement.verb == Verb::Set) {
    readSet(statement, arguments);
  } else if (form != nullptr) {
    readArguments(statement, arguments, form->arguments.size());
  } else {
    statement.ignored = arguments.rest();
  }
  return statement;
}

const CommandForm* findCommandForm(Verb verb) {
  for (const CommandForm& form : kForms) {
    if (form.verb == verb) return &form;
  }
  return nullptr;
}

std::vector<std::string> commandNames() {
  std::vector<std::string> names;
  for (const CommandForm& form : kForms) names.emplace_back(form.name);
  return names;
}

std::optional<std::string> jumpTarget(const Statement& statement) {
  const bool isGoto = statement.verb == Verb::Goto;
  if (!isGoto && statement.verb != Verb::Jmp0) return std::nullopt;
  const std::string label = statement.argument(isGoto ? 0 : 1);
  if (label.empty()) return std::nullopt;
  return label;
}

References referencesIn(const std::string& text) {
  References references;
  std::size_t open = text.find('@');
  while (open != std::string::npos) {
    const std::size_t close = text.find('@', open + 1);
    references.hasLoneMark = close == std::string::npos;
    if (references.hasLoneMark) break;
    if (close > open + 1) {
      references.specifications.push_back(text.substr(open + 1, close - open - 1));
    }
    open = text.find('@', close + 1);
  }
  return references;
}

std::optional<VariableSpecification> parseVariable(const std::string& text, std::string& reason) {
  try {
    return parseVariableSpecification(text, "");
  } catch (const LauncherException& error) {
    reason = str(trimmed(error.message()));
    return std::nullopt;
  }
}

}  // namespace vessant
