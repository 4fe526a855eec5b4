#include "unit/linux/ForkedRun.h"

#include <csignal>
#include <cstdio>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

constexpr int kTimeLimitMilliseconds = 120000;

void sendTo(const std::string& path, int descriptor) {
  const int file = ::open(path.c_str(), O_WRONLY | O_APPEND);
  if (file < 0 || ::dup2(file, descriptor) != descriptor) ::_exit(kThrown);
  ::close(file);
}

void writeError(const std::string& text) {
  if (::write(STDERR_FILENO, text.data(), text.size()) < 0) ::_exit(kThrown);
}

/// Kills a process that takes too long: a signal that it could catch might not end it.
int waitWithLimit(pid_t child) {
  const int end = static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
  pollfd descriptor = {end, POLLIN, 0};
  if (::poll(&descriptor, 1, kTimeLimitMilliseconds) == 0) ::kill(child, SIGKILL);
  ::close(end);
  int status = 0;
  ::waitpid(child, &status, 0);
  return status;
}

int guarded(const std::function<int()>& piece) {
  try {
    return piece();
  } catch (const LauncherException& error) {
    writeError(str(error.message()));
  } catch (const std::exception& error) {
    writeError(std::string("unexpected: ") + error.what());
  }
  return kThrown;
}

}  // namespace

ForkedResult runForked(const std::function<int()>& piece) {
  TempTree tree;
  const std::string out = tree.file("out");
  const std::string err = tree.file("err");
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    sendTo(out, STDOUT_FILENO);
    sendTo(err, STDERR_FILENO);
    ::_exit(guarded(piece));
  }
  const int status = waitWithLimit(child);
  const int result = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return {result, readFile(out), readFile(err)};
}

}  // namespace vessant::test
