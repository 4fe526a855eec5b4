#include "support/StubbornEntries.h"

#include <cerrno>

namespace {

vessant::test::StubbornEntries* active = nullptr;

}  // namespace

extern "C" {
// The linker's names for the function itself and for what stands in its place.
int __real_unlinkat(int fd, const char* name, int flags);  // NOLINT(bugprone-reserved-identifier)

// NOLINTNEXTLINE(bugprone-reserved-identifier)
int __wrap_unlinkat(int fd, const char* name, int flags) {
  if (active == nullptr || !active->refuses(name)) return __real_unlinkat(fd, name, flags);
  errno = EPERM;
  return -1;
}
}

namespace vessant::test {

StubbornEntries::StubbornEntries() {
  active = this;
}

StubbornEntries::~StubbornEntries() {
  active = nullptr;
}

bool StubbornEntries::refuses(const std::string& name) {
  beforeEach(name);
  const auto found = names_.find(name);
  if (found == names_.end()) return false;
  ++found->second;
  return true;
}

}  // namespace vessant::test
