#include "launcher/base/PathUtil.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace vessant {
namespace {

constexpr std::string_view kAnySeparator = "/\\";
constexpr std::size_t kPathBufferSize = 1024;

/// Some sandboxes are older than statx and refuse it.
std::optional<FileIdentity> askWithoutBirth(int fd, const char* name, int flags) {
  struct stat status = {};
  if (::fstatat(fd, name, &status, flags) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino, 0};
}

std::optional<FileIdentity> askIdentity(int fd, const char* name, int flags) {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  struct statx status = {};
  if (::statx(fd, name, flags, STATX_INO | STATX_BTIME, &status) != 0) {
    return askWithoutBirth(fd, name, flags);
  }
  const bool knowsBirth = (status.stx_mask & STATX_BTIME) != 0;
  return FileIdentity{
      makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino,
      knowsBirth ? status.stx_btime.tv_sec * kNanoseconds + status.stx_btime.tv_nsec : 0};
}

}  // namespace

void ensureTrailingSeparator(SString& path) {
  if (!path.isEmpty() && !path.view().ends_with(kPathSeparator)) path += kPathSeparator;
}

SString joinPath(SString directory, std::string_view name) {
  ensureTrailingSeparator(directory);
  return directory.append(name);
}

SString directoryOf(const SString& path) {
  const SString::Size separator = path.findLastOf(kAnySeparator);
  return separator == SString::npos ? SString() : path.substr(0, separator);
}

SString fileNameOf(const SString& path) {
  const SString::Size separator = path.findLastOf(kAnySeparator);
  return separator == SString::npos ? path : path.substr(separator + 1);
}

bool fileExists(const SString& path) {
  struct stat status = {};
  return ::stat(path.cString(), &status) == 0;
}

bool isDirectory(const SString& path) {
  struct stat status = {};
  return ::stat(path.cString(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<FileIdentity> identityOf(int fd) {
  return askIdentity(fd, "", AT_EMPTY_PATH);
}

std::optional<FileIdentity> identityOf(int directory, const char* name) {
  return askIdentity(directory, name, AT_SYMLINK_NOFOLLOW);
}

SString currentDirectory() {
  char buffer[kPathBufferSize] = {};
  // A directory that is gone or too deep has no name; what is joined to the empty text then fails
  // where it is used, in the words of that use.
  return ::getcwd(buffer, sizeof(buffer)) == nullptr ? "" : buffer;
}

SString absolutePath(const SString& path) {
  if (path.view().starts_with(kPathSeparator)) return path;
  return joinPath(currentDirectory(), path);
}

}  // namespace vessant
