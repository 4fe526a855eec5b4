// Runs the small script that drives an installer's default flow: find a JVM, verify it, install the
// bundled one, launch, with variables and jumps.
#pragma once

#include <cstdint>

#include "launcher/instructions/InstructionActions.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// Executes a script from its first statement to behind its last and returns its result, which the
/// launch commands set; 0 when there was none. Throws InstructionsException for an error of the
/// script, with the number of the statement, and LauncherException for other failures, among them
/// that the run was cancelled.
std::int32_t runInstructions(const TagFile& script, InstructionActions& actions);

}  // namespace vessant
