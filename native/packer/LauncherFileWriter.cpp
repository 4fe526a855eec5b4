#include "packer/LauncherFileWriter.h"

#include <cstdio>
#include <vector>

#include "launcher/base/Exceptions.h"
#include "launcher/base/StdFile.h"
#include "launcher/base/SystemError.h"
#include "packer/IndexReader.h"
#include "packer/PartialFile.h"

namespace vessant {
namespace {

constexpr std::size_t kChunkSize = 1 << 16;
constexpr std::uint64_t kLargestOffset = 0xFFFFFFFFU;

/// Where the bytes of a packed file ended up.
struct Placement {
  std::uint32_t offset;
  std::uint32_t length;
};

class InstallerWriter {
 public:
  explicit InstallerWriter(const SString& output) : file_(output) {}

  void write(const Manifest& manifest);
  void finish(const Manifest& manifest, LogSink& log, const MessageSource& messages);

 private:
  Placement appendFile(const SString& path);
  void writeEntry(const PackedFile& file, const Placement& placement);
  void writeNumber(std::uint32_t number, int bytes);

  PartialFile file_;
  std::uint64_t position_ = 0;
};

void InstallerWriter::write(const Manifest& manifest) {
  appendFile(manifest.launcher);
  std::vector<Placement> placements;
  for (const PackedFile& file : manifest.files) placements.push_back(appendFile(file.path));
  const auto indexOffset = static_cast<std::uint32_t>(position_);
  writeNumber(static_cast<std::uint32_t>(manifest.files.size()), 4);
  for (std::size_t i = 0; i < placements.size(); ++i) writeEntry(manifest.files[i], placements[i]);
  writeNumber(manifest.mode, 1);
  writeNumber(indexOffset, 4);
  writeNumber(kIdentification, 4);
}

/// Reads the written file as the launcher will, before it gets its name.
void InstallerWriter::finish(const Manifest& manifest, LogSink& log,
                             const MessageSource& messages) {
  file_.close();
  LauncherFile written;
  loadIndex(written, file_.path(), log, messages);
  if (static_cast<std::size_t>(written.index().count()) != manifest.files.size()) {
    throw LauncherException(manifest.output + ": the written index cannot be read back");
  }
  file_.publish();
}

Placement InstallerWriter::appendFile(const SString& path) {
  const StdFile source = openFile(path, OpenMode::Read);
  if (source == nullptr) throw LauncherException(path + ": " + systemErrorText());
  const std::uint64_t start = position_;
  std::vector<char> chunk(kChunkSize);
  std::size_t count = 0;
  while ((count = std::fread(chunk.data(), 1, chunk.size(), source.get())) > 0) {
    file_.write({chunk.data(), count});
    position_ += count;
  }
  if (std::ferror(source.get()) != 0) throw LauncherException(path + ": " + systemErrorText());
  if (position_ > kLargestOffset) {
    throw LauncherException(path + ": an installer cannot be larger than 4 GiB");
  }
  return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(position_ - start)};
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
void checkLauncher(const SString& launcher, LogSink& log, const MessageSource& messages) {
  LauncherFile carried;
  loadIndex(carried, launcher, log, messages);
  if (carried.index().isEmpty()) return;
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

void writeLauncherFile(const Manifest& manifest, LogSink& log, const MessageSource& messages) {
  checkLauncher(manifest.launcher, log, messages);
  checkTagFiles(manifest, log);
  InstallerWriter writer(manifest.output);
  writer.write(manifest);
  writer.finish(manifest, log, messages);
}

}  // namespace vessant
