// The commands of the instruction script.
#pragma once

#include <string_view>

#include "launcher/instructions/InstructionRun.h"
#include "launcher/instructions/StatementArguments.h"

namespace vessant {

struct InstructionCommand {
  std::string_view name;
  /// Reads its arguments and does its work. Throws InstructionsException for arguments that are
  /// missing or wrong.
  void (*execute)(InstructionRun& run, StatementArguments& arguments);
};

/// The command of that name, or null.
[[nodiscard]] const InstructionCommand* findInstructionCommand(std::string_view name);

}  // namespace vessant
