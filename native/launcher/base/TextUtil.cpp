#include "launcher/base/TextUtil.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <optional>
#include <string_view>

namespace vessant {
namespace {

constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

bool isDigit(char character) {
  return '0' <= character && character <= '9';
}

/// Minus the number that `digits` begins with, clamped to 64 bits. Downwards, because the range
/// reaches one further there.
std::int64_t readNegated(std::string_view digits) {
  std::int64_t value = 0;
  for (const char character : digits) {
    if (!isDigit(character)) break;
    const int digit = character - '0';
    if (value < (kSmallest + digit) / 10) return kSmallest;
    value = value * 10 - digit;
  }
  return value;
}

std::optional<std::int64_t> scanNumber(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && isWideSpaceChar(text[i])) ++i;
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  if (i == text.size() || !isDigit(text[i])) return std::nullopt;
  const std::int64_t value = readNegated(text.substr(i));
  if (negative) return value;
  return value == kSmallest ? kLargest : -value;
}

constexpr SString::Size kEscapeLength = 6;  // \uXXXX
constexpr SString::Size kDigits = 4;
constexpr int kHexadecimal = 16;

/// The character of the escape at `position`, or none when there is no escape.
std::optional<std::uint32_t> escapeAt(const SString& text, SString::Size position) {
  if (text.length() - position < kEscapeLength || text.at(position) != '\\') return std::nullopt;
  const char mark = text.at(position + 1);
  if (mark != 'u' && mark != 'U') return std::nullopt;
  char digits[kDigits + 1] = {};
  text.copy(digits, kDigits, position + 2);
  char* end = nullptr;
  const unsigned long code = std::strtoul(digits, &end, kHexadecimal);
  if (end == digits) return std::nullopt;
  return static_cast<std::uint32_t>(code);
}

/// A process begins in the plain locale. The user's is taken when a character needs it, and not at
/// the start of each run, because opening its files costs a fifth of the shortest run.
void useLocaleOfUser() {
  if (std::string_view(std::setlocale(LC_CTYPE, nullptr)) == "C") std::setlocale(LC_CTYPE, "");
}

/// ASCII is the same in every locale; asking the C library only for the rest keeps it from loading
/// a converter, which a static program on a foreign machine had better not do.
void appendCharacter(SString& text, std::uint32_t code) {
  constexpr std::uint32_t kAsciiEnd = 0x80;
  if (code < kAsciiEnd) {
    text += static_cast<char>(code);
    return;
  }
  useLocaleOfUser();
  char bytes[MB_LEN_MAX];
  const int length = std::wctomb(bytes, static_cast<wchar_t>(code));
  if (length <= 0) {
    text += '?';
  } else {
    text.append(std::string_view(bytes, static_cast<std::size_t>(length)));
  }
}

}  // namespace

void trim(SString& text, std::string_view set) {
  const SString::Size last = text.findLastNotOf(set);
  if (last == SString::npos) {
    text.erase();
    return;
  }
  text.erase(last + 1);
  text.erase(0, text.findFirstNotOf(set));
}

/// Character by character: what there is to trim is short, and every line is trimmed.
std::string_view trimmedView(std::string_view text) {
  while (!text.empty() && isSpaceChar(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpaceChar(text.back())) text.remove_suffix(1);
  return text;
}

SString trimmed(SString text, std::string_view set) {
  trim(text, set);
  return text;
}

SString::Size endsWith(const SString& text, std::string_view suffix) {
  if (!text.view().ends_with(suffix)) return SString::npos;
  return text.length() - static_cast<SString::Size>(suffix.size());
}

SString withoutOuterQuotes(SString text) {
  if (text.view().starts_with('"')) text.erase(0, 1);
  if (text.view().ends_with('"')) text.erase(text.length() - 1);
  return text;
}

SString quoted(std::string_view text) {
  return SString("\"") + text + "\"";
}

SString longToString(std::int64_t number) {
  char digits[24];  // more than any number of 64 bits has
  const char* end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  return std::string_view(digits, static_cast<std::size_t>(end - digits));
}

bool stringToLong(std::string_view text, std::int32_t& number) {
  const std::optional<std::int64_t> scanned = scanNumber(text);
  if (!scanned) return false;
  number = static_cast<std::int32_t>(
      std::clamp<std::int64_t>(*scanned, std::numeric_limits<std::int32_t>::min(),
                               std::numeric_limits<std::int32_t>::max()));
  return true;
}

bool stringToShort(std::string_view text, std::int16_t& number) {
  const std::optional<std::int64_t> scanned = scanNumber(text);
  if (!scanned) return false;
  number = static_cast<std::int16_t>(static_cast<std::uint64_t>(*scanned) & 0xFFFFU);
  return true;
}

std::vector<std::uint32_t> decodeUnicodeEscapes(const SString& text) {
  std::vector<std::uint32_t> codes(text.length() + std::size_t{1}, 0);
  std::size_t filled = 0;
  for (SString::Size i = 0; i < text.length();) {
    const std::optional<std::uint32_t> escape = escapeAt(text, i);
    codes[filled++] = escape.value_or(static_cast<unsigned char>(text.at(i)));
    i += escape ? kEscapeLength : 1;
  }
  return codes;
}

SString wideToText(const std::vector<std::uint32_t>& codes) {
  SString text;
  for (const std::uint32_t code : codes) {
    if (code == 0) break;
    appendCharacter(text, code);
  }
  return text;
}

}  // namespace vessant
