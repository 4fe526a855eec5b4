#include "launcher/linux/GroupWitness.h"

#include <cerrno>
#include <csignal>

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/SignalWait.h"

namespace vessant {
namespace {

constexpr int kQuestions = 4;
constexpr int kPauseMilliseconds = 10;
constexpr int kPatienceMilliseconds = 1000;

bool sendNumber(int line, int number) {
  ssize_t sent = -1;
  do {
    // A witness that has gone is no reason to end by SIGPIPE.
    sent = ::send(line, &number, sizeof(number), MSG_NOSIGNAL);
  } while (sent < 0 && errno == EINTR);
  return sent == sizeof(number);
}

bool receiveNumber(int line, int& number) {
  ssize_t received = -1;
  do {
    received = ::recv(line, &number, sizeof(number), 0);
  } while (received < 0 && errno == EINTR);
  return received == sizeof(number);
}

bool hasAnswer(int line) {
  pollfd descriptor = {line, POLLIN, 0};
  int ready = -1;
  do {
    ready = ::poll(&descriptor, 1, kPatienceMilliseconds);
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

/// Takes the signal, if it waits, so that the next question is about a new one.
bool takePending(int signal) {
  sigset_t set;
  ::sigemptyset(&set);
  ::sigaddset(&set, signal);
  const timespec now = {};
  return ::sigtimedwait(&set, nullptr, &now) == signal;
}

/// Runs in a copy of the launcher, all of whose signals are blocked: it must neither throw nor
/// return.
[[noreturn]] void testify(int line) {
  int signal = 0;
  while (receiveNumber(line, signal)) {
    if (!sendNumber(line, takePending(signal) ? 1 : 0)) break;
  }
  ::_exit(0);
}

}  // namespace

GroupWitness::GroupWitness() {
  int ends[2] = {-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return;
  line_.reset(ends[0]);
  const UniqueFd other(ends[1]);
  const BlockedSignals blocked;
  process_ = ::fork();
  if (process_ != 0) return;
  line_.reset();  // or it would never see the launcher's end of the line close
  testify(other.get());
}

GroupWitness::~GroupWitness() {
  if (process_ <= 0) return;
  line_.reset();
  // It may have been reaped among inherited children already: its number is then somebody else's.
  if (::waitpid(process_, nullptr, WNOHANG) != 0) return;
  static_cast<void>(::kill(process_, SIGKILL));  // one that is stopped does not see the line close
  while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

bool GroupWitness::got(int signal) {
  if (process_ <= 0) return false;
  for (int i = 0; i < kQuestions; ++i) {
    if (i > 0) ::poll(nullptr, 0, kPauseMilliseconds);
    if (ask(signal)) return true;
  }
  return false;
}

bool GroupWitness::ask(int signal) {
  int answer = 0;
  if (!sendNumber(line_.get(), signal)) return false;
  if (hasAnswer(line_.get())) return receiveNumber(line_.get(), answer) && answer == 1;
  line_.reset();  // its answer would be taken for one to the next question
  return false;
}

}  // namespace vessant
