#include "packer/FileKinds.h"

#include <algorithm>
#include <iterator>

#include "launcher/archive/LauncherFormat.h"

namespace vessant {
namespace {

// In the order of the type numbers.
constexpr const char* kTypeNames[] = {
    "instructions",  "jvm",          "launch-script", "archive",
    "jvm-installer", "verification", "application",   "launcher",
};

/// No Linux file system allows more bytes.
constexpr std::size_t kLongestName = 255;
/// The file that an installer writes next to its files when it is asked to extract them.
constexpr std::string_view kReservedName = "input.tag";

bool isControl(char character) {
  constexpr unsigned char kDelete = 0x7F;
  const auto byte = static_cast<unsigned char>(character);
  return byte < ' ' || byte == kDelete;
}

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

std::string nameFlaw(std::string_view name) {
  if (name.empty()) return "is empty";
  if (name == "." || name == "..") return "means a directory";
  if (name.find('/') != std::string_view::npos) return "holds a slash";
  if (std::any_of(name.begin(), name.end(), isControl)) return "holds a control character";
  if (name.size() > kLongestName) return "has more than 255 bytes";
  if (name == kReservedName) return "is kept for the file that -vs:extract writes";
  return "";
}

}  // namespace vessant
