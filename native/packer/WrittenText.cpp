#include "packer/WrittenText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kBlockEnd = "/:";

bool needsQuotes(std::string_view value) {
  return value.empty() || value.front() == '"' || value == kBlockEnd ||
         kBlanks.find(value.front()) != std::string_view::npos ||
         kBlanks.find(value.back()) != std::string_view::npos;
}

constexpr std::uint32_t kAsciiEnd = 0x80;
constexpr std::uint32_t kEscapeEnd = 0x10000;
constexpr std::size_t kEscapeLength = 6;  // \uXXXX
constexpr std::uint32_t kFirstPrintable = 0x20;
constexpr std::uint32_t kDelete = 0x7F;
constexpr std::uint32_t kSurrogates = 0xD800;
constexpr std::uint32_t kSurrogatesEnd = 0xE000;

bool isSurrogate(std::uint32_t character) {
  return character >= kSurrogates && character < kSurrogatesEnd;
}

/// How a character of UTF-8 begins: how many bytes follow, and the smallest one that needs them.
struct Sequence {
  unsigned char mask;
  unsigned char mark;
  int following;
  std::uint32_t smallest;
};
constexpr Sequence kSequences[] = {
    {0x80, 0x00, 0, 0}, {0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};

[[noreturn]] void refuse(const std::string& title, const std::string& reason) {
  throw failure("the title " + quotedName(title) + " " + reason);
}

/// The character at `position`, which moves behind it.
std::uint32_t nextCharacter(const std::string& title, std::size_t& position) {
  const auto first = static_cast<unsigned char>(title[position]);
  for (const Sequence& sequence : kSequences) {
    if ((first & sequence.mask) != sequence.mark) continue;
    std::uint32_t character = first & static_cast<unsigned char>(~sequence.mask);
    for (int i = 1; i <= sequence.following; ++i) {
      const std::size_t at = position + static_cast<std::size_t>(i);
      const auto byte = at < title.size() ? static_cast<unsigned char>(title[at]) : 0U;
      if ((byte & 0xC0U) != 0x80U) refuse(title, "is no UTF-8 text");
      character = character << 6U | (byte & 0x3FU);
    }
    if (character < sequence.smallest || isSurrogate(character)) refuse(title, "is no UTF-8 text");
    position += static_cast<std::size_t>(sequence.following) + 1;
    return character;
  }
  refuse(title, "is no UTF-8 text");
}

/// The launcher shows one code of 16 bits a character, so that a pair of surrogates is two of them.
void checkShowable(const std::string& title, std::uint32_t character) {
  if (character < kFirstPrintable || character == kDelete) {
    refuse(title, "must be one line without control characters");
  }
  if (character < kEscapeEnd && !isSurrogate(character)) return;
  refuse(title, "has a character that no launcher can show");
}

std::string escape(std::uint32_t character) {
  char text[sizeof("\\uXXXX")] = {};
  std::snprintf(text, sizeof(text), "\\u%04x", character);
  return text;
}

}  // namespace

std::string tagValue(std::string_view value) {
  if (!needsQuotes(value)) return std::string(value);
  std::string text = "\"";
  for (const char character : value) {
    text += character;
    if (character == '"') text += character;
  }
  return text + '"';
}

std::string tagLine(std::string_view name, std::string_view value) {
  return std::string(name) + ": " + tagValue(value) + "\n";
}

std::string tagBlock(std::string_view name, const std::vector<std::string>& values) {
  if (values.empty()) return "";
  std::string text = std::string(name) + ":\n";
  for (const std::string& value : values) text += "  " + tagValue(value) + "\n";
  return text.append(kBlockEnd) + "\n";
}

std::string escapedTitle(const std::string& title) {
  std::string text;
  for (std::size_t i = 0; i < title.size();) {
    const std::size_t start = i;
    const std::optional<std::uint32_t> escaped = writtenEscapeAt(title, i);
    const std::uint32_t character = escaped ? *escaped : nextCharacter(title, i);
    if (escaped) i += kEscapeLength;
    checkShowable(title, character);
    const bool isPlain = escaped || (character < kAsciiEnd && character != '\\');
    text += isPlain ? title.substr(start, i - start) : escape(character);
  }
  return text;
}

std::optional<std::uint32_t> writtenEscapeAt(std::string_view text, std::size_t position) {
  constexpr int kHexadecimal = 16;
  const std::string_view escape = text.substr(position, kEscapeLength);
  if (escape.size() < kEscapeLength || escape[0] != '\\') return std::nullopt;
  if (escape[1] != 'u' && escape[1] != 'U') return std::nullopt;
  std::uint32_t character = 0;
  const char* end = escape.data() + escape.size();
  const auto [stopped, error] = std::from_chars(escape.data() + 2, end, character, kHexadecimal);
  if (error != std::errc() || stopped != end) return std::nullopt;
  return character;
}

std::string filled(std::string_view text, const Fillings& fillings) {
  std::string result;
  while (!text.empty()) {
    const std::size_t begin = std::min(text.find('<'), text.size());
    result += text.substr(0, begin);
    text.remove_prefix(begin);
    const std::size_t end = text.find('>');
    const std::string_view name = text.substr(0, end).substr(std::min<std::size_t>(1, text.size()));
    const auto filling = std::find_if(fillings.begin(), fillings.end(),
                                      [name](const auto& known) { return known.first == name; });
    const bool isMark = end != std::string_view::npos && filling != fillings.end();
    if (isMark) result += filling->second;
    if (!isMark && !text.empty()) result += text.front();
    text.remove_prefix(isMark ? end + 1 : std::min<std::size_t>(1, text.size()));
  }
  return result;
}

}  // namespace vessant
