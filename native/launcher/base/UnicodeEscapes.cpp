#include "launcher/base/UnicodeEscapes.h"

#include <climits>
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <optional>
#include <string_view>

namespace vessant {
namespace {

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
