#include "packer/LauncherFileWriter.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "packer/ByteSource.h"
#include "packer/IndexWriter.h"
#include "packer/Installer.h"
#include "packer/JvmBundle.h"
#include "packer/Layout.h"
#include "packer/OutputFile.h"
#include "packer/Progress.h"
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
  Progress progress(session, "packing " + str(manifest_.output), indexOffset_);
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

}  // namespace vessant
