// What a file system has room for, and what it allows.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"

namespace vessant {

struct DiskSpace {
  /// Bytes in a block.
  std::uint64_t fragmentSize;
  /// Blocks that unprivileged users may still fill.
  std::uint64_t availableBlocks;
};

/// Asks the file system of an absolute directory; for any other text, that of the current
/// directory. Throws LauncherException with the system's error text.
[[nodiscard]] DiskSpace queryDiskSpace(const SString& directory);

/// Whether the files fit: their bytes in whole blocks, and a partly used block for each of several
/// files.
[[nodiscard]] bool fitsOnDisk(std::uint32_t byteCount, std::uint32_t fileCount,
                              const DiskSpace& space);

/// Whether programs may not be run from the file system of `path`, because it is mounted noexec.
/// False also when that cannot be told.
[[nodiscard]] bool isMountedNoExec(const SString& path);

}  // namespace vessant
