// The C library's calls as the launcher's own code reaches them when it is linked with --wrap: each
// asks the plan and then fails or goes on to the real one.

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include "faults/FaultPlan.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the linker gives the names
// NOLINTBEGIN(bugprone-macro-parentheses): types and parameter lists

using vessant::test::Fault;
using vessant::test::FaultyCall;
using vessant::test::useOf;

namespace {

/// Whether a call ends here, with errno set. Only a use that may be interrupted or cut short is
/// ever planned so.
bool fails(FaultyCall call, int error) {
  const Fault fault = useOf(call);
  if (fault == Fault::Error) errno = error;
  if (fault == Fault::Interrupted) errno = EINTR;
  return fault == Fault::Error || fault == Fault::Interrupted;
}

/// The same for a call that moves `count` bytes or items; a short one moves half of them.
bool failsOrShortens(FaultyCall call, int error, std::size_t& count) {
  const Fault fault = useOf(call);
  if (fault == Fault::Short && count > 1) count /= 2;
  if (fault == Fault::Error) errno = error;
  if (fault == Fault::Interrupted) errno = EINTR;
  return fault == Fault::Error || fault == Fault::Interrupted;
}

}  // namespace

extern "C" {

#define FAILING(result, name, failure, error, parameters, arguments) \
  result __real_##name parameters;                                   \
  result __wrap_##name parameters {                                  \
    if (fails(FaultyCall::name, error)) return failure;              \
    return __real_##name arguments;                                  \
  }

#define MOVING(result, name, failure, error, count, parameters, arguments) \
  result __real_##name parameters;                                         \
  result __wrap_##name parameters {                                        \
    if (failsOrShortens(FaultyCall::name, error, count)) return failure;   \
    return __real_##name arguments;                                        \
  }

/// What is closed is closed, whatever the call returns.
#define CLOSING(result, name, failure, error, parameters, arguments) \
  result __real_##name parameters;                                   \
  result __wrap_##name parameters {                                  \
    const Fault fault = useOf(FaultyCall::name);                     \
    const result done = __real_##name arguments;                     \
    if (fault == Fault::None) return done;                           \
    errno = error;                                                   \
    return failure;                                                  \
  }

using Path = const char*;

FAILING(int, access, -1, EACCES, (Path path, int mode), (path, mode))
FAILING(int, chdir, -1, EACCES, (Path path), (path))
FAILING(int, chmod, -1, EPERM, (Path path, mode_t mode), (path, mode))
CLOSING(int, close, -1, EIO, (int fd), (fd))
CLOSING(int, closedir, -1, EIO, (DIR * stream), (stream))
MOVING(ssize_t, copy_file_range, -1, EIO, count,
       (int in, off_t* from, int out, off_t* to, size_t count, unsigned flags),
       (in, from, out, to, count, flags))
FAILING(int, dup, -1, EMFILE, (int fd), (fd))
FAILING(int, dup2, -1, EMFILE, (int fd, int target), (fd, target))
FAILING(int, eventfd, -1, EMFILE, (unsigned count, int flags), (count, flags))
FAILING(int, execve, -1, ENOENT, (Path path, char* const* arguments, char* const* environment),
        (path, arguments, environment))
FAILING(int, execvp, -1, ENOENT, (Path path, char* const* arguments), (path, arguments))
FAILING(int, fallocate, -1, ENOSPC, (int fd, int mode, off_t offset, off_t length),
        (fd, mode, offset, length))
FAILING(int, fchdir, -1, EACCES, (int fd), (fd))
FAILING(int, fchmod, -1, EPERM, (int fd, mode_t mode), (fd, mode))
FAILING(int, fchmodat, -1, EPERM, (int fd, Path path, mode_t mode, int flags),
        (fd, path, mode, flags))
CLOSING(int, fclose, EOF, ENOSPC, (FILE * file), (file))
FAILING(FILE*, fdopen, nullptr, ENOMEM, (int fd, Path mode), (fd, mode))
FAILING(DIR*, fdopendir, nullptr, ENOMEM, (int fd), (fd))
FAILING(int, fflush, EOF, ENOSPC, (FILE * file), (file))
FAILING(FILE*, fopen, nullptr, EMFILE, (Path path, Path mode), (path, mode))
FAILING(pid_t, fork, -1, EAGAIN, (), ())
MOVING(size_t, fread, 0, EIO, count, (void* buffer, size_t size, size_t count, FILE* file),
       (buffer, size, count, file))
FAILING(int, fseek, -1, EIO, (FILE * file, long offset, int whence), (file, offset, whence))
FAILING(int, fseeko, -1, EIO, (FILE * file, off_t offset, int whence), (file, offset, whence))
FAILING(int, fstat, -1, EIO, (int fd, struct stat* status), (fd, status))
FAILING(int, fstatat, -1, EACCES, (int fd, Path path, struct stat* status, int flags),
        (fd, path, status, flags))
FAILING(off_t, ftello, -1, EIO, (FILE * file), (file))
FAILING(int, ftruncate, -1, EIO, (int fd, off_t length), (fd, length))
MOVING(size_t, fwrite, 0, ENOSPC, count,
       (const void* buffer, size_t size, size_t count, FILE* file), (buffer, size, count, file))
FAILING(char*, getcwd, nullptr, ENOENT, (char* buffer, size_t size), (buffer, size))
FAILING(ssize_t, getdents64, -1, EIO, (int fd, void* buffer, size_t size), (fd, buffer, size))
FAILING(off_t, lseek, -1, ESPIPE, (int fd, off_t offset, int whence), (fd, offset, whence))
FAILING(int, kill, -1, EPERM, (pid_t process, int number), (process, number))
FAILING(int, lstat, -1, EACCES, (Path path, struct stat* status), (path, status))
FAILING(int, mkdir, -1, ENOSPC, (Path path, mode_t mode), (path, mode))
FAILING(int, mkdirat, -1, ENOSPC, (int fd, Path path, mode_t mode), (fd, path, mode))
FAILING(DIR*, opendir, nullptr, EMFILE, (Path path), (path))
FAILING(int, pipe2, -1, EMFILE, (int* fds, int flags), (fds, flags))
FAILING(int, poll, -1, ENOMEM, (pollfd * fds, nfds_t count, int timeout), (fds, count, timeout))
FAILING(int, ppoll, -1, ENOMEM,
        (pollfd * fds, nfds_t count, const timespec* timeout, const sigset_t* mask),
        (fds, count, timeout, mask))
MOVING(ssize_t, pread, -1, EIO, count, (int fd, void* buffer, size_t count, off_t offset),
       (fd, buffer, count, offset))
MOVING(ssize_t, pwrite, -1, ENOSPC, count, (int fd, const void* buffer, size_t count, off_t offset),
       (fd, buffer, count, offset))
MOVING(ssize_t, read, -1, EIO, count, (int fd, void* buffer, size_t count), (fd, buffer, count))
FAILING(dirent*, readdir, nullptr, EIO, (DIR * stream), (stream))
FAILING(ssize_t, readlink, -1, EACCES, (Path path, char* buffer, size_t size), (path, buffer, size))
MOVING(ssize_t, recv, -1, EIO, count, (int fd, void* buffer, size_t count, int flags),
       (fd, buffer, count, flags))
FAILING(int, remove, -1, EPERM, (Path path), (path))
FAILING(int, rename, -1, EPERM, (Path from, Path to), (from, to))
FAILING(int, rmdir, -1, EBUSY, (Path path), (path))
MOVING(ssize_t, send, -1, EPIPE, count, (int fd, const void* buffer, size_t count, int flags),
       (fd, buffer, count, flags))
FAILING(int, setpgid, -1, EPERM, (pid_t process, pid_t group), (process, group))
FAILING(int, sigaction, -1, EINVAL,
        (int number, const struct sigaction* action, struct sigaction* before),
        (number, action, before))
FAILING(int, sigprocmask, -1, EINVAL, (int how, const sigset_t* set, sigset_t* before),
        (how, set, before))
FAILING(int, socketpair, -1, EMFILE, (int domain, int type, int protocol, int* fds),
        (domain, type, protocol, fds))
FAILING(int, stat, -1, EACCES, (Path path, struct stat* status), (path, status))
FAILING(int, statvfs, -1, EIO, (Path path, struct statvfs* status), (path, status))
FAILING(int, statx, -1, EACCES, (int fd, Path path, int flags, unsigned mask, struct statx* status),
        (fd, path, flags, mask, status))
FAILING(char*, tempnam, nullptr, ENOMEM, (Path directory, Path prefix), (directory, prefix))
FAILING(int, unlink, -1, EPERM, (Path path), (path))
FAILING(int, unlinkat, -1, EPERM, (int fd, Path path, int flags), (fd, path, flags))
FAILING(int, waitid, -1, ECHILD, (idtype_t type, id_t id, siginfo_t* info, int options),
        (type, id, info, options))
FAILING(pid_t, waitpid, -1, ECHILD, (pid_t child, int* status, int options),
        (child, status, options))
MOVING(ssize_t, write, -1, ENOSPC, count, (int fd, const void* buffer, size_t count),
       (fd, buffer, count))

// Those with a further argument: it is handed on whether it was given or not, which the C library's
// own entry points survive on every machine that Linux runs on.

int __real_open(Path path, int flags, mode_t mode);
int __wrap_open(Path path, int flags, mode_t mode) {
  if (fails(FaultyCall::open, EMFILE)) return -1;
  return __real_open(path, flags, mode);
}

int __real_openat(int fd, Path path, int flags, mode_t mode);
int __wrap_openat(int fd, Path path, int flags, mode_t mode) {
  if (fails(FaultyCall::openat, EMFILE)) return -1;
  return __real_openat(fd, path, flags, mode);
}

int __real_fcntl(int fd, int command, long argument);
int __wrap_fcntl(int fd, int command, long argument) {
  if (fails(FaultyCall::fcntl, EINVAL)) return -1;
  return __real_fcntl(fd, command, argument);
}

int __real_ioctl(int fd, unsigned long request, long argument);
int __wrap_ioctl(int fd, unsigned long request, long argument) {
  if (fails(FaultyCall::ioctl, ENOTTY)) return -1;
  return __real_ioctl(fd, request, argument);
}

int __real_prctl(int option, long a, long b, long c, long d);
int __wrap_prctl(int option, long a, long b, long c, long d) {
  if (fails(FaultyCall::prctl, EINVAL)) return -1;
  return __real_prctl(option, a, b, c, d);
}

/// The arguments come one by one, up to a null pointer.
int __wrap_execl(Path path, const char* first, ...) {
  if (fails(FaultyCall::execl, ENOENT)) return -1;
  constexpr std::size_t kMost = 16;
  char* arguments[kMost] = {const_cast<char*>(first)};
  va_list rest;
  va_start(rest, first);
  for (std::size_t i = 1; i + 1 < kMost && arguments[i - 1] != nullptr; ++i) {
    arguments[i] = va_arg(rest, char*);
  }
  va_end(rest);
  return execv(path, arguments);
}

long __real_syscall(long number, long a, long b, long c, long d, long e);
long __wrap_syscall(long number, long a, long b, long c, long d, long e) {
  if (fails(FaultyCall::syscall, ENOSYS)) return -1;
  return __real_syscall(number, a, b, c, d, e);
}

/// The one call here that returns its error.
int __real_posix_spawn(pid_t* child, Path path, const posix_spawn_file_actions_t* actions,
                       const posix_spawnattr_t* attributes, char* const* arguments,
                       char* const* environment);
int __wrap_posix_spawn(pid_t* child, Path path, const posix_spawn_file_actions_t* actions,
                       const posix_spawnattr_t* attributes, char* const* arguments,
                       char* const* environment) {
  if (fails(FaultyCall::posix_spawn, EAGAIN)) return EAGAIN;
  return __real_posix_spawn(child, path, actions, attributes, arguments, environment);
}

}  // extern "C"

// NOLINTEND(bugprone-macro-parentheses)
// NOLINTEND(bugprone-reserved-identifier)
