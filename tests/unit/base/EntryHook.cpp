#include "unit/base/EntryHook.h"

#include <utility>

namespace {

const std::function<void(dirent64&)>* activeChange = nullptr;

}  // namespace

extern "C" {
// The linker's names for the function itself and for what stands in its place.
ssize_t __real_getdents64(int fd, void* buffer,
                          std::size_t size);  // NOLINT(bugprone-reserved-identifier)

// NOLINTNEXTLINE(bugprone-reserved-identifier)
ssize_t __wrap_getdents64(int fd, void* buffer, std::size_t size) {
  const ssize_t filled = __real_getdents64(fd, buffer, size);
  if (activeChange == nullptr) return filled;
  for (ssize_t position = 0; position < filled;) {
    auto& entry = *reinterpret_cast<dirent64*>(static_cast<char*>(buffer) + position);
    (*activeChange)(entry);
    position += entry.d_reclen;
  }
  return filled;
}
}

namespace vessant::test {

EntryHook::EntryHook(std::function<void(dirent64&)> change) : change_(std::move(change)) {
  activeChange = &change_;
}

EntryHook::~EntryHook() {
  activeChange = nullptr;
}

}  // namespace vessant::test
