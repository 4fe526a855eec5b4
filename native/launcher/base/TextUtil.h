// Small questions and changes on texts. All classification is by ASCII, whatever the locale; only
// the two functions at the end know one.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "launcher/base/SString.h"

namespace vessant {

/// The characters that count as whitespace in every file format of the launcher.
inline constexpr std::string_view kWhitespace = " \t\n\r";

/// True for tab, newline, carriage return and blank.
[[nodiscard]] constexpr bool isSpaceChar(char character) {
  return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}
/// True for those and for vertical tab and form feed, as C's isspace.
[[nodiscard]] constexpr bool isWideSpaceChar(char character) {
  return isSpaceChar(character) || character == '\v' || character == '\f';
}

/// Removes the characters of `set` from the end and the start of `text`.
void trim(SString& text, std::string_view set = kWhitespace);
/// The part of `text` between the whitespace at its ends.
[[nodiscard]] std::string_view trimmedView(std::string_view text);
[[nodiscard]] SString trimmed(SString text, std::string_view set = kWhitespace);

/// Where `suffix` starts when `text` ends with it, else SString::npos.
[[nodiscard]] SString::Size endsWith(const SString& text, std::string_view suffix);

/// `text` without one double quote at each end, each taken off independently.
[[nodiscard]] SString withoutOuterQuotes(SString text);
/// `text` between two double quotes; quotes inside stand as they are.
[[nodiscard]] SString quoted(std::string_view text);

/// The decimal text of a number.
[[nodiscard]] SString longToString(std::int64_t number);
/// Reads a decimal number at the start of `text` as scanf's "%ld" would on a machine whose long has
/// 32 bits: leading whitespace and trailing text are accepted, too large a number becomes the
/// nearest one that fits. Returns whether there was a number; `number` is untouched if not.
[[nodiscard]] bool stringToLong(std::string_view text, std::int32_t& number);
/// The same as scanf's "%hd" does: the low 16 bits of the number.
[[nodiscard]] bool stringToShort(std::string_view text, std::int16_t& number);

/// Titles and descriptions may carry characters as backslash-u escapes, so that their files stay
/// ASCII; this and the next function turn such a text into the encoding of the user's locale.
///
/// One code a character, with a 0 behind the last; as many elements as `text` has bytes, and one
/// more. A backslash, a "u" or "U" and four characters that begin with a hexadecimal number are one
/// character; every other byte stands for itself.
[[nodiscard]] std::vector<std::uint32_t> decodeUnicodeEscapes(const SString& text);

/// The codes up to the first 0 in the locale's multibyte encoding. What the locale cannot show
/// becomes "?". A code beyond ASCII makes a process that is still in the "C" locale take the
/// character set that the environment names (LC_ALL, LC_CTYPE, LANG).
[[nodiscard]] SString wideToText(const std::vector<std::uint32_t>& codes);

}  // namespace vessant
