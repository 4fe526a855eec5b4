// Turns the signals by which a user ends a program into the cancel flag, so that the launcher can
// put things in order before it ends.
#pragma once

#include <csignal>

#include "launcher/base/RunServices.h"

namespace vessant {

/// While it lives: an interrupt, a hang-up or a request to terminate sets the flag, and the same
/// signal again ends the process at once. A signal that was ignored stays ignored. A closed pipe on
/// standard output does not end the process. One object at a time.
class CancelSignals {
 public:
  explicit CancelSignals(CancelFlag& flag);
  CancelSignals(const CancelSignals&) = delete;
  CancelSignals& operator=(const CancelSignals&) = delete;
  ~CancelSignals();

 private:
  static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};
  static constexpr int kSignalCount = 4;

  struct sigaction previous_[kSignalCount] = {};
};

/// Makes the parts of the process that were inherited fit for a launcher: the descriptors 0 to 2
/// are open, so that no file of ours takes their place, and a child's end can be waited for.
void prepareProcess();

}  // namespace vessant
