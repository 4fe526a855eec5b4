#include "launcher/archive/Extraction.h"

#include <cerrno>
#include <string_view>

#include <fcntl.h>

#include "launcher/archive/ChunkedCopy.h"
#include "launcher/archive/NewFile.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

bool isProgram(FileType type) {
  return type == FileType::JvmInstaller || type == FileType::EmbeddedLauncher;
}

/// Whether a file of this name lies in the directory that it is extracted into, and nowhere else.
bool staysInside(std::string_view name) {
  constexpr std::string_view kLeadsAway("/\0", 2);
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(kLeadsAway) == std::string_view::npos;
}

}  // namespace

SString FileExtractor::extractFile(const FileIndexEntry& entry, const SString& directory,
                                   PartialFile onFailure) const {
  if (!staysInside(entry.fileName)) throwBadName(entry.fileName);
  SString path = joinPath(directory, entry.fileName);
  checkSpace(entry, directory, path);
  const UniqueFd source(::open(path_.cString(), O_RDONLY | O_CLOEXEC));
  NewFile target(directory, entry.fileName, source);
  if (target.error() != 0) throwWriteError(path, target.error());
  try {
    fill(target, path, source, entry);
  } catch (...) {
    if (onFailure == PartialFile::Removed) target.remove();
    throw;
  }
  return path;
}

void FileExtractor::checkSpace(const FileIndexEntry& entry, const SString& directory,
                               const SString& path) const {
  std::uint32_t bytes = entry.length;
  std::uint32_t files = 1;
  if (entry.hasSizeInformation) {  // both sums may wrap at 32 bits. Kept.
    bytes += entry.expandedSize;
    files += entry.expandedFileCount;
  }
  if (services_.platform.hasFreeSpace(directory, bytes, files)) return;
  logWriteError(path, ENOSPC);
  throw LauncherException(writeErrorText(""));
}

/// A disk that is full tells more than the cancellation that may have come with it, and that more
/// than the missing rest of a launcher file.
void FileExtractor::fill(NewFile& target, const SString& path, const UniqueFd& source,
                         const FileIndexEntry& entry) const {
  const CopyEnd end = copyStretch(source.get(), entry.offset, entry.length, target.fd(), services_);
  if (end.error != 0) throwWriteError(path, end.error);
  if (services_.cancelFlag.isSet()) {
    throw LauncherException(services_.messages.errorText(ErrorId::Canceled));
  }
  if (end.copied < entry.length) throwCutShort(entry, end.copied);
  // What another file has in this place are not the bytes that were wanted.
  if (!launcherFile_.isUnchanged(source.get())) throwCutShort(entry, 0);
  if (isProgram(entry.type)) target.makeExecutable();
  const int error = target.close();
  if (error != 0) throwWriteError(path, error);
}

void FileExtractor::throwCutShort(const FileIndexEntry& entry, std::uint64_t found) const {
  services_.log("The launcher file " + path_ + " has changed: wanted " +
                    longToString(entry.length) + " bytes of " + entry.fileName + ", found " +
                    longToString(static_cast<std::int64_t>(found)),
                LogLevel::Error);
  throw LauncherException(services_.messages.errorText(ErrorId::ExtractionFailed));
}

/// To the user it is as if the directory in the name did not exist.
void FileExtractor::throwBadName(const SString& name) const {
  services_.log("Could not write \"" + name + "\" :  not the name of a file", LogLevel::Error);
  throw LauncherException(writeErrorText(longToString(ENOENT)));
}

void FileExtractor::throwWriteError(const SString& path, int error) const {
  logWriteError(path, error);
  throw LauncherException(writeErrorText(longToString(error)));
}

/// The user's text says what to do, the log which file it was.
void FileExtractor::logWriteError(const SString& path, int error) const {
  services_.log("Could not write " + path + " :  " + systemErrorText(error), LogLevel::Error);
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
