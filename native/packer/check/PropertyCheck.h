// What a JVM file asks of a Java: its JVM_PROPERTIES. Each that no Java can have is a Java that is
// never found.
#pragma once

#include "packer/Finding.h"
#include "packer/check/TagText.h"

namespace vessant {

/// Reports properties that are written wrong, that have a name or a value which no Java on Linux
/// answers with, and properties that contradict each other.
void checkProperties(const TagText& jvmFile, Findings& findings);

}  // namespace vessant
