#include "launcher/base/SignalWait.h"

#include <cerrno>

#include <poll.h>
#include <stdio_ext.h>

namespace vessant {

BlockedSignals::BlockedSignals() {
  sigset_t all;
  ::sigfillset(&all);
  ::sigprocmask(SIG_BLOCK, &all, &previous_);
}

BlockedSignals::~BlockedSignals() {
  ::sigprocmask(SIG_SETMASK, &previous_, nullptr);
}

bool waitUntilReady(int fd, short events, const CancelFlag& cancelFlag) {
  if (fd < 0) return true;
  const timespec now = {};
  while (true) {
    const BlockedSignals blocked;
    const bool interrupted = cancelFlag.isInterrupted();
    pollfd descriptor = {fd, events, 0};
    const int ready = ::ppoll(&descriptor, 1, interrupted ? &now : nullptr, &blocked.previous());
    if (ready >= 0) return ready > 0;
    if (errno != EINTR) return true;
  }
}

void flushUnlessInterrupted(std::FILE* stream, const CancelFlag& cancelFlag) {
  if (::__fpending(stream) == 0) return;
  if (waitUntilReady(::fileno(stream), POLLOUT, cancelFlag)) {
    std::fflush(stream);  // a failure marks the stream, and nobody is left to tell
  } else {
    ::__fpurge(stream);
  }
}

}  // namespace vessant
