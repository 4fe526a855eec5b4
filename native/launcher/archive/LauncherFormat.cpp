#include "launcher/archive/LauncherFormat.h"

#include <cstdio>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/Readers.h"

namespace vessant {
namespace {

FileType readType(std::FILE* stream) {
  const int byte = ::getc_unlocked(stream);
  if (byte == EOF || byte > kLastFileType) {
    throw LauncherException("Invalid file type in file index.");
  }
  return static_cast<FileType>(byte);
}

/// A name ends early at a newline or at the end of the file; that is no error. Kept: the fields
/// behind such a name are then read from where it stopped, and fail in their own words.
SString readName(std::FILE* stream, std::int16_t length) {
  SString name;
  for (int i = 0; i < length; ++i) {
    const int byte = ::getc_unlocked(stream);
    if (byte == EOF || byte == '\n') break;
    name += static_cast<char>(byte);
  }
  return name;
}

std::int32_t readModeByte(const SString& fileName) {
  const StdFile file = openFile(fileName, OpenMode::Read);
  if (file == nullptr) return kNoModeByte;
  if (std::fseek(file.get(), -kModeByteDistance, SEEK_END) != 0) return kNoModeByte;
  const int byte = std::getc(file.get());
  return byte == EOF ? kNoModeByte : byte;
}

}  // namespace

bool isTagFileType(const FileIndexEntry& entry) {
  return entry.type == FileType::Instructions || entry.type == FileType::JvmFile ||
         entry.type == FileType::LaunchScript;
}

void readFileIndexEntry(FileIndexEntry& entry, std::FILE* stream) {
  entry = FileIndexEntry();  // or an absent field would keep the value of an earlier reading
  entry.type = readType(stream);
  entry.fileId = readInt32(stream, "Unable to load file id.");
  entry.length = readInt32(stream, "Unable to load file length.");
  entry.offset = readInt32(stream, "Unable to load offset to file bytes.");
  entry.fileName = readName(stream, readInt16(stream, "Unable to load the string value."));
  // Every value but 1, the end of the file included, means that the two fields are absent.
  entry.hasSizeInformation = ::getc_unlocked(stream) == kHasSizeInformation;
  if (!entry.hasSizeInformation) return;
  entry.expandedFileCount = readInt32(stream, "Unable to load decompressed file count.");
  entry.expandedSize = readInt32(stream, "Unable to load decompressed size.");
}

std::int32_t ModeByteProbe::launcherModeByte(const SString& fileName) {
  if (fileName != launcherFileName_) return readModeByte(fileName);
  // Once: the launcher asks again when it ends, and by then its file may be gone.
  if (lastTrailerByte_ == kNoModeByte) lastTrailerByte_ = readModeByte(fileName);
  return lastTrailerByte_;
}

}  // namespace vessant
