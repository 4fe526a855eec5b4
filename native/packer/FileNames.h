// Which names a packed file can have: it is extracted under this name, into a directory.
#pragma once

#include <string>
#include <string_view>

namespace vessant {

/// Why a file of this name cannot be extracted, as the end of a sentence about the name; empty for
/// a good name. A foreign installer may well carry "../../.profile".
[[nodiscard]] std::string nameFlaw(std::string_view name);

}  // namespace vessant
