// Tags as text: what vspack writes for an author, who goes on with an editor.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vessant {

/// `NAME: value`, quoted where the launcher would otherwise read something else. The value must
/// hold no line break.
[[nodiscard]] std::string tagLine(std::string_view name, std::string_view value);

/// The name, each value on a line of its own, and the line that ends the block. Empty without
/// values: a tag has at least one.
[[nodiscard]] std::string tagBlock(std::string_view name, const std::vector<std::string>& values);

/// The value as it must stand in a tag file: in double quotes, with those inside doubled, when it
/// has blanks at an end, begins with a quote or is empty; also when it would end a block.
[[nodiscard]] std::string tagValue(std::string_view value);

}  // namespace vessant
