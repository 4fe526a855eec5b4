// Packages from what they are made from, and from what was made.
#pragma once

#include "packer/Finding.h"
#include "packer/Installer.h"
#include "packer/Manifest.h"
#include "packer/check/Package.h"

namespace vessant {

/// What a manifest puts together, behind its launcher. Files that cannot be read are left out: they
/// were reported when the manifest was read. Throws LauncherException for such a launcher.
[[nodiscard]] Package packageOf(const Manifest& manifest);

/// What an installer carries. Files whose bytes are not there are left out: its structure is not
/// looked at here. A text that runs into the next file is reported.
[[nodiscard]] Package packageOf(const Installer& installer, Findings& findings);

}  // namespace vessant
