// Texts that vspack writes for an author, who goes on with an editor: tags, titles and texts with
// places to fill in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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

/// The title in ASCII: what is not becomes \uXXXX, which the launcher turns into the encoding of
/// its user. An escape that the author wrote, such as \u00e4, is taken for the character that it
/// means, as in every title that a tag file holds; any other backslash stands for itself. Throws
/// LauncherException for what is no line of UTF-8 text and for characters that have no such escape,
/// such as emoji.
[[nodiscard]] std::string escapedTitle(const std::string& title);

/// The character of an escape that stands at `position` as authors write it: a backslash, "u" or
/// "U" and four hexadecimal digits. Nothing for other text, of which the launcher, which asks for
/// one digit only, may make a character all the same.
[[nodiscard]] std::optional<std::uint32_t> writtenEscapeAt(std::string_view text,
                                                           std::size_t position);

using Fillings = std::vector<std::pair<std::string_view, std::string>>;

/// The text with each `<NAME>` that the fillings name replaced by its filling, wherever it stands.
/// What was filled in is not looked at again; other words between angle brackets stay.
[[nodiscard]] std::string filled(std::string_view text, const Fillings& fillings);

}  // namespace vessant
