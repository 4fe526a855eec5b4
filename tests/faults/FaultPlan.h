// Which use of which system call fails. The plan comes with the environment and holds for the
// process and the copies that it makes of itself, not for the programs that it starts.
//
//     VESSANT_FAULT=write:3:error    the third use of write fails; "interrupted" and "short" are
//                                    the other ways
//     VESSANT_FAULT_USES=FILE        an existing file, in which the uses of each call are counted
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vessant::test {

/// Every call that can be made to fail.
// clang-format off
#define VESSANT_FAULTY_CALLS(CALL) \
  CALL(access) CALL(chdir) CALL(chmod) CALL(close) CALL(closedir) CALL(copy_file_range) \
  CALL(dup) CALL(dup2) CALL(eventfd) CALL(execl) CALL(execve) CALL(execvp) CALL(fallocate) CALL(fchdir) \
  CALL(fchmod) CALL(fchmodat) CALL(fclose) CALL(fcntl) CALL(fdopen) CALL(fdopendir) \
  CALL(fflush) CALL(fopen) CALL(fork) CALL(fread) CALL(fseek) CALL(fseeko) CALL(fstat) \
  CALL(fstatat) CALL(ftello) CALL(ftruncate) CALL(fwrite) CALL(getcwd) CALL(getdents64) \
  CALL(ioctl) CALL(kill) CALL(lseek) CALL(lstat) CALL(mkdir) CALL(mkdirat) CALL(open) \
  CALL(openat) CALL(opendir) CALL(pipe2) CALL(poll) CALL(posix_spawn) CALL(ppoll) CALL(prctl) \
  CALL(pread) CALL(pwrite) CALL(read) CALL(readdir) CALL(readlink) CALL(recv) CALL(remove) \
  CALL(rename) CALL(rmdir) CALL(send) CALL(setpgid) CALL(sigaction) CALL(sigprocmask) \
  CALL(socketpair) CALL(stat) CALL(statvfs) CALL(statx) CALL(syscall) CALL(tempnam) \
  CALL(unlink) CALL(unlinkat) CALL(waitid) CALL(waitpid) CALL(write)
// clang-format on

enum class FaultyCall : std::size_t {
#define VESSANT_CALL(name) name,
  VESSANT_FAULTY_CALLS(VESSANT_CALL)
#undef VESSANT_CALL
};

struct FaultyCallName {
  const char* name;
};
inline constexpr FaultyCallName kFaultyCalls[] = {
#define VESSANT_CALL(name) {#name},
    VESSANT_FAULTY_CALLS(VESSANT_CALL)
#undef VESSANT_CALL
};
inline constexpr std::size_t kFaultyCallCount = std::size(kFaultyCalls);

enum class Fault { None, Error, Interrupted, Short };

/// Counts a use of the call and says how it shall end.
[[nodiscard]] Fault useOf(FaultyCall call);

}  // namespace vessant::test
