#include "launcher/instructions/Interpreter.h"

#include "launcher/base/Readers.h"
#include "launcher/instructions/InstructionCommands.h"
#include "launcher/instructions/InstructionRun.h"
#include "launcher/instructions/StatementArguments.h"

namespace vessant {
namespace {

void executeStatement(InstructionRun& run) {
  const SString& statement = run.statement();
  SString::Size position = 0;
  SString token;
  nextWord(token, statement, position);
  if (token.isEmpty()) run.instructionError("No command specified.");
  // Whatever stands behind it: only jumps compare the whole statement.
  if (token.at(0) == kLabelMark) return;
  const InstructionCommand* command = findInstructionCommand(token);
  if (command == nullptr) run.instructionError("Invalid command (" + token + "). ");
  StatementArguments arguments(statement, position);
  command->execute(run, arguments);
}

}  // namespace

std::int32_t runInstructions(const TagFile& script, InstructionActions& actions) {
  InstructionRun run(script, actions);
  while (!run.isOver()) {
    executeStatement(run);
    run.goOn();  // also behind a jump, which has made the label the current statement
  }
  return run.result();
}

}  // namespace vessant
