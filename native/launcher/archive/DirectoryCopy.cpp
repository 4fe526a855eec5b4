#include "launcher/archive/DirectoryCopy.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"

namespace vessant {
namespace {

constexpr std::size_t kBlockSize = 4096;
constexpr int kFailed = -1;

/// A link is its own kind of entry, so that no cycle of links is followed.
mode_t modeOf(const SString& path) {
  struct stat status = {};
  return ::lstat(path.cString(), &status) == 0 ? status.st_mode : 0;
}

bool writeAll(int fd, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(fd, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

bool copyContents(int source, int target) {
  char block[kBlockSize];
  while (true) {
    const ssize_t read = ::read(source, block, sizeof(block));
    if (read == 0) return true;
    if (read < 0 && errno == EINTR) continue;  // a signal sets the cancel flag and no more
    if (read < 0 || !writeAll(target, block, static_cast<std::size_t>(read))) return false;
  }
}

/// The target's owner decides over its bits: a copy into a directory or over a file of somebody
/// else is none the worse for keeping those that it has.
bool prepareTarget(const SString& source, const SString& target) {
  struct stat status = {};
  if (::stat(source.cString(), &status) != 0) return false;
  const mode_t permissions = status.st_mode & ALLPERMS;
  if (!isDirectory(target)) return ::mkdir(target.cString(), permissions) == 0;
  static_cast<void>(::chmod(target.cString(), permissions));
  return true;
}

/// Every failure is logged where it first shows, and so once, with the error that is set by then.
int failed(const SString& source, const SString& target, LogSink& log) {
  const SString reason = systemErrorText();
  log.log("Error while copying file", LogLevel::Information);
  log.log("Could not copy " + source + " to " + target + " :  " + reason, LogLevel::Error);
  return kFailed;
}

int copyEntry(const SString& source, const SString& target, LogSink& log) {
  const mode_t mode = modeOf(source);
  if (S_ISDIR(mode)) return copyDirectory(source, target, log);
  if (!S_ISREG(mode)) return 0;
  return copyFile(source, target) == kFailed ? failed(source, target, log) : 0;
}

}  // namespace

TreeSize directorySize(const SString& directory) {
  TreeSize size;
  const DirStream stream = openDirectory(directory);
  if (stream == nullptr) return size;  // an estimate: the copy itself will tell of the failure
  while (const dirent* entry = nextEntry(stream)) {
    const SString path = directory + "/" + entry->d_name;
    struct stat status = {};
    if (::lstat(path.cString(), &status) != 0) continue;  // gone since it was listed
    if (S_ISDIR(status.st_mode)) {
      const TreeSize below = directorySize(path);
      size.bytes += below.bytes;
      size.files += below.files;
    } else if (S_ISREG(status.st_mode)) {
      size.bytes += static_cast<std::uint64_t>(status.st_size);
      ++size.files;
    }
  }
  return size;
}

int copyFile(const SString& source, const SString& target) {
  const UniqueFd from(::open(source.cString(), O_RDONLY | O_CLOEXEC));
  if (!from.isOpen()) return kFailed;
  struct stat status = {};
  if (::fstat(from.get(), &status) != 0) return kFailed;
  const mode_t permissions = status.st_mode & ALLPERMS;
  // Without O_TRUNC, so that a longer target keeps its tail. Kept.
  const UniqueFd to(::open(target.cString(), O_WRONLY | O_CREAT | O_CLOEXEC, permissions));
  if (!to.isOpen() || !copyContents(from.get(), to.get())) return kFailed;
  // As for directories: a target of somebody else keeps its bits.
  static_cast<void>(::fchmod(to.get(), permissions));
  return 0;
}

int copyDirectory(const SString& source, const SString& target, LogSink& log) {
  if (!prepareTarget(source, target)) return failed(source, target, log);
  const DirStream stream = openDirectory(source);
  if (stream == nullptr) return failed(source, target, log);
  while (const dirent* entry = nextEntry(stream)) {
    const int result =
        copyEntry(joinPath(source, entry->d_name), joinPath(target, entry->d_name), log);
    if (result == kFailed) return kFailed;
  }
  return 0;
}

void copyDirectoryChecked(const SString& source, const SString& target,
                          const RunServices& services) {
  services.log("COPYING THE DIR");
  const TreeSize size = directorySize(source);
  // The platform takes 32 bits of each number. Kept: a tree of 2 GiB and more always passes.
  if (!services.platform.hasFreeSpace(target, static_cast<std::uint32_t>(size.bytes),
                                      static_cast<std::uint32_t>(size.files))) {
    throw LauncherException(services.messages.errorText(ErrorId::TempSpaceHint));
  }
  if (copyDirectory(source, target, services.logSink) == kFailed) {
    throw LauncherException(services.messages.errorText(ErrorId::WriteFailed));
  }
}

}  // namespace vessant
