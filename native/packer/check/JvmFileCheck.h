// JVM files: what each must have, and where it looks for Javas.
#pragma once

#include "packer/Finding.h"
#include "packer/check/TagText.h"

namespace vessant {

/// Whether the file describes no JVM at all. A script launches with it to have the launch command
/// tell the user something.
[[nodiscard]] bool isMessageFile(const TagText& jvmFile);

/// Reports missing tags, properties and hints that cannot work, and texts that need a blank at
/// their end. `isLaunched`: the script names the file in an ILAUNCH, which alone makes a file
/// without a JVM useful.
void checkJvmFile(const TagText& jvmFile, bool isLaunched, Findings& findings);

}  // namespace vessant
