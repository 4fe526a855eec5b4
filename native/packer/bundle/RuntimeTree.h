// The files of a Java runtime that travel with an installer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vessant {

struct RuntimeEntry {
  enum class Kind : std::uint8_t { Directory, File, Link };

  /// The path below the Java home, without a slash in front.
  std::string name;
  Kind kind = Kind::File;
  /// A program, or a library that is marked as one.
  bool isExecutable = false;
  /// Where the file's bytes are. Empty for directories and links.
  std::string source = {};
  std::uint64_t size = 0;
  /// Where a link leads, counted from its own directory.
  std::string target = {};
};

/// What a Java home holds, sorted by name. Left out is what no running program needs: jmods, the
/// sources, manual pages and examples. A link to another file of the home stays a link; one that
/// leads out of the home, as distributions like to make them, is replaced by what it leads to, so
/// that the runtime works elsewhere; one that leads nowhere is left out. Throws LauncherException,
/// naming the path, for what cannot be read and for special files.
[[nodiscard]] std::vector<RuntimeEntry> collectRuntime(const std::string& home);

}  // namespace vessant
