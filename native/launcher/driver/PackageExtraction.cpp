#include "launcher/driver/PackageExtraction.h"

#include "launcher/base/Exceptions.h"
#include "launcher/tagfile/InputFile.h"

namespace vessant {
namespace {

constexpr const char* kExtractedInputFile = "input.tag";

/// Several JVM files are all used, but of the scripts the last of a kind stands.
void nameInInputFile(const FileIndexEntry& entry, TagFile& tags) {
  if (entry.type == FileType::JvmFile) {
    tags.addValue(inputkey::kJvm, entry.fileName);
  } else if (entry.type == FileType::LaunchScript) {
    tags.setValue(inputkey::kLaunchScript, entry.fileName);
  } else if (entry.type == FileType::Instructions) {
    tags.setValue(inputkey::kInstructions, entry.fileName);
  }
}

}  // namespace

void PackageExtraction::extractFiles() {
  objects_.loadIndex();
  try {
    writeExtractedInputFile();
  } catch (const LauncherException& error) {
    const SString context = services_.messages.errorText(ErrorId::ExtractionFailed);
    if (error.message().view().starts_with(context)) throw;  // it says so already
    throw LauncherException(context + error.message());
  }
  services_.console.finishProgress();
}

void PackageExtraction::writeExtractedInputFile() {
  TagFile tags;
  tags.setValue(inputkey::kAction, kRunInstructionsAction);
  for (const FileIndexEntry& entry : state_.launcherFile.index()) {
    nameInInputFile(entry, tags);
    static_cast<void>(services_.extractor.extractFile(entry, "", PartialFile::Removed));
  }
  tags.save(kExtractedInputFile);
}

}  // namespace vessant
