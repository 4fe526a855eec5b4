// What the launcher's signals mean while a child runs.
#pragma once

#include <csignal>
#include <optional>

#include <sys/types.h>

#include "launcher/base/Handles.h"
#include "launcher/linux/CancelSignals.h"

namespace vessant {

/// A process of the launcher's group that does nothing but be there: a signal that it got, too, was
/// meant for the group. The system gives the receiver of a signal no other means to know, and a
/// program must not get twice what a terminal, or a supervisor, has sent it already. It ends with
/// the object, and also when the launcher is killed. One that does not answer, because somebody has
/// stopped it, is not asked again.
class GroupWitness {
 public:
  /// A witness that cannot be started has seen nothing.
  GroupWitness();
  GroupWitness(const GroupWitness&) = delete;
  GroupWitness& operator=(const GroupWitness&) = delete;
  ~GroupWitness();

  /// Whether it got the signal since the last time it was asked. A sender that takes the processes
  /// one by one is given a moment to come to this one.
  [[nodiscard]] bool got(int signal);

 private:
  bool ask(int signal);

  UniqueFd line_;
  pid_t process_ = -1;
};

/// While it lives, signals are only noted until `handle` decides about them:
///
/// A signal to the launcher alone is handed on to what the child's shell runs, to the shell itself
/// when it runs nothing, and cancels the run; what is stopped goes on. One that has gone to the
/// whole process group has reached the program already.
///
/// Ctrl-C, SIGINT to the group, is the program's: it cancels the run only when the program dies of
/// it. SIGQUIT is the request for a thread dump: wherever it comes from, it cancels the run only
/// when the program dies of it.
///
/// Without a CancelSignals there is nothing to note, and it does nothing.
class SignalRelay {
 public:
  /// `ownGroup`: the child gets a process group of its own, so that every signal goes to the
  /// launcher alone.
  explicit SignalRelay(bool ownGroup);
  SignalRelay(const SignalRelay&) = delete;
  SignalRelay& operator=(const SignalRelay&) = delete;
  ~SignalRelay();

  /// Tells which shell it is about, once it has been started; -1 when it is no longer there.
  void setShell(pid_t shell) { shell_ = shell; }
  /// Whether a signal waits to be handled.
  [[nodiscard]] bool isPending() const;
  /// Decides about the noted signals. Does not return from one that ends the launcher.
  void handle();
  /// To be called with the wait status of the shell when it has ended and nothing is left to be
  /// read from its program. A program that outlives its shell, because the whole group was told to
  /// end, is waited for: nobody may be left who would have to read what it writes.
  void shellEnded(int status);

 private:
  void handle(int signal);
  void handOn(int signal) const;
  void waitForOrphans();

  CancelSignals* signals_;
  std::optional<GroupWitness> witness_;
  pid_t shell_ = -1;
  // What the group was told, or the program by the launcher, without cancelling the run so far.
  bool interrupted_ = false;
  bool quit_ = false;
  // Whether the group was told to end.
  bool groupEnds_ = false;
};

}  // namespace vessant
