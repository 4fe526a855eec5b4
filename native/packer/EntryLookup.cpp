#include "packer/EntryLookup.h"

#include <vector>

#include "packer/Nearest.h"
#include "packer/Text.h"

namespace vessant {

const FileIndexEntry& requireEntry(const Installer& installer, const std::string& nameOrId) {
  const FileIndexEntry* entry = installer.find(nameOrId);
  if (entry != nullptr) return *entry;
  std::vector<std::string> names;
  for (const FileIndexEntry& other : installer.entries()) names.push_back(str(other.fileName));
  throw failure(printable(installer.path()) + ": carries no file " + quotedName(nameOrId) +
                suggestion(nameOrId, names));
}

}  // namespace vessant
