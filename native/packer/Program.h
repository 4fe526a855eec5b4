// Runs a program that helps vspack: a JDK's java and jlink.
#pragma once

#include <string>
#include <vector>

namespace vessant {

struct ProgramResult {
  /// The exit status, or 128 and the number of the signal that ended it.
  int status = 0;
  /// What it wrote on its standard output. Its standard error is that of vspack.
  std::string out;
};

/// Runs the program, whose path comes first, with empty input. An interrupt meanwhile is the
/// program's: vspack goes on and puts in order what the program leaves. Throws LauncherException,
/// naming it, when it cannot be started.
[[nodiscard]] ProgramResult runProgram(const std::vector<std::string>& command);

}  // namespace vessant
