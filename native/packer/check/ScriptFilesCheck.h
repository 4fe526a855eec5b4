// The script and the files around it: what it names must be there, and what is there be of use.
#pragma once

#include "packer/Finding.h"
#include "packer/check/Package.h"

namespace vessant {

/// Reports ids that name no file or one of another kind, files that the script needs and that are
/// missing, and files that nothing uses.
void checkScriptFiles(const Package& package, Findings& findings);

}  // namespace vessant
