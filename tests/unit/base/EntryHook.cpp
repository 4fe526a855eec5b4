#include "unit/base/EntryHook.h"

#include <utility>

namespace {

const std::function<void(dirent&)>* activeChange = nullptr;

}  // namespace

extern "C" {
// The linker's names for the function itself and for what stands in its place.
dirent* __real_readdir(DIR* stream);  // NOLINT(bugprone-reserved-identifier)

dirent* __wrap_readdir(DIR* stream) {  // NOLINT(bugprone-reserved-identifier)
  dirent* entry = __real_readdir(stream);
  if (entry != nullptr && activeChange != nullptr) (*activeChange)(*entry);
  return entry;
}
}

namespace vessant::test {

EntryHook::EntryHook(std::function<void(dirent&)> change) : change_(std::move(change)) {
  activeChange = &change_;
}

EntryHook::~EntryHook() {
  activeChange = nullptr;
}

}  // namespace vessant::test
