#include "launcher/instructions/Interpreter.h"

#include <string_view>

#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"
#include "launcher/instructions/InstructionRun.h"
#include "launcher/instructions/StatementArguments.h"

namespace vessant {
namespace {

/// Most commands let the readers report in their own words alone.
constexpr std::string_view kNoContext = "";

/// The next token, which must be there.
std::string_view requireToken(const InstructionRun& run, StatementArguments& arguments,
                              const char* messageIfMissing) {
  const std::string_view token = arguments.nextToken();
  if (token.empty()) run.instructionError(messageIfMissing);
  return token;
}

bool requireBoolean(const InstructionRun& run, StatementArguments& arguments,
                    const char* messageIfMissing) {
  return run.booleanValue(requireToken(run, arguments, messageIfMissing), kNoContext);
}

std::int32_t requireNumber(const InstructionRun& run, StatementArguments& arguments,
                           const char* messageIfMissing) {
  return run.numericValue(requireToken(run, arguments, messageIfMissing), kNoContext);
}

std::int16_t requireShort(const InstructionRun& run, StatementArguments& arguments,
                          const char* messageIfMissing) {
  return run.shortValue(requireToken(run, arguments, messageIfMissing), kNoContext);
}

void executeFindJvm(InstructionRun& run, StatementArguments& arguments) {
  Display display;
  display.progress = requireBoolean(
      run, arguments,
      "The first argument to FIND_JVM should be a 1 if the UI should be displayed or a 0 if the "
      "UI should be suppressed.");
  display.failure = requireBoolean(
      run, arguments,
      "The second argument to FIND_JVM should be a 1 if a find failure message should be displayed "
      "in a UI or 0 if no message should be displayed.");
  run.actions().findJvm(display);
}

void executeGoto(InstructionRun& run, StatementArguments& arguments) {
  run.jumpTo(
      requireToken(run, arguments, "The GOTO command requires a label as its only argument."));
}

void executeILaunch(InstructionRun& run, StatementArguments& arguments) {
  const std::int32_t fileId = requireNumber(
      run, arguments,
      "The first argument to ILAUNCH should be the file index number of the jvm file.");
  const std::int16_t seconds = requireShort(
      run, arguments,
      "The second argument to ILAUNCH should be the number of seconds to display the UI during the "
      "launch.");
  run.setResult(run.actions().launchWithEmbeddedJvmFile(fileId, seconds));
}

void executeInitializeUi(InstructionRun& run, StatementArguments& /*arguments*/) {
  run.actions().beginProgress();
}

void executeInstallJvm(InstructionRun& run, StatementArguments& arguments) {
  constexpr const char* kMessage = "The first argument to INSTALL_JVM should be a 0, 1 or 2.";
  constexpr std::int32_t kLastMode = 2;
  const std::int32_t mode = requireNumber(run, arguments, kMessage);
  if (mode < 0 || mode > kLastMode) run.instructionError(kMessage);
  run.actions().installEmbeddedJvm(mode);
}

/// Kept: the messages count the value as the second argument, as authors know them. A value that is
/// not there fails as an empty expression, so nothing asks whether it is missing.
void executeJmp0(InstructionRun& run, StatementArguments& arguments) {
  const std::int32_t value =
      run.numericValue(arguments.nextToken(), "The second argument to JMP0 must be numeric.");
  const std::string_view label =
      requireToken(run, arguments, "JMP0 requires a jump label as its second argument.");
  if (value == 0) run.jumpTo(label);
}

void executeLaunch(InstructionRun& run, StatementArguments& arguments) {
  constexpr std::string_view kContext = "Invalid jvm file name specified in LAUNCH.";
  const SString fileName = run.textValue(arguments.nextText(kContext), kContext);
  const std::int16_t seconds = requireShort(
      run, arguments,
      "The second argument to LAUNCH should be the number of seconds to display the UI during the "
      "launch.");
  run.setResult(run.actions().launchWithJvmFile(fileName, seconds));
}

void assign(InstructionActions& actions, const VariableSpecification& variable,
            const SString& text) {
  if (variable.type == 'S') return actions.setStringVariable(variable.number, text);
  std::int32_t number = 0;
  if (!stringToLong(text, number)) {
    throw LauncherException(
        "Invalid value specified for SET command Invalid numeric expression in " + text);
  }
  actions.setNumericVariable(variable.number, number);
}

void executeSet(InstructionRun& run, StatementArguments& arguments) {
  const std::string_view statement = arguments.rest();
  const std::size_t equals = statement.find('=');
  if (equals == std::string_view::npos) run.instructionError("SET statement is missing =.");
  const VariableSpecification variable =
      parseVariableSpecification(trimmedView(statement.substr(0, equals)),
                                 "Invalid variable specified on left hand side of SET statement.");
  const std::string_view value = trimmedView(statement.substr(equals + 1));
  // An empty text would be refused as an expression, but it is how a variable is cleared.
  assign(run.actions(), variable,
         value.empty() ? SString()
                       : run.textValue(value, "Invalid expression specified for SET command"));
}

void executeVerify(InstructionRun& run, StatementArguments& arguments) {
  Display display;
  display.progress = requireBoolean(
      run, arguments,
      "The first argument to VERIFY should be a 1 if the UI should be displayed or a 0 if the UI "
      "should be suppressed.");
  display.failure = requireBoolean(
      run, arguments,
      "The second argument to VERIFY should be a 1 if a find failure message should be displayed "
      "in a UI or 0 if no message should be displayed.");
  const std::int32_t fileId = requireNumber(
      run, arguments,
      "The third argument to VERIFY should be the file index number of the jvm file.");
  run.actions().verifyEmbeddedJvmFile(display, fileId);
}

/// Kept: the message is that of ILAUNCH, as authors know it.
void executeEmbeddedLauncher(InstructionRun& run, StatementArguments& arguments) {
  run.actions().runEmbeddedLauncher(requireNumber(
      run, arguments,
      "The first argument to ILAUNCH should be the file index number of the jvm file."));
}

void executeComment(InstructionRun& /*run*/, StatementArguments& /*arguments*/) {}

// Compared from first to last, byte for byte.
constexpr InstructionCommand kCommands[] = {
    {"FIND_JVM", executeFindJvm},
    {"GOTO", executeGoto},
    {"ILAUNCH", executeILaunch},
    {"INITIALIZE_UI", executeInitializeUi},
    {"INSTALL_JVM", executeInstallJvm},
    {"JMP0", executeJmp0},
    {"LAUNCH", executeLaunch},
    {"SET", executeSet},
    {"VERIFY", executeVerify},
    {"EXECUTE_LAUNCHER", executeEmbeddedLauncher},
    {"//", executeComment},
};

void executeStatement(InstructionRun& run) {
  StatementArguments arguments(run.statement());
  const std::string_view token = arguments.nextToken();
  if (token.empty()) run.instructionError("No command specified.");
  // Whatever stands behind it: only jumps compare the whole statement.
  if (token.front() == kLabelMark) return;
  const InstructionCommand* command = findInstructionCommand(token);
  if (command == nullptr) {
    run.instructionError(SString("Invalid command (") + token + "). ");
  }
  command->execute(run, arguments);
}

}  // namespace

const InstructionCommand* findInstructionCommand(std::string_view name) {
  for (const InstructionCommand& command : kCommands) {
    if (name == command.name) return &command;
  }
  return nullptr;
}

std::int32_t runInstructions(const TagFile& script, InstructionActions& actions) {
  InstructionRun run(script, actions);
  while (!run.isOver()) {
    // A cancelled run starts nothing more, and a script that goes round in a circle ends here.
    actions.throwIfCanceled();
    executeStatement(run);
    run.goOn();  // also behind a jump, which has made the label the current statement
  }
  actions.throwIfCanceled();  // the last program may have died of what cancelled the run
  return run.result();
}

}  // namespace vessant
