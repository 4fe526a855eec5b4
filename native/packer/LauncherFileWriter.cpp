#include "packer/LauncherFileWriter.h"

#include <vector>

#include "launcher/base/Exceptions.h"
#include "packer/ByteSource.h"
#include "packer/Installer.h"
#include "packer/OutputFile.h"
#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::uint64_t kLargestOffset = 0xFFFFFFFFU;

/// Where the bytes of a packed file ended up.
struct Placement {
  std::uint32_t offset;
  std::uint32_t length;
};

class InstallerWriter {
 public:
  explicit InstallerWriter(const SString& output) : file_(str(output), OutputFile::kProgram) {}

  void write(const Manifest& manifest);

 private:
  Placement appendFile(const SString& path);
  void writeEntry(const PackedFile& file, const Placement& placement);
  void writeNumber(std::uint32_t number, int bytes);

  OutputFile file_;
};

void InstallerWriter::write(const Manifest& manifest) {
  appendFile(manifest.launcher);
  std::vector<Placement> placements;
  for (const PackedFile& file : manifest.files) placements.push_back(appendFile(file.path));
  const auto indexOffset = static_cast<std::uint32_t>(file_.position());
  writeNumber(static_cast<std::uint32_t>(manifest.files.size()), 4);
  for (std::size_t i = 0; i < placements.size(); ++i) writeEntry(manifest.files[i], placements[i]);
  writeNumber(manifest.mode, 1);
  writeNumber(indexOffset, 4);
  writeNumber(kIdentification, 4);
  file_.publish();
}

Placement InstallerWriter::appendFile(const SString& path) {
  const ByteSource source(str(path));
  const std::uint64_t start = file_.position();
  if (start + source.length() > kLargestOffset) {
    throw LauncherException(path + ": an installer cannot be larger than 4 GiB");
  }
  file_.append(source);
  return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(source.length())};
}

void InstallerWriter::writeEntry(const PackedFile& file, const Placement& placement) {
  constexpr std::uint32_t kNoSizeInformation = 0;
  writeNumber(static_cast<std::uint32_t>(file.type), 1);
  writeNumber(file.id, 4);
  writeNumber(placement.length, 4);
  writeNumber(placement.offset, 4);
  writeNumber(file.name.length(), 2);
  file_.write(file.name);
  writeNumber(kNoSizeInformation, 1);
}

/// Most significant byte first.
void InstallerWriter::writeNumber(std::uint32_t number, int bytes) {
  char text[4];
  for (int i = 0; i < bytes; ++i) text[i] = static_cast<char>(number >> (8 * (bytes - 1 - i)));
  file_.write({text, static_cast<std::size_t>(bytes)});
}

/// A launcher that already carries files is an installer: packing it again is a mistake.
void checkLauncher(const SString& launcher) {
  if (!Installer(str(launcher)).isInstaller()) return;
  throw LauncherException(launcher + ": this launcher carries files already");
}

/// Syntax errors of the author's texts are found here and not by the user.
void checkTagFiles(const Manifest& manifest, LogSink& log) {
  for (const PackedFile& file : manifest.files) {
    FileIndexEntry entry;
    entry.type = file.type;
    if (isTagFileType(entry)) static_cast<void>(TagFile(file.path, log));
  }
}

}  // namespace

void writeLauncherFile(const Manifest& manifest, LogSink& log) {
  checkLauncher(manifest.launcher);
  checkTagFiles(manifest, log);
  InstallerWriter(manifest.output).write(manifest);
}

}  // namespace vessant
