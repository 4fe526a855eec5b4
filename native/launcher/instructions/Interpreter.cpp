#include "launcher/instructions/Interpreter.h"

#include <string_view>

#include "launcher/instructions/InstructionCommands.h"
#include "launcher/instructions/InstructionRun.h"
#include "launcher/instructions/StatementArguments.h"

namespace vessant {
namespace {

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
