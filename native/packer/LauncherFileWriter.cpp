#include "packer/LauncherFileWriter.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "packer/ByteSource.h"
#include "packer/Installer.h"
#include "packer/OutputFile.h"
#include "packer/Text.h"

namespace vessant {
namespace {

bool endsWithoutLineBreak(const ByteSource& source) {
  return source.length() > 0 && source.bytesAt(source.length() - 1, 1) != "\n";
}

/// The bytes that were measured, of a file that may have changed since.
ByteSource openMeasured(const std::string& path, std::uint64_t length) {
  ByteSource source(path);
  if (source.length() == length) return source;
  throw failure(printable(path) + ": was changed while it was being packed");
}

/// Writes what stands behind the files: the index, the mode byte and the trailer.
class IndexWriter {
 public:
  /// The index begins at the file's present end.
  explicit IndexWriter(OutputFile& file) : file_(file), start_(file.position()) {}

  void begin(std::size_t count);
  void add(const PackedFile& file, std::uint64_t length, std::uint64_t offset);
  void finish(std::uint8_t mode);

 private:
  void writeNumber(std::uint64_t number, int bytes);

  OutputFile& file_;
  std::uint64_t start_;
};

void IndexWriter::begin(std::size_t count) {
  writeNumber(count, 4);
}

void IndexWriter::add(const PackedFile& file, std::uint64_t length, std::uint64_t offset) {
  writeNumber(static_cast<std::uint64_t>(file.type), 1);
  writeNumber(file.id, 4);
  writeNumber(length, 4);
  writeNumber(offset, 4);
  writeNumber(file.name.length(), 2);
  file_.write(file.name);
  writeNumber(file.unpacks ? kHasSizeInformation : 0, 1);
  if (!file.unpacks) return;
  writeNumber(file.unpacks->files, 4);
  writeNumber(file.unpacks->bytes, 4);
}

void IndexWriter::finish(std::uint8_t mode) {
  writeNumber(mode, 1);
  writeNumber(start_, 4);
  writeNumber(kIdentification, 4);
}

/// Most significant byte first.
void IndexWriter::writeNumber(std::uint64_t number, int bytes) {
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
    const char byte = static_cast<char>(number >> static_cast<unsigned>(shift));
    file_.write({&byte, 1});
  }
}

/// Stands at the start of the second line of a runtime that `vspack bundle-jvm` made, in front of
/// FILES:BYTES.
constexpr std::string_view kBundleMark = "# vspack bundle-jvm unpacks=";

/// What unpacking the runtime makes, as it says itself; nothing for any other file.
std::optional<SizeInformation> measuredSizeOf(const ByteSource& installer) {
  constexpr std::size_t kTwoLines = 256;
  const std::string head = installer.bytesAt(0, kTwoLines);
  const std::size_t start = head.find('\n') + 1;
  const std::size_t end = head.find('\n', start);
  if (start == 0 || end == std::string::npos) return std::nullopt;
  const std::string_view line = std::string_view(head).substr(start, end - start);
  if (!head.starts_with("#!") || !line.starts_with(kBundleMark)) return std::nullopt;
  return readSizeInformation(line.substr(kBundleMark.size()));
}

}  // namespace

LauncherFileWriter::LauncherFileWriter(const Manifest& manifest, Findings& findings)
    : manifest_(manifest) {
  checkLauncher(findings);
  for (const PackedFile& file : manifest.files) measure(file);
  place(findings);
}

/// A launcher that already carries files is an installer: packing it again is a mistake.
void LauncherFileWriter::checkLauncher(Findings& findings) {
  const Installer launcher(str(manifest_.launcher));
  launcherLength_ = launcher.size();
  if (!launcher.isInstaller()) return;
  findings.error(launcher.path(), 0, "launcher-carries-files",
                 "this launcher carries files already: it is an installer");
}

void LauncherFileWriter::measure(const PackedFile& file) {
  const ByteSource source(str(file.path));
  Part part{file, source.length(), 0, isTextType(file.type) && endsWithoutLineBreak(source)};
  if (file.type == FileType::JvmInstaller && !file.unpacks) {
    part.file.unpacks = measuredSizeOf(source);
  }
  parts_.push_back(std::move(part));
}

void LauncherFileWriter::place(Findings& findings) {
  std::vector<PlacedPart> places;
  for (const Part& part : parts_) places.push_back({part.length, part.needsLineBreak});
  const Layout layout = layOut(launcherLength_, places, manifest_.align);
  indexOffset_ = layout.indexOffset;
  for (std::size_t i = 0; i < parts_.size(); ++i) parts_[i].offset = layout.offsets[i];
  fits_ = layout.fits();
  if (parts_.size() > Installer::kMostFiles) {
    findings.error(
        manifest_.path, 0, "too-many-files",
        "an installer cannot carry more than " + std::to_string(Installer::kMostFiles) + " files");
  }
}

void LauncherFileWriter::write(const Session& session) const {
  if (!fits_) throw failure(str(manifest_.output) + ": would have more than 4 GiB");
  Progress progress(session, "packing " + printable(str(manifest_.output)), indexOffset_);
  const auto advance = [&progress](std::uint64_t bytes) { progress.advance(bytes); };
  OutputFile output(str(manifest_.output), OutputFile::kProgram);
  output.append(openMeasured(str(manifest_.launcher), launcherLength_), advance);
  for (const Part& part : parts_) {
    output.padTo(part.offset);
    output.append(openMeasured(str(part.file.path), part.length), advance);
    if (part.needsLineBreak) output.write("\n");
  }
  IndexWriter index(output);
  index.begin(parts_.size());
  for (const Part& part : parts_) index.add(part.file, part.length, part.offset);
  index.finish(manifest_.mode);
  output.publish();
}

bool Layout::fits() const {
  constexpr std::uint64_t kLargest = 0xFFFFFFFFU;
  return indexOffset <= kLargest;  // everything else lies in front of it
}

Layout layOut(std::uint64_t launcherLength, const std::vector<PlacedPart>& parts, bool align) {
  Layout layout;
  std::uint64_t position = launcherLength;
  for (const PlacedPart& part : parts) {
    if (align && part.length >= kAlignedSize) {
      position = (position + kAlignment - 1) / kAlignment * kAlignment;
    }
    layout.offsets.push_back(position);
    position += part.length + (part.needsLineBreak ? 1 : 0);
  }
  layout.indexOffset = position;
  return layout;
}

}  // namespace vessant
