// Tells a signal to the whole process group from one to the launcher alone.
#pragma once

#include <sys/types.h>

#include "launcher/base/Handles.h"

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

}  // namespace vessant
