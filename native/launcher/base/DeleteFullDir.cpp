#include "launcher/base/DeleteFullDir.h"

#include <cstdio>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"

namespace vessant {

bool deletePath(const SString& path, const RunServices& services) {
  struct stat status = {};
  if (::stat(path.cString(), &status) != 0) return false;
  const int result =
      S_ISDIR(status.st_mode) ? ::rmdir(path.cString()) : std::remove(path.cString());
  if (result == 0) return true;
  const int error = errno;  // building the text may change it
  services.log(SString("Could not delete ") + path + " :  " + systemErrorText(error),
               LogLevel::Warning);
  return false;
}

bool DeleteFullDir::navigate(const SString& start) {
  const bool stopped = FileNavigator::navigate(start);
  const StringDeque& visited = visitedDirectories();
  for (std::int32_t i = visited.count() - 1; i >= 0; --i) {
    const SString& directory = visited.get(i);
    if (isKnownToStay(i, directory)) continue;
    if (!deletePath(directory, services())) unremoved_.add(directory);
  }
  return stopped;
}

bool DeleteFullDir::processFile(const SString& path) {
  deletePath(path, services());
  return false;
}

/// Only the entry at the directory's own position is consulted. Kept: it decides which directories
/// above a leftover are tried, and so which warnings a log shows.
bool DeleteFullDir::isKnownToStay(std::int32_t position, const SString& directory) const {
  if (unremoved_.isEmpty()) return false;
  const SString& candidate = unremoved_.get(position);
  return std::strncmp(candidate.cString(), directory.cString(), directory.length()) == 0;
}

}  // namespace vessant
