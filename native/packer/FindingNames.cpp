#include "packer/FindingNames.h"

namespace vessant {

const std::vector<std::string>& findingNames() {
  static const std::vector<std::string> names = {
      "cut-index",    "file-beyond-end", "file-count",   "file-overlap",
      "file-type",    "hostile-name",    "index-offset", "name-length",
      "no-installer", "repeated-name",   "size-flag",    "unread-bytes",
  };
  return names;
}

}  // namespace vessant
