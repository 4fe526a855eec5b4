// The commands of the instruction script.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/instructions/InstructionRun.h"
#include "launcher/instructions/StatementArguments.h"

namespace vessant {

struct InstructionCommand {
  const char* name;
  /// Reads its arguments and does its work. Throws InstructionsException for arguments that are
  /// missing or wrong.
  void (*execute)(InstructionRun& run, StatementArguments& arguments);
};

/// The command of that name, or null.
[[nodiscard]] const InstructionCommand* findInstructionCommand(const SString& name);

}  // namespace vessant
