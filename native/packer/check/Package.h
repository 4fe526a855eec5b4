// Everything that goes into an installer, or is in one: what `check` looks at.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "launcher/archive/LauncherFormat.h"
#include "packer/ByteSource.h"
#include "packer/Finding.h"
#include "packer/Installer.h"
#include "packer/Manifest.h"
#include "packer/check/Statement.h"
#include "packer/check/TagText.h"

namespace vessant {

/// A packed file, or one that is to be packed.
struct PackageFile {
  FileType type = FileType::Instructions;
  std::uint32_t id = 0;
  std::string name;
  /// The file's name for findings.
  std::string label;
  /// The line of the manifest that names it; 0 without a manifest.
  int line = 0;
  ByteSource bytes;
  /// What it unpacks into.
  std::uint64_t expandedSize = 0;
  /// What the launcher reads as tags, for the kinds that are texts.
  TagText text = {};
};

/// Owns what it knows of every file but their bytes, which stay where they are until they are asked
/// for. It is the same for a manifest and for a finished installer, so that both are checked alike.
struct Package {
  /// The manifest or the installer, and the line of its list of files.
  std::string label;
  int line = 0;
  /// Where relative paths of the installer lead.
  std::string directory;
  std::uint8_t mode = 0;
  std::optional<ByteSource> launcher;
  int launcherLine = 0;
  std::vector<PackageFile> files;
  /// False when a file is named but not there: then nothing can be said of what is missing.
  bool isComplete = true;
  /// The statements of the script that is used.
  std::vector<Statement> statements;

  /// The first file of a kind, which is the one that counts, or null.
  [[nodiscard]] const PackageFile* first(FileType type) const;
  /// The first file with the id, which is the one that the launcher takes, or null.
  [[nodiscard]] const PackageFile* withId(std::int64_t id) const;
  /// All files of a kind, in their order.
  [[nodiscard]] std::vector<const PackageFile*> all(FileType type) const;
  /// The last application archive, which is the one that commands get, or null.
  [[nodiscard]] const PackageFile* applicationArchive() const;
};

/// Whether the script has a statement with this verb.
[[nodiscard]] bool uses(const Package& package, Verb verb);
/// Whether the script launches with the file: ILAUNCH and its id.
[[nodiscard]] bool isLaunchedById(const Package& package, const PackageFile& file);
/// The argument of the statement that is the id of a file, or nothing when it has none.
[[nodiscard]] std::optional<std::string> idArgument(const Statement& statement);

/// What a manifest puts together, behind its launcher. Files that cannot be read are left out: they
/// were reported when the manifest was read. Throws LauncherException for such a launcher.
[[nodiscard]] Package packageOf(const Manifest& manifest);

/// What an installer carries. Files whose bytes are not there are left out: its structure is not
/// looked at here. A text that runs into the next file is reported.
[[nodiscard]] Package packageOf(const Installer& installer, Findings& findings);

}  // namespace vessant
