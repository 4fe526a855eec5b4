#include "launcher/linux/Shell.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/SignalWait.h"

namespace vessant {
namespace {

// In front of the command on its first line, so that the shell counts lines as it would alone, and
// that whatever the command ends with (a backslash, a comment, a here-document) stays its end. The
// third signal is one that nobody sends: it keeps the trap where the first two are ignored.
constexpr std::string_view kTrap = "trap 'case $? in 130) exit 130; esac' INT QUIT URG; ";

/// A command without these is a program with its arguments, in which nothing can stand in the wrong
/// place.
constexpr std::string_view kOperators = ";&|()<>{}\n";

constexpr int kLastSignal = 64;

void writeError(const char* text) {
  // Nobody is left to tell when this fails.
  static_cast<void>(!::write(STDERR_FILENO, text, std::strlen(text)));
}

[[noreturn]] void endWithError(const char* what, const ShellSetup& setup) {
  const int error = errno;
  const auto count = static_cast<std::uint64_t>(error);
  if (setup.startError >= 0) static_cast<void>(!::write(setup.startError, &count, sizeof(count)));
  writeError(what);
  writeError(std::strerror(error));
  writeError("\n");
  ::_exit(kChildSetupFailed);
}

/// A handler would run in the copied process, which has no run to cancel, and take a signal that
/// was meant for the program.
void dropHandlers() {
  for (int signal = 1; signal <= kLastSignal; ++signal) {
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) != 0) continue;
    if (action.sa_handler != SIG_IGN && action.sa_handler != SIG_DFL) {
      std::signal(signal, SIG_DFL);
    }
  }
}

/// Everything here must get by without throwing, without the launcher's clean-up and without its
/// buffers: it runs in a copy of the launcher, which only ever becomes the shell or ends.
[[noreturn]] void becomeShell(const char* text, const ShellSetup& setup, const sigset_t& mask) {
  if (setup.ownGroup) ::setpgid(0, 0);
  if (setup.standardInput >= 0) ::dup2(setup.standardInput, STDIN_FILENO);
  if (setup.redirect && (::dup2(setup.standardOutput, STDOUT_FILENO) < 0 ||
                         ::dup2(setup.standardError, STDERR_FILENO) < 0)) {
    endWithError("Error capturing stdout or stderr in new process: ", setup);
  }
  dropHandlers();
  ::sigprocmask(SIG_SETMASK, &mask, nullptr);
  ::execl("/bin/sh", "sh", "-c", text, nullptr);
  // A command that is too long for the system, for one.
  endWithError("Error starting the shell: ", setup);
}

[[noreturn]] void onlyRead(const char* command, const sigset_t& mask) {
  const int nowhere = ::open("/", O_PATH);  // what it says about errors is said again
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) ::dup2(nowhere, fd);
  dropHandlers();
  ::sigprocmask(SIG_SETMASK, &mask, nullptr);
  ::execl("/bin/sh", "sh", "-n", "-c", command, nullptr);
  ::_exit(0);
}

/// Whether the shell finds nothing wrong when it reads the command without doing it; true also
/// when it cannot be asked.
bool isReadable(const std::string& command) {
  pid_t reader = -1;
  {
    const BlockedSignals blocked;
    reader = ::fork();
    if (reader == 0) onlyRead(command.c_str(), blocked.previous());
  }
  if (reader < 0) return true;
  int status = 0;
  pid_t result = -1;
  do {
    result = ::waitpid(reader, &status, 0);
  } while (result < 0 && errno == EINTR);
  return result < 0 || !WIFEXITED(status) || WEXITSTATUS(status) == 0;
}

}  // namespace

std::string shellText(std::string_view command) {
  std::string plain(command);
  // Only what the shell takes apart can be wrong in a way that makes it show the line.
  const bool canBeWrong = plain.find_first_of(kOperators) != std::string::npos;
  if (canBeWrong && !isReadable(plain)) return plain;
  return std::string(kTrap).append(plain);
}

pid_t startShell(const std::string& text, const ShellSetup& setup) {
  // Until the copy has dropped the handlers no signal may reach it.
  const BlockedSignals blocked;
  const pid_t child = ::fork();
  if (child == 0) becomeShell(text.c_str(), setup, blocked.previous());
  // In both processes, because either may be first to need it.
  if (child > 0 && setup.ownGroup) ::setpgid(child, child);
  return child;
}

}  // namespace vessant
