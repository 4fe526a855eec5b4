// vspack's command line.
#pragma once

#include "packer/Session.h"

namespace vessant {

/// Runs the command that the arguments choose and returns the exit status: kFine, kFindings or
/// kTrouble. What goes wrong is told on the session's error stream.
int runPacker(int argumentCount, const char* const* arguments, Session& session);

}  // namespace vessant
