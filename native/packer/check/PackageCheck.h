// All checks of an installer, before or after it is packed.
#pragma once

#include "packer/Finding.h"
#include "packer/check/LaunchCheck.h"
#include "packer/check/Package.h"

namespace vessant {

/// Reads the texts of the package and reports everything that can be known before a user runs it.
/// What concerns the index of a finished installer is not looked at here.
void checkPackage(Package& package, const LaunchCheckOptions& options, Findings& findings);

}  // namespace vessant
