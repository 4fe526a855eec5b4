// What runs in the child between fork and its end. Everything here must get by without throwing,
// without the parent's clean-up and without its buffers: the child only ever ends with _exit.
#pragma once

namespace vessant {

/// Exit status of a child that could not be set up.
inline constexpr int kChildSetupFailed = 127;

/// The descriptors that become the child's standard output and error; -1 leaves them as they are.
struct ChildOutput {
  bool redirect = false;
  int stdoutFd = -1;
  int stderrFd = -1;
};

/// Runs the command line through the shell and ends the child with the shell's exit code.
[[noreturn]] void runShellInChild(const char* command, const ChildOutput& output);

}  // namespace vessant
