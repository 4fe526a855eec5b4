// Whether the files that an installer carries are whole.
#pragma once

#include "packer/ArchiveCheck.h"
#include "packer/Finding.h"
#include "packer/Installer.h"

namespace vessant {

/// Reads every text with the launcher's own reader and every archive with its own checksums, in the
/// order in which they lie. The installer's structure must be sound. `watch` is told of what was
/// read of the installer; it may be empty. Throws LauncherException when the file cannot be read.
void checkContents(const Installer& installer, const ReadWatch& watch, Findings& findings);

}  // namespace vessant
