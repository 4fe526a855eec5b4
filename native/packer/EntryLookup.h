// Finds the file that a user names.
#pragma once

#include <string>

#include "packer/Installer.h"

namespace vessant {

/// The file of this name, else the one with this id. Throws LauncherException, with the nearest
/// name, when there is none.
[[nodiscard]] const FileIndexEntry& requireEntry(const Installer& installer,
                                                 const std::string& nameOrId);

}  // namespace vessant
