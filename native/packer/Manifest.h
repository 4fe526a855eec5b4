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
//       jvm-installer     jre.run  unpacks=312:48211033
//     /:
//
// A line of FILES is a kind, the id by which scripts name the file, its path and, if it shall have
// another than its own, its name. Paths and names may stand in double quotes. The id may be left
// out: such lines are numbered from 1 on, in their order and past the ids that are given. A word of
// digits behind the kind is the id. The last word may tell how many files and bytes unpacking the
// file makes. The files are packed in the order of the lines.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/SString.h"
#include "packer/FileKinds.h"
#include "packer/Finding.h"
#include "packer/ManifestLine.h"
#include "packer/check/TagText.h"

namespace vessant {

/// One file to pack.
struct PackedFile {
  FileType type;
  /// By which scripts and launch commands name the file; no other file has it.
  std::uint32_t id;
  /// Where the file was found: relative to the current directory, or absolute.
  SString path;
  /// Under which it is packed and extracted: no slash, no control character, no other's name.
  SString name;
  /// In the manifest's text.
  int line = 0;
  /// As the manifest says; what `bundle-jvm` made is measured when it is packed.
  std::optional<SizeInformation> unpacks = {};
};

struct Manifest {
  /// The manifest itself, as the user named it.
  std::string path;
  /// Its text, with lines.
  TagText text;
  /// The installer to write. Empty when the manifest names none.
  SString output;
  /// The launcher to put in front. Empty when the manifest names none.
  SString launcher;
  /// The mode byte, 0 to 255.
  std::uint8_t mode = 0;
  /// Whether large files begin on a page.
  bool align = true;
  /// In the order in which they are packed; without those whose lines cannot be understood.
  std::vector<PackedFile> files;
};

/// Where relative paths are looked for, besides the manifest's own directory, which comes first.
using SearchPath = std::vector<SString>;

/// The manifest that `path` means: the only file *.manifest in a directory, else `path` itself.
/// Throws LauncherException when a directory holds none or more than one.
[[nodiscard]] std::string manifestAt(const std::string& path);

/// Reads the manifest at `path`, or from standard input for "-". Everything that the launcher would
/// stumble over is a finding with its line: unknown kinds, bad or repeated ids, repeated or
/// unusable names, files that are not there or cannot be read. Lines that cannot be understood are
/// left out. Throws LauncherException when the manifest itself cannot be read.
[[nodiscard]] Manifest readManifest(const std::string& path, const SearchPath& searchPath,
                                    Findings& findings);

}  // namespace vessant
