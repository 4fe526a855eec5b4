// vspack's command line.
#pragma once

namespace vessant {

/// Runs one command. Results go to standard output and errors to standard error. Returns the exit
/// status: 0, 1 for a command that failed, 2 for a wrong call.
int runPacker(int argumentCount, const char* const* arguments);

}  // namespace vessant
