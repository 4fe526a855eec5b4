// In the build that counts lines: a process that ends without the C library's clean-up, or becomes
// another program, writes down its counters first.

#include <csignal>
#include <cstdarg>

#include <unistd.h>

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's own names, and the compiler's

extern "C" {

void __gcov_dump();

[[noreturn]] void __real__exit(int status);
int __real_raise(int signal);
int __real_execvp(const char* file, char* const* arguments);

[[noreturn]] void __wrap__exit(int status) {
  // What is said of counters that cannot be written is no part of the program's output.
  static_cast<void>(::dup2(STDIN_FILENO, STDERR_FILENO));
  __gcov_dump();
  __real__exit(status);
}

int __wrap_raise(int signal) {
  __gcov_dump();
  return __real_raise(signal);
}

int __wrap_execvp(const char* file, char* const* arguments) {
  __gcov_dump();
  return __real_execvp(file, arguments);
}

int __wrap_execl(const char* path, const char* first, ...) {
  constexpr int kMost = 8;
  char* arguments[kMost + 1] = {const_cast<char*>(first)};
  va_list rest;
  va_start(rest, first);
  for (int i = 1; i < kMost && arguments[i - 1] != nullptr; ++i) {
    arguments[i] = va_arg(rest, char*);
  }
  va_end(rest);
  __gcov_dump();
  return ::execv(path, arguments);
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier)
