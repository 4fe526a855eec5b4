// Tells long work that the user wants it to end. It is set from a signal handler and read between
// two pieces of work: between chunks, directory entries and candidates.
#pragma once

#include <csignal>

namespace vessant {

class CancelFlag {
 public:
  /// Safe in a signal handler.
  void set() { set_ = 1; }
  [[nodiscard]] bool isSet() const { return set_ != 0; }

 private:
  volatile std::sig_atomic_t set_ = 0;
};

}  // namespace vessant
