// Shows the directory entries that the code under test reads to a test first, which may change
// them: a file system of its own making. The test program is linked so that every call of
// getdents64 in it passes through here; without a hook nothing changes.
#pragma once

#include <functional>

#include <dirent.h>

namespace vessant::test {

/// In effect while it lives. Only one at a time.
class EntryHook {
 public:
  explicit EntryHook(std::function<void(dirent64&)> change);
  EntryHook(const EntryHook&) = delete;
  EntryHook& operator=(const EntryHook&) = delete;
  ~EntryHook();

 private:
  std::function<void(dirent64&)> change_;
};

}  // namespace vessant::test
