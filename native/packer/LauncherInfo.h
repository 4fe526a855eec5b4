// What a launcher says of itself to those who do not run it.
#pragma once

#include <string>

#include "packer/ByteSource.h"

namespace vessant {

/// The version in the note that a launcher carries, an ELF note with the owner "Vessant"; empty
/// when there is none.
[[nodiscard]] std::string launcherVersionOf(const ByteSource& program);

}  // namespace vessant
