// Runs one command line as a child process to its end.
#pragma once

#include <cstdint>

#include "launcher/base/RunServices.h"

namespace vessant {

/// Returns bits 8 to 15 of the child's wait status: its exit code, or 0 when a signal ended it.
/// Throws LauncherException when the working directory, a pipe, the fork or the wait fails; after a
/// failed pipe or fork the launcher stays in the working directory of the command.
ChildResult runChildProcess(const ChildCommand& command, ProgressSink& progress);

}  // namespace vessant
