// The files of an installer that are no texts: archives, the launcher, a bundled runtime; and how
// large all may be.
#pragma once

#include "packer/Finding.h"
#include "packer/check/JarFile.h"
#include "packer/check/Package.h"

namespace vessant {

/// Reports jars that are no zip files, a verification archive without its class, a launcher that is
/// none or of another machine than the bundled runtime, and sizes that the format or the
/// launcher's check of free space cannot hold.
void checkFiles(const Package& package, JarCache& jars, Findings& findings);

}  // namespace vessant
