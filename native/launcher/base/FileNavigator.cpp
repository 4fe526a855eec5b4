#include "launcher/base/FileNavigator.h"

#include <dirent.h>
#include <sys/stat.h>

#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"

namespace vessant {
namespace {

constexpr std::int64_t kFilesPerProgressStep = 1000;

/// The mode bit that makes an entry a directory for the walk. Sockets and block devices have it
/// too: they are remembered as directories and passed over when they cannot be opened.
constexpr mode_t kDirectoryBit = 0x4000;

bool hasDirectoryBit(const SString& path) {
  struct stat status = {};
  // What is gone by now is handed over as a file. Kept: the walk counts it.
  return ::lstat(path.cString(), &status) == 0 && (status.st_mode & kDirectoryBit) != 0;
}

/// Most file systems tell the type in the directory entry. It is trusted instead of an lstat, which
/// saves a system call for each of the hundreds of thousands of files on a disk; the two differ
/// only when an entry is replaced between the reading of its directory and its turn. Where the file
/// system does not tell, lstat is asked.
bool walksAsDirectory(const SString& path, const dirent& entry) {
  if (entry.d_type == DT_UNKNOWN) return hasDirectoryBit(path);
  return (static_cast<mode_t>(DTTOIF(entry.d_type)) & kDirectoryBit) != 0;
}

}  // namespace

bool FileNavigator::navigate(const SString& start) {
  visited_.clear();
  pending_.clear();
  stopped_ = false;
  fileCount_ = 0;
  pending_.add(start);
  // The cancel flag is polled before each directory and, while one is read, before each entry.
  while (!pending_.isEmpty() && !stopped_ && !isCancelled()) {
    const SString directory = pending_.getLast();
    pending_.removeLast();
    visited_.add(directory);
    if (!skipDirectory(directory)) readDirectory(directory);
  }
  return stopped_;
}

bool FileNavigator::skipDirectory(const SString& /*path*/) {
  return false;
}

bool FileNavigator::isCancelled() const {
  return cancellable_ && services_.cancelFlag.isSet();
}

void FileNavigator::readDirectory(const SString& directory) {
  const DirStream stream = openDirectory(directory);
  if (stream == nullptr) return;  // gone, closed to this user, or no directory at all
  SString path(directory.view());
  ensureTrailingSeparator(path);
  const SString::Size directoryLength = path.length();
  while (!stopped_ && !isCancelled()) {
    const dirent* entry = nextEntry(stream);
    if (entry == nullptr) return;
    visitEntry(path, directoryLength, *entry);
  }
}

void FileNavigator::visitEntry(SString& path, SString::Size directoryLength, const dirent& entry) {
  path.replace(directoryLength, SString::npos, entry.d_name);
  if (walksAsDirectory(path, entry)) {
    pending_.add(SString(path.view()));  // a copy that fits, not a share of the growing buffer
    return;
  }
  stopped_ = processFile(path);
  countFile();
}

void FileNavigator::countFile() {
  if (++fileCount_ % kFilesPerProgressStep == 0) services_.progress.addProgressDots(1);
}

}  // namespace vessant
