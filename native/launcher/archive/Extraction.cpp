#include "launcher/archive/Extraction.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <sys/stat.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

/// One step of the progress display; the data is on its way to the disk after each.
constexpr std::size_t kChunkSize = 0xEFFF;
constexpr mode_t kExecutable = S_IXUSR | S_IXGRP | S_IXOTH;

bool isProgram(FileType type) {
  return type == FileType::JvmInstaller || type == FileType::EmbeddedLauncher;
}

void makeExecutable(const SString& path) {
  struct stat status = {};
  // Either failure shows when the program is started.
  if (::stat(path.cString(), &status) != 0) return;
  static_cast<void>(::chmod(path.cString(), (status.st_mode & ALLPERMS) | kExecutable));
}

/// Chunks are larger than any stream buffer: reading and writing straight saves a copy.
StdFile openUnbuffered(const SString& path, OpenMode mode) {
  StdFile file = openFile(path, mode);
  if (file != nullptr) std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

/// Writes a chunk and flushes it; returns 0 or the error number.
int writeChunk(const StdFile& target, const std::vector<char>& buffer, std::size_t length) {
  errno = 0;  // a short write need not set it
  const bool whole = std::fwrite(buffer.data(), 1, length, target.get()) == length;
  if (whole && std::fflush(target.get()) == 0) return 0;
  return errno != 0 ? errno : EIO;
}

}  // namespace

SString FileExtractor::extractFile(const FileIndexEntry& entry, const SString& directory) const {
  checkSpace(entry, directory);
  SString target = joinPath(directory, entry.fileName);
  const int error = copyBytes(entry, target);
  // A disk that is full tells more than the cancellation that may have come with it.
  if (error != 0) throw LauncherException(writeErrorText(longToString(error)));
  if (services_.cancelFlag.isSet()) {
    throw LauncherException(services_.messages.errorText(ErrorId::Canceled));
  }
  if (isProgram(entry.type)) makeExecutable(target);
  return target;
}

void FileExtractor::checkSpace(const FileIndexEntry& entry, const SString& directory) const {
  std::uint32_t bytes = entry.length;
  std::uint32_t files = 1;
  if (entry.hasSizeInformation) {  // both sums may wrap at 32 bits. Kept.
    bytes += entry.expandedSize;
    files += entry.expandedFileCount;
  }
  if (services_.platform.hasFreeSpace(directory, bytes, files)) return;
  throw LauncherException(writeErrorText(""));
}

int FileExtractor::copyBytes(const FileIndexEntry& entry, const SString& target) const {
  const StdFile source = openUnbuffered(launcherFile_, OpenMode::Read);
  const StdFile copy = openUnbuffered(target, OpenMode::Write);
  if (copy == nullptr) return errno;
  if (source == nullptr || ::fseeko(source.get(), entry.offset, SEEK_SET) != 0) return 0;
  std::vector<char> buffer(std::min<std::size_t>(kChunkSize, entry.length));
  std::size_t left = entry.length;
  // Polled between chunks: a JVM of 200 MB on a slow disk can still be given up within one.
  while (left > 0 && !services_.cancelFlag.isSet()) {
    const std::size_t wanted = std::min(left, buffer.size());
    const std::size_t read = std::fread(buffer.data(), 1, wanted, source.get());
    const int error = writeChunk(copy, buffer, read);
    services_.progress.addProgressDots(1);
    if (error != 0 || read < wanted) return error;
    left -= read;
  }
  return 0;
}

SString FileExtractor::writeErrorText(const SString& detail) const {
  return services_.messages.errorText(ErrorId::WriteFailed) + detail +
         services_.messages.errorText(ErrorId::TempSpaceHint);
}

const SString& EmbeddedFiles::extractedPath(const FileIndexEntry& entry) {
  SString& path = paths_[&entry];
  if (path.isEmpty()) path = extractor_.extractFile(entry, tempFiles_.createTempDir());
  return path;
}

SString EmbeddedFiles::extractApplicationArchives() const {
  SString directory;
  SString last;
  for (const FileIndexEntry& entry : launcherFile_.index()) {
    if (entry.type != FileType::ApplicationArchive) continue;
    if (directory.isEmpty()) directory = tempFiles_.createTempDir();
    last = extractor_.extractFile(entry, directory);
  }
  return last;
}

}  // namespace vessant
