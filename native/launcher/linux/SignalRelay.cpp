#include "launcher/linux/SignalRelay.h"

#include <cerrno>
#include <csignal>

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/SignalWait.h"
#include "launcher/linux/ProcessTree.h"

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

constexpr int kShellSignalBase = 128;

/// Whether the shell, or its program by the shell's account, died of the signal.
bool diedOf(int signal, int status) {
  if (WIFSIGNALED(status)) return WTERMSIG(status) == signal;
  return WEXITSTATUS(status) == kShellSignalBase + signal;
}

/// A process that is stopped heeds no signal until it goes on.
void deliver(pid_t process, int signal) {
  static_cast<void>(::kill(process, signal));
  static_cast<void>(::kill(process, SIGCONT));
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

SignalRelay::SignalRelay(bool ownGroup) : signals_(CancelSignals::current()) {
  if (signals_ == nullptr) return;
  signals_->setNoting(true);
  if (!ownGroup) witness_.emplace();
}

SignalRelay::~SignalRelay() {
  if (signals_ != nullptr) signals_->setNoting(false);
}

bool SignalRelay::isPending() const {
  return signals_ != nullptr && signals_->hasNoted();
}

void SignalRelay::handle() {
  if (!isPending()) return;
  while (const int signal = signals_->takeNoted()) handle(signal);
}

void SignalRelay::handle(int signal) {
  const bool toGroup = witness_.has_value() && witness_->got(signal);
  // Two in a row are one to the witness: what has come to the launcher by now, it has answered for.
  if (toGroup) signals_->dropNoted(signal);
  const bool isQuit = signal == SIGQUIT && witness_.has_value();
  const bool isInterrupt = signal == SIGINT && toGroup;
  if (isQuit) {
    quit_ = true;
  } else if (isInterrupt) {
    interrupted_ = true;
  } else {
    signals_->cancel(signal);
    groupEnds_ = groupEnds_ || toGroup;
  }
  if (!toGroup) handOn(signal);
}

void SignalRelay::handOn(int signal) const {
  if (shell_ <= 0) return;
  const std::vector<pid_t> programs = programsOf(shell_);
  // A program that ends at this moment needs no signal any more.
  for (const pid_t program : programs) deliver(program, signal);
  if (programs.empty()) {
    deliver(shell_, signal);
  } else {
    static_cast<void>(::kill(shell_, SIGCONT));  // to see its program end
  }
}

void SignalRelay::shellEnded(int status) {
  handle();
  if ((interrupted_ && diedOf(SIGINT, status)) || (quit_ && diedOf(SIGQUIT, status))) {
    signals_->cancel(interrupted_ ? SIGINT : SIGQUIT);
  }
  // A shell that ended by itself has waited for its program.
  if (groupEnds_ && WIFSIGNALED(status)) waitForOrphans();
}

void SignalRelay::waitForOrphans() {
  witness_.reset();  // it is a child in the same group
  const auto group = static_cast<id_t>(::getpgrp());
  siginfo_t info = {};
  // Until there is no child in the group any more. The first two errors pass over an interruption,
  // and a signal for the second time has ended the launcher in `handle`.
  while (::waitid(P_PGID, group, &info, WEXITED | WNOHANG) == 0) {
    handle();
    ::poll(nullptr, 0, kPauseMilliseconds);
  }
}

}  // namespace vessant
