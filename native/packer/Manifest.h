// The manifest of an installer: which files go behind which launcher, and under which numbers.
//
// A manifest is a tag file:
//
//     OUTPUT: setup.bin
//     MODE: 0
//     FILES:
//       instructions   1  setup.instructions
//       launch-script  2  setup.launch
//       jvm           10  "jvm/java 17.jvm"  java-17.jvm
//     /:
//
// A line of FILES is a kind, the id by which scripts name the file, its path and, if it shall have
// another than its own, its name. Paths and names may stand in double quotes. The files are packed
// in the order of the lines.
#pragma once

#include <cstdint>
#include <vector>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// One file to pack.
struct PackedFile {
  FileType type;
  std::uint32_t id;
  SString path;
  SString name;
};

struct Manifest {
  /// The installer to write. Empty when the manifest names none.
  SString output;
  /// The launcher to put in front. Empty when the manifest names none.
  SString launcher;
  /// The mode byte, 0 to 255.
  std::uint8_t mode = 0;
  std::vector<PackedFile> files;
};

/// Where relative paths are looked for, besides the manifest's own directory, which comes first.
using SearchPath = std::vector<SString>;

/// The word by which manifests and listings call a kind of file.
[[nodiscard]] const char* fileTypeName(FileType type);

/// Reads a manifest. Throws LauncherException, naming the file and the line of FILES, for
/// everything that the launcher would stumble over: unknown kinds, bad or repeated ids, repeated or
/// unusable names, files that are not there.
[[nodiscard]] Manifest readManifest(const SString& path, const SearchPath& searchPath,
                                    LogSink& log);

}  // namespace vessant
