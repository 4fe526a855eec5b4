#include "launcher/base/LineReader.h"

#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr char kNewline = '\n';
constexpr char kReturn = '\r';
constexpr SString::Size kPieceSize = 256;

}  // namespace

bool readLine(std::FILE* stream, SString& line) {
  char piece[kPieceSize];
  std::size_t filled = 0;
  int character = 0;
  while ((character = std::getc(stream)) != EOF && character != kNewline) {
    if (character == kReturn) continue;
    if (filled == sizeof(piece)) {
      line.append(std::string_view(piece, filled));
      filled = 0;
    }
    piece[filled++] = static_cast<char>(character);
  }
  line.append(std::string_view(piece, filled));
  trim(line);
  return character != EOF;
}

bool readLine(const SString& text, SString::Size& position, SString& line) {
  if (position >= text.length()) return false;
  const SString::Size newline = text.find(kNewline, position);
  const bool complete = newline != SString::npos;
  const SString::Size end = complete ? newline : text.length();
  for (const char character : text.view().substr(position, end - position)) {
    if (character != kReturn) line += character;
  }
  position = complete ? end + 1 : end;
  trim(line);
  return complete;
}

}  // namespace vessant
