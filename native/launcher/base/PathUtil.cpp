#include "launcher/base/PathUtil.h"

#include <sys/stat.h>
#include <unistd.h>

namespace vessant {
namespace {

constexpr std::string_view kAnySeparator = "/\\";
constexpr std::size_t kPathBufferSize = 1024;

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
