// Starts the system's shell with a command line.
#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

namespace vessant {

/// Exit status of a child that could not be set up, and of one without a shell.
inline constexpr int kChildSetupFailed = 127;

/// How the shell starts. A descriptor of -1 leaves the launcher's own stream in its place.
struct ShellSetup {
  int standardInput = -1;
  /// Whether the two outputs are replaced, by the descriptors that follow.
  bool redirect = false;
  int standardOutput = -1;
  int standardError = -1;
  /// Whether it gets a process group of its own.
  bool ownGroup = false;
  /// An eventfd that counts the error number when there is no shell; -1 for none.
  int startError = -1;
};

/// The text that the shell is given for a command.
///
/// A trap keeps the shell from becoming the last program of the command, as some do, so that it
/// can tell 128 and the number of a signal that ended the program. It also has every shell do at
/// Ctrl-C what some do: wait for the program, go on when that has survived, and end when it has
/// not. At Ctrl-\ the shell lives on with a program that does. Programs know nothing of all this:
/// a signal that the shell traps has its default there.
///
/// A command that the shell cannot read is given to it as it is, because some shells show its line
/// with the error. Where one can be wrong at all, the shell is asked first.
[[nodiscard]] std::string shellText(std::string_view command);

/// Starts "/bin/sh -c TEXT" and returns its process, or -1 with errno set. The text must be made
/// before, since a copied process cannot throw. The shell has the defaults of the signals that the
/// launcher catches; those that it ignores stay ignored.
[[nodiscard]] pid_t startShell(const std::string& text, const ShellSetup& setup);

}  // namespace vessant
