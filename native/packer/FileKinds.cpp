#include "packer/FileKinds.h"

#include <iterator>

#include "launcher/archive/LauncherFormat.h"

namespace vessant {
namespace {

// In the order of the type numbers.
constexpr const char* kTypeNames[] = {
    "instructions",  "jvm",          "launch-script", "archive",
    "jvm-installer", "verification", "application",   "launcher",
};

}  // namespace

const char* fileTypeName(FileType type) {
  return kTypeNames[static_cast<int>(type)];
}

std::vector<std::string> fileTypeNames() {
  return {std::begin(kTypeNames), std::end(kTypeNames)};
}

bool isTextType(FileType type) {
  FileIndexEntry entry;
  entry.type = type;
  return isTagFileType(entry);
}

}  // namespace vessant
