#include "launcher/base/StdFile.h"

namespace vessant {

StdFile openFile(const SString& path, OpenMode mode) {
  const char* flags = "rbe";  // "e" is the C library's close-on-exec
  if (mode == OpenMode::Write) flags = "wbe";
  if (mode == OpenMode::Append) flags = "ae";
  return StdFile(std::fopen(path.cString(), flags));
}

}  // namespace vessant
