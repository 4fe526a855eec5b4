// What an installer would do here, as a text.
#pragma once

#include <iosfwd>

#include "packer/explain/DryRun.h"

namespace vessant {

/// Writes the explanation. With the platform of `run` set to run commands, each home is verified
/// and its answers are shown.
void explain(DryRun& run, std::ostream& out);

}  // namespace vessant
