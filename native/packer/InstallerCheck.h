// Whether an installer is whole: everything that its index says, held against the file, and
// everything that the files in it say of themselves.
#pragma once

#include "packer/ArchiveReader.h"
#include "packer/Finding.h"
#include "packer/Installer.h"

namespace vessant {

/// Reports every flaw of the way in which it is put together: no installer at all, an index that
/// ends early or promises too much, files beyond the end, files that overlap each other or the
/// index, names that cannot be extracted, names and ids that stand twice, bytes behind the index
/// that nothing reads. Looks at no file that it carries.
void checkStructure(const Installer& installer, Findings& findings);

/// Reads every text with the launcher's own reader and every archive with its own checksums, in the
/// order in which they lie. The installer's structure must be sound. `watch` is told of what was
/// read, and where in the installer that lies; it may be empty. Throws LauncherException when the
/// file cannot be read.
void checkContents(const Installer& installer, const ArchiveReader::Watch& watch,
                   Findings& findings);

}  // namespace vessant
