// Copies of files and directory trees. Links and special files are passed over.
#pragma once

#include <cstdint>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// What a tree holds, in regular files.
struct TreeSize {
  std::uint64_t bytes = 0;
  std::uint64_t files = 0;
};

[[nodiscard]] TreeSize directorySize(const SString& directory);

/// Copies one file and its permissions. An existing target is written over but not cut, so that a
/// longer one keeps its tail. Returns 0, or -1 when either file cannot be opened, read or written.
[[nodiscard]] int copyFile(const SString& source, const SString& target);

/// Copies a tree into `target`, which is made when it is missing. Returns 0, or -1 at the first
/// file or directory that cannot be copied, which is logged.
[[nodiscard]] int copyDirectory(const SString& source, const SString& target, LogSink& log);

/// The same behind a check of the free space. Throws LauncherException on failure.
void copyDirectoryChecked(const SString& source, const SString& target,
                          const RunServices& services);

}  // namespace vessant
