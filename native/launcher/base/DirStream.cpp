#include "launcher/base/DirStream.h"

#include <string_view>

namespace vessant {

DirStream openDirectory(const SString& path) {
  return DirStream(::opendir(path.cString()));
}

const dirent* nextEntry(const DirStream& stream) {
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return entry;
  }
  return nullptr;
}

}  // namespace vessant
