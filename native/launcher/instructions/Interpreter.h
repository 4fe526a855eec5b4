// Runs the small script that drives an installer's default flow: find a JVM, verify it, install the
// bundled one, launch, with variables and jumps. Its commands stand in one table.
#pragma once

#include <cstdint>
#include <string_view>

#include "launcher/instructions/InstructionActions.h"
#include "launcher/instructions/InstructionRun.h"
#include "launcher/instructions/StatementArguments.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// Executes a script from its first statement to behind its last and returns its result, which the
/// launch commands set; 0 when there was none. Throws InstructionsException for an error of the
/// script, with the number of the statement, and LauncherException for other failures, among them
/// that the run was cancelled.
std::int32_t runInstructions(const TagFile& script, InstructionActions& actions);

/// A command of the script, as the interpreter and whoever only checks a script find it.
struct InstructionCommand {
  std::string_view name;
  /// Reads its arguments and does its work. Throws InstructionsException for arguments that are
  /// missing or wrong.
  void (*execute)(InstructionRun& run, StatementArguments& arguments);
};

/// The command of that name, or null.
[[nodiscard]] const InstructionCommand* findInstructionCommand(std::string_view name);

}  // namespace vessant
