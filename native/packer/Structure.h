// Whether an installer is put together soundly: everything that its index says, held against the
// file.
#pragma once

#include "packer/Finding.h"
#include "packer/Installer.h"

namespace vessant {

/// Reports every flaw: no installer at all, an index that ends early or promises too much, files
/// beyond the end, files that overlap each other or the index, names that cannot be extracted,
/// names and ids that stand twice, bytes behind the index that nothing reads.
void checkStructure(const Installer& installer, Findings& findings);

}  // namespace vessant
