// Waiting that no signal slips past: one that comes a moment before the wait ends it just as one
// that comes meanwhile.
#pragma once

#include <csignal>
#include <cstdio>

#include "launcher/base/RunServices.h"

namespace vessant {

/// Holds back every signal while it lives. What is to be looked at before a wait is looked at in
/// its shelter; the wait itself lets the signals in, as ppoll does with `previous`.
class BlockedSignals {
 public:
  BlockedSignals();
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;
  ~BlockedSignals();

  [[nodiscard]] const sigset_t& previous() const { return previous_; }

 private:
  sigset_t previous_ = {};
};

/// Waits until `events` (those of poll) would not block on the descriptor. Once the run is
/// interrupted it waits no longer: it returns whether they would not block at this moment. A
/// descriptor that cannot be asked counts as ready, so that its own call tells what is wrong.
[[nodiscard]] bool waitUntilReady(int fd, short events, const CancelFlag& cancelFlag);

/// Writes out what the stream still holds. In an interrupted run a stream whose reader takes
/// nothing loses it instead, so that nothing waits for that reader, not even the end of the
/// process.
void flushUnlessInterrupted(std::FILE* stream, const CancelFlag& cancelFlag);

}  // namespace vessant
