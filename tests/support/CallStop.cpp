#include "support/CallStop.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <stdexcept>

#include <sys/ptrace.h>
#include <sys/wait.h>

namespace vessant::test {
namespace {

/// Marks a stop at a system call; the rest of the signal's number is SIGTRAP.
constexpr int kCallMark = 0x80;

}  // namespace

CallStop::CallStop(pid_t process) : process_(process) {
  int status = 0;
  if (::ptrace(PTRACE_SEIZE, process, nullptr, PTRACE_O_TRACESYSGOOD) != 0 ||
      ::ptrace(PTRACE_INTERRUPT, process, nullptr, nullptr) != 0 || !waitForStop(status)) {
    held_ = false;
    throw std::runtime_error("a process cannot be traced here");
  }
}

bool CallStop::runTo(std::initializer_list<long> calls, int count) {
  int signal = 0;
  while (held_ && ::ptrace(PTRACE_SYSCALL, process_, nullptr, signal) == 0) {
    int status = 0;
    if (!waitForStop(status)) break;
    const bool atCall = WSTOPSIG(status) == (SIGTRAP | kCallMark);
    if (atCall && std::find(calls.begin(), calls.end(), callThatBegins()) != calls.end() &&
        --count == 0) {
      return true;
    }
    const bool isEvent = (status >> 16) != 0;
    signal = atCall || isEvent ? 0 : WSTOPSIG(status);
  }
  held_ = false;
  return false;
}

void CallStop::release(int signal) {
  if (held_ && signal != 0) ::kill(process_, signal);
  if (held_) ::ptrace(PTRACE_DETACH, process_, nullptr, nullptr);
  held_ = false;
}

/// False when the process has ended, which nobody else learns then.
bool CallStop::waitForStop(int& status) const {
  while (::waitpid(process_, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFSTOPPED(status);
}

/// -1 when the stop is not in front of a call.
long CallStop::callThatBegins() const {
  __ptrace_syscall_info info = {};
  const long size = ::ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof(info), &info);
  if (size <= 0 || info.op != PTRACE_SYSCALL_INFO_ENTRY) return -1;
  return static_cast<long>(info.entry.nr);
}

}  // namespace vessant::test
