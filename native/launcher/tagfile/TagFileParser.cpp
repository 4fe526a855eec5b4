#include "launcher/tagfile/TagFileParser.h"

#include <utility>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr char kColon = ':';
constexpr char kQuote = '"';
constexpr std::string_view kBlockEnd = "/:";

/// The value that begins at `start` of a line and goes on to its end, without its quotes.
SString valueFrom(const SString& line, SString::Size start) {
  if (line.at(start) != kQuote) return line.substr(start);
  SString value;
  SString::Size position = start + 1;
  nextArgument(value, line, position, ArgumentForm::Quoted);
  return value;
}

}  // namespace

void TagFileParser::parse(std::uint32_t offset, std::int64_t length,
                          TagFileEntryPtrDeque& entries) {
  lineNumber_ = 0;
  if (::fseeko(stream_, static_cast<off_t>(offset), SEEK_SET) != 0) {
    throw LauncherException("Unable to read tag file.");
  }
  const std::int64_t end = length < 0 ? -1 : offset + length;
  SString line;
  while (!atEnd_ && isWithin(end)) {
    readLine(line);
    if (!line.isEmpty()) parseTag(line);
  }
  for (std::unique_ptr<TagFileEntry>& entry : found_) {
    if (entry != nullptr) entries.add(std::move(entry));
  }
}

void TagFileParser::readLine(SString& line) {
  line.erase();
  atEnd_ = !vessant::readLine(stream_, line);
  ++lineNumber_;
}

bool TagFileParser::isWithin(std::int64_t end) const {
  return end < 0 || ::ftello(stream_) < end;
}

void TagFileParser::parseTag(const SString& line) {
  const SString::Size colon = line.find(kColon);
  if (colon == SString::npos) syntaxError("Missing colon at the end of the tag name.", lineNumber_);
  auto entry = std::make_unique<TagFileEntry>(trimmed(line.substr(0, colon)));
  forget(entry->name);
  if (colon + 1 == line.length()) return parseBlock(std::move(entry));
  const SString::Size start = line.findFirstNotOf(kWhitespace, colon + 1);
  if (start == SString::npos) syntaxError("Invalid tag format.", lineNumber_);
  entry->values.add(valueFrom(line, start));
  keep(std::move(entry));
}

void TagFileParser::parseBlock(std::unique_ptr<TagFileEntry> entry) {
  const std::int32_t startLine = lineNumber_;
  SString line;
  while (!atEnd_) {
    readLine(line);
    if (line == kBlockEnd) {
      if (!entry->values.isEmpty()) keep(std::move(entry));
      return;
    }
    if (!line.isEmpty()) entry->values.add(valueFrom(line, 0));
  }
  syntaxError("Missing /: tag completer.", startLine);
}

void TagFileParser::keep(std::unique_ptr<TagFileEntry> entry) {
  placeOf_[entry->name.view()] = found_.size();
  found_.push_back(std::move(entry));
}

void TagFileParser::forget(std::string_view name) {
  const auto known = placeOf_.find(name);
  if (known == placeOf_.end()) return;
  const std::unique_ptr<TagFileEntry> old = std::move(found_[known->second]);
  placeOf_.erase(known);  // its key is a view of the old entry's name
}

void TagFileParser::syntaxError(const char* text, std::int32_t lineNumber) const {
  const SString message =
      "Syntax error in " + sourceName_ + " at line " + longToString(lineNumber) + " ==> " + text;
  log_.log(message, LogLevel::Error);
  throw LauncherException(message);
}

}  // namespace vessant
