// The values of JVM_PROPERTIES: what a Java VM must say of itself to be taken.
#pragma once

#include <string>

#include "packer/Finding.h"
#include "packer/check/TagText.h"

namespace vessant {

/// Reports values without "=", comparisons that the launcher does not know, names that a shell
/// would take apart and values that no Java VM has.
void checkProperties(const TagText& jvmFile, Findings& findings);

}  // namespace vessant
