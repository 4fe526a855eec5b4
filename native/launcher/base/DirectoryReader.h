// Reads the entries of open directories, a large piece at a time.
#pragma once

#include <cstddef>
#include <memory>

#include <dirent.h>

namespace vessant {

/// One reader serves many directories, one after the other. It asks the kernel itself (getdents64
/// of Linux), because the C library's streams read 32 KiB at a time and allocate for each
/// directory.
class DirectoryReader {
 public:
  DirectoryReader();

  /// Reads `directory` from where it stands; the descriptor stays the caller's.
  void start(int directory);
  /// The next entry other than "." and "..", or null at the end. Good until the next call.
  ///
  /// A read error looks like the end: nobody could do more with the rest of such a directory.
  [[nodiscard]] dirent64* next();

 private:
  [[nodiscard]] bool refill();

  std::unique_ptr<std::byte[]> buffer_;
  std::size_t filled_ = 0;
  std::size_t position_ = 0;
  int directory_ = -1;
};

}  // namespace vessant
