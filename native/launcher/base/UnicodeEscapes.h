// Titles and descriptions may carry characters as backslash-u escapes, so that their files stay
// ASCII. These two functions turn such a text into the encoding of the user's locale.
#pragma once

#include <cstdint>
#include <vector>

#include "launcher/base/SString.h"

namespace vessant {

/// One code a character, with a 0 behind the last; as many elements as `text` has bytes, and one
/// more. A backslash, a "u" or "U" and four characters that begin with a hexadecimal number are one
/// character; every other byte stands for itself.
[[nodiscard]] std::vector<std::uint32_t> decodeUnicodeEscapes(const SString& text);

/// The codes up to the first 0 in the locale's multibyte encoding. What the locale cannot show
/// becomes "?". A code beyond ASCII makes a process that is still in the "C" locale take the
/// character set that the environment names (LC_ALL, LC_CTYPE, LANG).
[[nodiscard]] SString wideToText(const std::vector<std::uint32_t>& codes);

}  // namespace vessant
