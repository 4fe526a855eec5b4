#include "FullDisk.h"

#include <algorithm>
#include <cerrno>

#include <sys/types.h>

namespace {

vessant::test::FullDisk* active = nullptr;

}  // namespace

extern "C" {
// The linker's names for the function itself and for what stands in its place.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
ssize_t __real_write(int fd, const void* bytes, std::size_t count);

// NOLINTNEXTLINE(bugprone-reserved-identifier)
ssize_t __wrap_write(int fd, const void* bytes, std::size_t count) {
  if (active == nullptr || count == 0) return __real_write(fd, bytes, count);
  const std::size_t fitting = active->take(count);
  if (fitting > 0) return __real_write(fd, bytes, fitting);
  errno = ENOSPC;
  return -1;
}
}

namespace vessant::test {

FullDisk::FullDisk(std::size_t room) : room_(room) {
  active = this;
}

FullDisk::~FullDisk() {
  active = nullptr;
}

std::size_t FullDisk::take(std::size_t count) {
  const std::size_t fitting = std::min(room_, count);
  room_ -= fitting;
  return fitting;
}

}  // namespace vessant::test
