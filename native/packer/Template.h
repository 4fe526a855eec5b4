// Texts with places to fill in.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vessant {

using Fillings = std::vector<std::pair<std::string_view, std::string>>;

/// The text with each `<NAME>` that the fillings name replaced by its filling, wherever it stands.
/// What was filled in is not looked at again; other words between angle brackets stay.
[[nodiscard]] std::string filled(std::string_view text, const Fillings& fillings);

}  // namespace vessant
