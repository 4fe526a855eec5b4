#include "launcher/base/Readers.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

std::uint32_t readBigEndian(std::FILE* stream, int size, const char* message) {
  unsigned char bytes[4] = {};
  if (readBytes(stream, bytes, size) < size) throw LauncherException(message);
  std::uint32_t value = 0;
  for (int i = 0; i < size; ++i) value = value << 8 | bytes[i];
  return value;
}

constexpr char kNewline = '\n';
constexpr char kReturn = '\r';
constexpr SString::Size kPieceSize = 256;

constexpr char kQuote = '"';

void readPlain(SString& result, std::string_view text, SString::Size& position) {
  const std::size_t end = text.find_first_of(kWhitespace, position);
  if (end == std::string_view::npos) {
    result.assign(text);  // all of it: callers read this form from the start. Kept.
    position = SString::npos;
  } else {
    result.assign(text.substr(position, end - position));
    position = static_cast<SString::Size>(end);
  }
}

/// npos, as the number that "%ld" shows for it.
std::int64_t printable(SString::Size position) {
  return static_cast<std::int32_t>(position);
}

[[noreturn]] void throwUnterminated(SString::Size position) {
  throw LauncherException(SString("Expected double quote to end argument near ") +
                          longToString(printable(position)));
}

void readQuoted(SString& result, std::string_view text, SString::Size& position,
                SString::Size offset) {
  result.erase();
  while (true) {
    const std::size_t quote = text.find(kQuote, position);
    if (quote == std::string_view::npos) throwUnterminated(position + offset);
    const bool isLast = quote + 1 == text.size();
    const bool doubled = !isLast && text[quote + 1] == kQuote;
    if (!doubled) {
      result.append(text.substr(position, quote - position));
      position = isLast ? SString::npos : static_cast<SString::Size>(quote + 1);
      return;
    }
    // A doubled quote that ends the text closes nothing, so the argument never ends. Kept.
    if (quote + 2 == text.size()) throwUnterminated(SString::npos);
    result.append(text.substr(position, quote + 1 - position));
    position = static_cast<SString::Size>(quote + 2);
  }
}

}  // namespace

// No stream is shared between threads, so that none of the readers locks one for each byte.

// Binary numbers.

int readBytes(std::FILE* stream, unsigned char* buffer, int count) {
  if (::feof_unlocked(stream) != 0 || ::ferror_unlocked(stream) != 0) return 0;
  const auto wanted = static_cast<std::size_t>(count);
  int stored = static_cast<int>(::fread_unlocked(buffer, 1, wanted, stream));
  // The end is known only once a read has met it; EOF, stored as a byte, is the 255.
  if (stored < count) buffer[stored++] = static_cast<unsigned char>(EOF);
  return stored;
}

std::uint32_t readInt32(std::FILE* stream, const char* message) {
  return readBigEndian(stream, 4, message);
}

std::int16_t readInt16(std::FILE* stream, const char* message) {
  return static_cast<std::int16_t>(readBigEndian(stream, 2, message));
}

// Lines.

bool readLine(std::FILE* stream, SString& line) {
  // Collected in pieces, because every append to a string may move it.
  char piece[kPieceSize];
  std::size_t filled = 0;
  int character = 0;
  while ((character = ::getc_unlocked(stream)) != EOF && character != kNewline) {
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

// Arguments.

void nextArgument(SString& result, std::string_view text, SString::Size& position,
                  ArgumentForm form, SString::Size offset) {
  if (form == ArgumentForm::Quoted) {
    readQuoted(result, text, position, offset);
  } else {
    readPlain(result, text, position);
  }
}

void nextWord(SString& result, const SString& text, SString::Size& position) {
  result.erase();
  while (position < text.length() && isWideSpaceChar(text.at(position))) ++position;
  const SString::Size start = position;
  while (position < text.length() && !isWideSpaceChar(text.at(position))) ++position;
  if (start < position) result.assign(text, start, position - start);
  // One behind, also at the end of the text: callers tell by this that no word is left.
  if (position < SString::maxSize) ++position;
}

}  // namespace vessant
