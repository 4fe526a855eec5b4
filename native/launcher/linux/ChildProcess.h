// Child processes: makes the launcher's own process fit to have them, and runs one command line in
// one to its end.
#pragma once

#include "launcher/base/Handles.h"
#include "launcher/base/RunServices.h"

namespace vessant {

/// Sets right what the process has inherited from whoever started it. The descriptors 0 to 2 are
/// open then, so that no file of the launcher's or of a program's takes their place, and a child's
/// end can be waited for. To be called once, before anything is opened.
void prepareProcess();

/// A pipe whose two ends close themselves and do not pass on to programs that a child starts.
struct Pipe {
  UniqueFd readEnd;
  UniqueFd writeEnd;

  /// Opens both ends. Returns false, with errno set, when there are no more descriptors.
  [[nodiscard]] bool open();
};

/// Starts the shell with the command and waits for its end. The exit code is bits 8 to 15 of the
/// shell's wait status: what the shell tells of the program, 128 and the number of a signal
/// included, or 0 for a shell that was itself ended by a signal.
///
/// Throws LauncherException when the working directory, a pipe, the fork or the wait fails; after a
/// failed pipe or fork the launcher stays in the working directory of the command.
ChildResult runChildProcess(const ChildCommand& command, ProgressSink& progress);

}  // namespace vessant
