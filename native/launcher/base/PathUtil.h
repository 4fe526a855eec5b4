// Questions on paths and the one separator of this platform.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <sys/types.h>

#include "launcher/base/SString.h"

namespace vessant {

inline constexpr char kPathSeparator = '/';
/// What lies between the paths of an environment variable such as PATH.
inline constexpr char kPathListSeparator = ':';

/// Appends a separator unless `path` is empty or ends in one.
void ensureTrailingSeparator(SString& path);
/// `directory`, a separator unless it is empty or ends in one, and `name`.
[[nodiscard]] SString joinPath(SString directory, std::string_view name);

/// The part before the last "/" or "\", without it; empty when there is neither. The backslash
/// counts because scripts may carry paths that were written on another system.
[[nodiscard]] SString directoryOf(const SString& path);
/// The part behind the last "/" or "\"; the whole path when there is neither.
[[nodiscard]] SString fileNameOf(const SString& path);

/// True when stat succeeds for the path.
[[nodiscard]] bool fileExists(const SString& path);
/// True when the path leads to a directory.
[[nodiscard]] bool isDirectory(const SString& path);

/// What tells a file from every other one, also from one that takes its place later.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
  /// When the file was made, in nanoseconds, because inode numbers are used again; 0 where it
  /// cannot be told, and then it tells nothing.
  std::int64_t birth = 0;
  bool operator==(const FileIdentity& other) const {
    const bool sameBirth = birth == other.birth || birth == 0 || other.birth == 0;
    return device == other.device && inode == other.inode && sameBirth;
  }
};

/// The identity of an open file, or of what lies under a name in an open directory (AT_FDCWD for
/// the current one; a link is itself). None when it cannot be told, such as for a missing file.
[[nodiscard]] std::optional<FileIdentity> identityOf(int fd);
[[nodiscard]] std::optional<FileIdentity> identityOf(int directory, const char* name);

/// The current directory, or the empty text when it cannot be told in 1023 bytes.
[[nodiscard]] SString currentDirectory();
/// `path` itself when it begins with "/", else the current directory joined with it.
[[nodiscard]] SString absolutePath(const SString& path);

}  // namespace vessant
