// A product's title, as a launch script carries it.
#pragma once

#include <string>

namespace vessant {

/// The title in ASCII: what is not becomes \uXXXX, which the launcher turns into the encoding of
/// its user, and so does a backslash that would begin such an escape. Throws LauncherException for
/// what is no line of UTF-8 text and for characters that have no such escape, such as emoji.
[[nodiscard]] std::string escapedTitle(const std::string& title);

}  // namespace vessant
