// What changed between two installers.
#pragma once

#include <string>

#include "packer/Installer.h"

namespace vessant {

/// One line for each change: the mode byte, the launcher, files that only one has, kinds, ids, what
/// files unpack to, bytes, order and places; texts as a unified diff. Empty for installers that are
/// the same. Throws LauncherException when a file cannot be read.
[[nodiscard]] std::string diffInstallers(const Installer& before, const Installer& after);

}  // namespace vessant
