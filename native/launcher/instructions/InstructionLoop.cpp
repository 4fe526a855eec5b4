// The loop that executes a script: above the commands, which are above the readers they share.

#include "launcher/base/Readers.h"
#include "launcher/instructions/InstructionCommands.h"
#include "launcher/instructions/InstructionScript.h"

namespace vessant {

std::int32_t runInstructions(const InstructionScript& script, InstructionActions& actions) {
  return InstructionRun(script, actions).run();
}

std::int32_t InstructionRun::run() {
  while (programCounter_ < count_) {
    execute(statements_->get(programCounter_));
    ++programCounter_;
  }
  return result_;
}

void InstructionRun::execute(const SString& statement) {
  SString::Size position = 0;
  SString token;
  nextWord(token, statement, position);
  if (token.isEmpty()) instructionError("No command specified.");
  if (token.at(0) == kLabelMark) return;
  const InstructionCommand* command = findInstructionCommand(token);
  if (command == nullptr) instructionError("Invalid command (" + token + "). ");
  StatementArguments arguments(statement, position);
  command->execute(*this, arguments);
}

}  // namespace vessant
