// The homes of a JVM file as lines.
#pragma once

#include <iosfwd>

#include "packer/explain/HomeList.h"

namespace vessant {

void writeHomesOfFile(const HomesOfFile& file, std::ostream& out);

}  // namespace vessant
