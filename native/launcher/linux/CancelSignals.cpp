#include "launcher/linux/CancelSignals.h"

#include <unistd.h>

namespace vessant {
namespace {

constexpr int kEndingSignals[] = {
    SIGHUP,    SIGINT,    SIGQUIT, SIGUSR1, SIGUSR2, SIGALRM, SIGTERM,
#ifdef SIGSTKFLT
    SIGSTKFLT,
#endif
    SIGXCPU,   SIGVTALRM, SIGPROF, SIGIO,   SIGPWR,
};

// A signal handler can reach nothing but a global.
CancelSignals* living = nullptr;

void onHarmless(int /*signal*/) {}

/// As if the signal had never been caught. The first process of a machine does not die of it.
[[noreturn]] void endBy(int signal) {
  constexpr int kSignalBase = 128;
  sigset_t set;
  ::sigemptyset(&set);
  ::sigaddset(&set, signal);
  std::signal(signal, SIG_DFL);
  ::sigprocmask(SIG_UNBLOCK, &set, nullptr);  // its handler holds it back
  std::raise(signal);
  ::_exit(kSignalBase + signal);
}

bool setHandler(int signal, void (*handler)(int), int flags, struct sigaction* before) {
  struct sigaction action = {};
  ::sigemptyset(&action.sa_mask);
  action.sa_handler = handler;
  action.sa_flags = flags;
  return ::sigaction(signal, &action, before) == 0;
}

/// Holds all signals back. One that is found to be ignored only after its handler was installed
/// stays ignored, because what has arrived meanwhile is dropped; asking first would double the
/// number of calls, which is noticed in the shortest run.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t all;
    ::sigfillset(&all);
    ::sigprocmask(SIG_BLOCK, &all, &before_);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_ = {};
};

}  // namespace

CancelSignals::CancelSignals(CancelFlag& flag, Afterwards afterwards)
    : flag_(flag), afterwards_(afterwards) {
  const HeldSignals held;
  living = this;
  for (const int signal : kEndingSignals) install(signal, onSignal, 0);
  for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) install(signal, onSignal, 0);
  // Caught and not ignored, because programs would go on ignoring it.
  for (const int signal : {SIGPIPE, SIGXFSZ}) install(signal, onHarmless, SA_RESTART);
  // Only so that the end of a child wakes a wait.
  install(SIGCHLD, onHarmless, SA_RESTART | SA_NOCLDSTOP);
}

CancelSignals::~CancelSignals() {
  living = nullptr;
  if (afterwards_ == Afterwards::ProcessEnds) return;
  for (int signal = 1; signal < kSignalLimit; ++signal) {
    const Previous& previous = previous_[signal];
    if (previous.replaced) setHandler(signal, previous.handler, previous.flags, nullptr);
  }
}

CancelSignals* CancelSignals::current() {
  return living;
}

void CancelSignals::setNoting(bool noting) {
  noting_ = noting ? 1 : 0;
  if (noting) return;
  while (const int signal = takeNoted()) cancel(signal);
}

bool CancelSignals::hasNoted() const {
  for (const volatile std::sig_atomic_t& noted : noted_) {
    if (noted != 0) return true;
  }
  return false;
}

int CancelSignals::takeNoted() {
  // First: a signal that comes now makes it undecided again, for the next call.
  flag_.setUndecided(false);
  for (int signal = 1; signal < kSignalLimit; ++signal) {
    if (noted_[signal] == 0) continue;
    noted_[signal] = 0;
    return signal;
  }
  return 0;
}

void CancelSignals::cancel(int signal) {
  if (seen_[signal] != 0) endBy(signal);
  seen_[signal] = 1;
  flag_.set();
}

int CancelSignals::cancelledBy() const {
  for (int signal = 1; signal < kSignalLimit; ++signal) {
    if (seen_[signal] != 0) return signal;
  }
  return 0;
}

void CancelSignals::onSignal(int signal) {
  if (living != nullptr) living->arrive(signal);
}

void CancelSignals::arrive(int signal) {
  if (noting_ == 0) return cancel(signal);
  noted_[signal] = 1;
  flag_.setUndecided(true);
}

void CancelSignals::install(int signal, void (*handler)(int), int flags) {
  struct sigaction before = {};
  if (!setHandler(signal, handler, flags, &before)) return;
  if (before.sa_handler == SIG_IGN) {
    setHandler(signal, SIG_IGN, 0, nullptr);
  } else {
    previous_[signal] = {true, before.sa_flags, before.sa_handler};
  }
}

}  // namespace vessant
