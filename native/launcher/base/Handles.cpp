#include "launcher/base/Handles.h"

#include <string_view>

#include <unistd.h>

namespace vessant {

StdFile openFile(const SString& path, OpenMode mode) {
  // "e" is the C library's close-on-exec.
  return StdFile(std::fopen(path.cString(), mode == OpenMode::Write ? "wbe" : "rbe"));
}

DirStream openDirectory(const SString& path) {
  return DirStream(::opendir(path.cString()));  // close-on-exec by POSIX
}

const dirent* nextEntry(const DirStream& stream) {
  // A read error looks like the end: nobody could do more with the rest of such a directory.
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return entry;
  }
  return nullptr;
}

/// A failure to close is passed over: the descriptor is gone all the same, and on Linux an
/// interrupted close must not be tried again, since the number may be somebody else's by then.
void UniqueFd::reset(int fd) {
  if (fd_ >= 0) ::close(fd_);
  fd_ = fd;
}

int UniqueFd::close() {
  return ::close(release());
}

}  // namespace vessant
