#include "launcher/linux/ProcessSetup.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace vessant {
namespace {

/// A descriptor for a stream that is missing. Without /dev it is one of a directory that can be
/// neither read nor written: the stream answers like a closed one, but its place is taken.
int openPlaceholder() {
  const int fd = ::open("/dev/null", O_RDWR);
  return fd >= 0 ? fd : ::open("/", O_PATH);
}

}  // namespace

void prepareProcess() {
  // The system gives the lowest free number each time.
  int fd = openPlaceholder();
  while (fd >= 0 && fd <= STDERR_FILENO) fd = ::dup(fd);
  if (fd > STDERR_FILENO) ::close(fd);
  // Who ignores it when he starts the launcher has the system throw away how children ended.
  std::signal(SIGCHLD, SIG_DFL);
}

}  // namespace vessant
