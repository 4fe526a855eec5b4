#include "launcher/tagfile/TagFileParser.h"

#include <algorithm>
#include <string>

#include <sys/stat.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr char kColon = ':';
constexpr char kQuote = '"';
constexpr char kNewline = '\n';
constexpr char kReturn = '\r';
constexpr std::string_view kBlockEnd = "/:";
constexpr std::size_t kChunkSize = 65536;

/// How much there is to read, as far as the system knows; 0 where it does not.
std::size_t bytesAhead(std::FILE* stream) {
  struct stat status = {};
  const off_t position = ::ftello(stream);
  if (::fstat(::fileno(stream), &status) != 0 || status.st_size <= position) return 0;
  return static_cast<std::size_t>(status.st_size - position);
}

}  // namespace

void TagFileParser::parse(std::uint32_t offset, std::int64_t length) {
  lineNumber_ = 0;
  if (::fseeko(stream_, static_cast<off_t>(offset), SEEK_SET) != 0) {
    throw LauncherException("Unable to read tag file.");
  }
  position_ = tags_.text().size();
  tags_.dropParts();  // of an earlier text that broke off in a block
  load(length);
  reserve();
  const std::size_t end =
      length < 0 ? std::string::npos : position_ + static_cast<std::size_t>(length);
  // The length counts for the beginning of a tag alone; a block goes on to its end.
  while (!atEnd_ && position_ < end) {
    const std::string_view line = nextLine();
    if (!line.empty()) parseTag(line);
  }
}

/// In one piece, so that the text takes no more room than it has bytes. One byte more than the
/// system knows of tells whether the stream ends there.
void TagFileParser::load(std::int64_t length) {
  const std::size_t known = bytesAhead(stream_);
  if (length >= 0) {
    loadMore(std::min(known, static_cast<std::size_t>(length)));
    return;
  }
  tags_.text().reserve(position_ + known + 1);
  if (known > 0) loadMore(known);
  while (!streamEnded_) loadMore(1);
}

/// Hardly any line has no value, so that counting them is worth its time.
void TagFileParser::reserve() {
  const std::string& text = tags_.text();
  const auto begin = text.begin() + static_cast<std::ptrdiff_t>(position_);
  tags_.reserveParts(static_cast<std::size_t>(std::count(begin, text.end(), kNewline)) + 1);
}

/// Appends up to so many bytes to the text; false when there were none.
bool TagFileParser::loadMore(std::size_t count) {
  std::string& text = tags_.text();
  const std::size_t size = text.size();
  text.resize(size + count);
  const std::size_t got = std::fread(text.data() + size, 1, count, stream_);
  text.resize(size + got);
  if (got < count) streamEnded_ = true;  // a read error ends the text, too
  return got > 0;
}

/// Without its carriage returns and trimmed; a view into the text, good until more is loaded. The
/// last line has no newline behind it.
std::string_view TagFileParser::nextLine() {
  std::string& text = tags_.text();
  std::size_t newline = text.find(kNewline, position_);
  while (newline == std::string::npos && !streamEnded_) {
    const std::size_t searched = text.size();
    loadMore(kChunkSize);
    newline = text.find(kNewline, searched);
  }
  atEnd_ = newline == std::string::npos;
  char* const begin = text.data() + position_;
  char* end = text.data() + (atEnd_ ? text.size() : newline);
  position_ = atEnd_ ? text.size() : newline + 1;
  ++lineNumber_;
  // Few lines have one: the search for it is faster than the moving.
  const std::string_view line(begin, static_cast<std::size_t>(end - begin));
  const std::size_t firstReturn = line.find(kReturn);
  if (firstReturn != std::string_view::npos) end = std::remove(begin + firstReturn, end, kReturn);
  return trimmedView({begin, static_cast<std::size_t>(end - begin)});
}

void TagFileParser::parseTag(std::string_view line) {
  const std::size_t colon = line.find(kColon);
  if (colon == std::string_view::npos) {
    syntaxError("Missing colon at the end of the tag name.", lineNumber_);
  }
  const std::string_view name = trimmedView(line.substr(0, colon));
  removeKnown(name);
  if (colon + 1 == line.size()) return parseBlock(name);
  std::size_t start = colon + 1;
  while (start < line.size() && isSpaceChar(line[start])) ++start;
  if (start == line.size()) syntaxError("Invalid tag format.", lineNumber_);
  tags_.addPart(valueFrom(line, start));
  tags_.addTag(partOf(name));
}

/// The tag counts once its end is found, and only with a value; its lines may move when more of
/// the stream has to be loaded, but not their places in the text.
void TagFileParser::parseBlock(std::string_view name) {
  const std::int32_t startLine = lineNumber_;
  const TagTable::Part namePart = partOf(name);
  while (!atEnd_) {
    const std::string_view line = nextLine();
    if (line == kBlockEnd) {
      if (tags_.hasParts()) tags_.addTag(namePart);
      return;
    }
    if (!line.empty()) tags_.addPart(valueFrom(line, 0));
  }
  syntaxError("Missing /: tag completer.", startLine);
}

/// The value that begins at `start` of a line and goes on to its end. One in quotes is shorter
/// without them and what they double: it is put in its own place.
TagTable::Part TagFileParser::valueFrom(std::string_view line, std::size_t start) {
  if (line[start] != kQuote) return partOf(line.substr(start));
  SString value;
  auto position = static_cast<SString::Size>(start + 1);
  nextArgument(value, line, position, ArgumentForm::Quoted);
  const std::size_t offset = partOf(line).offset + start;
  std::copy(value.view().begin(), value.view().end(),
            tags_.text().begin() + static_cast<std::ptrdiff_t>(offset));
  return {offset, value.length()};
}

TagTable::Part TagFileParser::partOf(std::string_view piece) const {
  if (piece.empty()) return {};
  if (piece.size() > SString::maxSize) throw LengthException();
  return {static_cast<std::size_t>(piece.data() - tags_.text().data()),
          static_cast<std::uint32_t>(piece.size())};
}

/// Only its last definition counts, and stands where that does.
void TagFileParser::removeKnown(std::string_view name) {
  const TagTable::Place known = tags_.find(name);
  if (known != TagTable::kNowhere) tags_.remove(known);
}

void TagFileParser::syntaxError(const char* text, std::int32_t lineNumber) const {
  const SString message =
      "Syntax error in " + sourceName_ + " at line " + longToString(lineNumber) + " ==> " + text;
  log_.log(message, LogLevel::Error);
  throw LauncherException(message);
}

}  // namespace vessant
