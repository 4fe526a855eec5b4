// Holds another process in front of a system call of the test's choice: the one way to be in the
// middle of its work that does not depend on who is faster.
#pragma once

#include <initializer_list>

#include <sys/types.h>

namespace vessant::test {

class CallStop {
 public:
  /// Halts a child of this process wherever it is. Throws std::runtime_error where a process may
  /// not trace another.
  explicit CallStop(pid_t process);
  CallStop(const CallStop&) = delete;
  CallStop& operator=(const CallStop&) = delete;
  /// Lets it go on.
  ~CallStop() { release(); }

  /// Lets it go on until it is about to make one of these calls, in all for the `count`th time.
  /// False when it ends before.
  bool runTo(std::initializer_list<long> calls, int count = 1);
  /// Lets it go on for good. A signal, if there is one, comes when the call is done.
  void release(int signal = 0);

 private:
  [[nodiscard]] bool waitForStop(int& status) const;
  [[nodiscard]] long callThatBegins() const;

  pid_t process_;
  bool held_ = true;
};

}  // namespace vessant::test
