// The launcher's entry point, without the process around it.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/driver/LauncherState.h"

namespace vessant {

/// Runs the launcher with the process's arguments and returns its result. The clean-up has run when
/// it returns, also by an exception.
int runLauncher(int argumentCount, const char* const* arguments, LauncherState& state);

/// The one line that tells of a failure which nothing else has told of, and the result for it.
int reportUnexpectedFailure(const LauncherState& state);

}  // namespace vessant
