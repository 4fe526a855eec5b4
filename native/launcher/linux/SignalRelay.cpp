#include "launcher/linux/SignalRelay.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/linux/ProcessTree.h"

namespace vessant {
namespace {

constexpr int kShellSignalBase = 128;
constexpr int kPauseMilliseconds = 10;

/// Whether the shell, or its program by the shell's account, died of the signal.
bool diedOf(int signal, int status) {
  if (WIFSIGNALED(status)) return WTERMSIG(status) == signal;
  return WEXITSTATUS(status) == kShellSignalBase + signal;
}

}  // namespace

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
  for (const pid_t program : programs) static_cast<void>(::kill(program, signal));
  if (programs.empty()) static_cast<void>(::kill(shell_, signal));
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
