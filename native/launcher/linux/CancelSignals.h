// Turns the signals that end a program into the cancel flag, so that the launcher can put things in
// order before it ends.
#pragma once

#include <csignal>

#include "launcher/base/RunServices.h"

namespace vessant {

/// While it lives, every signal sets the flag whose default is to end the process and that can be
/// caught, but for those of a crash; the same one again ends the process at once. One that was
/// ignored stays ignored. SIGPIPE and SIGXFSZ leave it to the failing write to tell. A call that
/// waits returns with EINTR, so that the first signal is heeded at once. One object at a time.
///
/// Programs that the launcher starts have the defaults again, and ignore what was ignored.
class CancelSignals {
 public:
  /// Whether the handlers of before come back when the object goes. Where the process ends then,
  /// nobody needs them: a signal that comes that late does nothing, and their calls are saved.
  enum class Afterwards { Restored, ProcessEnds };

  /// The flag is the caller's and must outlive this.
  explicit CancelSignals(CancelFlag& flag, Afterwards afterwards = Afterwards::Restored);
  CancelSignals(const CancelSignals&) = delete;
  CancelSignals& operator=(const CancelSignals&) = delete;
  ~CancelSignals();

  /// The one that lives now, or null.
  [[nodiscard]] static CancelSignals* current();

  /// Whether signals are only noted, for somebody who knows more than the handler to decide about.
  /// Those that are still noted when it is turned off count as usual.
  void setNoting(bool noting);
  [[nodiscard]] bool hasNoted() const;
  /// The next noted signal, or 0. After the last one the flag is no longer undecided.
  [[nodiscard]] int takeNoted();
  /// Counts a signal that is noted as one with the one that was taken before.
  void dropNoted(int signal) { noted_[signal] = 0; }
  /// What a signal does when it is not only noted.
  void cancel(int signal);

  /// A signal that has cancelled the run, for who ends as it would have; 0 when none has.
  [[nodiscard]] int cancelledBy() const;

  [[nodiscard]] const CancelFlag& flag() const { return flag_; }

 private:
  static constexpr int kSignalLimit = 65;  // the numbers are 1 to 64

  static void onSignal(int signal);
  void install(int signal, void (*handler)(int), int flags);
  void arrive(int signal);

  CancelFlag& flag_;
  Afterwards afterwards_;
  volatile std::sig_atomic_t noting_ = 0;
  volatile std::sig_atomic_t noted_[kSignalLimit] = {};
  volatile std::sig_atomic_t seen_[kSignalLimit] = {};
  /// What there was before. A process begins without handlers, so that no handler's mask of held
  /// signals has to be kept, which would take most of the room.
  struct Previous {
    bool replaced = false;
    int flags = 0;
    void (*handler)(int) = nullptr;
  };
  Previous previous_[kSignalLimit];
};

}  // namespace vessant
