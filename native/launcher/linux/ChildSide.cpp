#include "launcher/linux/ChildSide.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <sys/wait.h>
#include <unistd.h>

namespace vessant {
namespace {

void writeError(const char* text) {
  // Nobody is left to tell when this fails.
  static_cast<void>(!::write(STDERR_FILENO, text, std::strlen(text)));
}

[[noreturn]] void endWithSetupError() {
  const int error = errno;
  writeError("Error capturing stdout or stderr in new process: ");
  writeError(std::strerror(error));
  writeError("\n");
  ::_exit(kChildSetupFailed);
}

}  // namespace

void runShellInChild(const char* command, const ChildOutput& output) {
  if (output.redirect &&
      (::dup2(output.stdoutFd, STDOUT_FILENO) < 0 || ::dup2(output.stderrFd, STDERR_FILENO) < 0)) {
    endWithSetupError();
  }
  const int status = std::system(command);
  ::_exit(WEXITSTATUS(status));
}

}  // namespace vessant
