// Where Linux systems put their Javas.
#pragma once

#include <string>
#include <vector>

#include "packer/jvm/JavaRange.h"

namespace vessant {

/// Names of environment variables with the user's own choice of a Java home.
[[nodiscard]] std::vector<std::string> platformHints();

/// The same and then, newest version first, those that build machines set for each version, such
/// as JAVA_HOME_17_X64.
[[nodiscard]] std::vector<std::string> platformHints(const JavaRange& range);

/// Java homes: "jre" beside the installer, the places of the system's own choice, then, newest
/// version first, those of the distributions' and vendors' packages for each version of the range.
/// A range without an upper end stops at the newest Java known here: the places without a version
/// cover later ones.
[[nodiscard]] std::vector<std::string> pathHints(const JavaRange& range);

}  // namespace vessant
