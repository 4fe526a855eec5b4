#include "launcher/archive/LauncherFile.h"

#include <memory>
#include <utility>

#include <sys/stat.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

SString listingOf(const FileIndexEntry& entry) {
  return "file type: " + longToString(static_cast<int>(entry.type)) + "\n" +
         "  file id: " + longToString(entry.fileId) + "\n" +
         "  length: " + longToString(entry.length) + "\n" +
         "  offset: " + longToString(entry.offset) + "\n" + "  file name: " + entry.fileName;
}

ErrorId errorOfKind(FileType type) {
  if (type == FileType::Instructions) return ErrorId::InstructionsNotLoaded;
  if (type == FileType::LaunchScript) return ErrorId::LaunchScriptNotLoaded;
  return ErrorId::JvmFileNotLoaded;
}

/// Moves to the file count. Returns false for a file that carries nothing.
bool seekIndex(std::FILE* stream) {
  if (std::fseek(stream, -kTrailerSize, SEEK_END) != 0) {
    throw LauncherException("Invalid launcher format.");
  }
  const std::uint32_t offset = readInt32(stream, "Unable to read file index offset.");
  const std::uint32_t identification =
      readInt32(stream, "Unable to read launcher identification value.");
  if (identification != kIdentification) return false;
  if (::fseeko(stream, static_cast<off_t>(offset), SEEK_SET) != 0) {
    throw LauncherException("Invalid file index offset.");
  }
  return true;
}

/// Entry by entry: the count is only believed as far as there are entries.
void readEntries(std::FILE* stream, FileIndexEntryPtrDeque& entries) {
  const auto count = static_cast<std::int32_t>(readInt32(stream, "Unable to read the file count."));
  for (std::int32_t i = 0; i < count; ++i) {
    auto entry = std::make_unique<FileIndexEntry>();
    readFileIndexEntry(*entry, stream);
    entries.add(std::move(entry));
  }
}

/// Of several scripts of one kind the first is used, and none when the run has one already.
void buildObject(const FileIndexEntry& entry, EmbeddedObjectBuilder& builder) {
  TagFile& tags = *entry.tagFile;
  if (entry.type == FileType::JvmFile) {
    builder.addJvmFile(tags);
  } else if (entry.type == FileType::Instructions) {
    if (!builder.hasInstructions()) builder.setInstructions(tags);
  } else if (!builder.hasLaunchScript()) {
    builder.setLaunchScript(tags);
  }
}

}  // namespace

void LauncherFile::loadFileIndex(const SString& path, EmbeddedObjectBuilder* builder, LogSink& log,
                                 const MessageSource& messages) {
  const bool wantsObjects = builder != nullptr && !objectsBuilt_;
  if (loaded_ && !wantsObjects) return;
  const StdFile file = openFile(path, OpenMode::Read);
  if (file == nullptr) throw LauncherException("Cannot open launcher file.");
  if (!indexRead_) {
    readIndex(file.get());
    logListing(log);
  }
  if (wantsObjects) buildObjects(file.get(), *builder, log, messages);
  loaded_ = true;
}

FileIndexEntry* LauncherFile::findById(std::uint32_t fileId) const {
  for (FileIndexEntry& entry : index_) {
    if (entry.fileId == fileId) return &entry;
  }
  return nullptr;
}

FileIndexEntry* LauncherFile::findByType(FileType type) const {
  for (FileIndexEntry& entry : index_) {
    if (entry.type == type) return &entry;
  }
  return nullptr;
}

bool LauncherFile::isUnchanged(int fd) const {
  return !indexRead_ || stampOf(fd) == stamp_;
}

LauncherFile::Stamp LauncherFile::stampOf(int fd) {
  struct stat status = {};
  if (::fstat(fd, &status) != 0) return {};
  return {status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void LauncherFile::readIndex(std::FILE* stream) {
  FileIndexEntryPtrDeque entries;
  if (seekIndex(stream)) readEntries(stream, entries);
  index_.swap(entries);
  stamp_ = stampOf(::fileno(stream));
  indexRead_ = true;
}

void LauncherFile::logListing(LogSink& log) const {
  for (const FileIndexEntry& entry : index_) log.log(listingOf(entry), LogLevel::Information);
}

void LauncherFile::buildObjects(std::FILE* stream, EmbeddedObjectBuilder& builder, LogSink& log,
                                const MessageSource& messages) {
  // Set ahead of the work: after a failure half-way a second pass would make the first objects
  // again, while the builder still holds them and they refer to their entries' tag files.
  objectsBuilt_ = true;
  for (FileIndexEntry& entry : index_) {
    if (!isTagFileType(entry)) continue;
    auto tags = std::make_unique<TagFile>();
    tags->load(stream, entry.fileName, entry.offset, entry.length, log);
    entry.tagFile = std::move(tags);
    try {
      buildObject(entry, builder);
    } catch (const InstructionsException& error) {
      throw LauncherException(messages.errorText(errorOfKind(entry.type)) + error.message());
    }
  }
}

}  // namespace vessant
