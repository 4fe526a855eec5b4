#include "launcher/tagfile/TagFile.h"

#include <cstdio>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "launcher/tagfile/TagFileParser.h"

namespace vessant {
namespace {

constexpr std::string_view kBlockEnd = "/:";

/// Quotes keep what a plain value would lose: blanks at its ends, its quotes, its being empty, or
/// its being a value where it looks like the end of the block that it stands in.
bool needsQuotes(std::string_view value, bool isBlock) {
  return value.empty() || isSpaceChar(value.front()) || isSpaceChar(value.back()) ||
         value.find('"') != std::string_view::npos || (isBlock && value == kBlockEnd);
}

void write(std::FILE* file, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), file);  // a failure marks the stream
}

void writeQuoted(std::FILE* file, std::string_view value) {
  write(file, "\"");
  for (const char& character : value) {
    if (character == '"') write(file, "\"");
    write(file, {&character, 1});
  }
  write(file, "\"");
}

void writeTag(std::FILE* file, const TagTable& tags, TagTable::Place place) {
  const std::int32_t count = tags.valueCount(place);
  if (count == 0) return;
  const bool isBlock = count > 1;
  write(file, tags.name(place));
  write(file, isBlock ? ":\n" : ":");
  for (std::int32_t i = 0; i < count; ++i) {
    const std::string_view value = tags.value(place, i);
    write(file, "  ");
    if (needsQuotes(value, isBlock)) {
      writeQuoted(file, value);
    } else {
      write(file, value);
    }
    write(file, "\n");
  }
  if (!isBlock) return;
  write(file, kBlockEnd);
  write(file, "\n");
}

/// Whether the path itself, and no link at it, names the open file.
bool namesFile(const SString& path, const struct stat& file) {
  struct stat named = {};
  return ::lstat(path.cString(), &named) == 0 && named.st_dev == file.st_dev &&
         named.st_ino == file.st_ino;
}

/// Nothing more can be done about a file that can be neither removed nor emptied.
void removeCutFile(std::FILE* file, const SString& path) {
  struct stat status = {};
  if (::fstat(::fileno(file), &status) != 0 || !S_ISREG(status.st_mode)) return;
  if (namesFile(path, status)) {
    std::remove(path.cString());
  } else {
    static_cast<void>(!::ftruncate(::fileno(file), 0));
  }
}

}  // namespace

TagFile::TagFile(const SString& path, LogSink& log) {
  const StdFile file = openFile(path, OpenMode::Read);
  if (file == nullptr) throw LauncherException("Unable to load input file: " + path);
  load(file.get(), path, 0, kToEndOfFile, log);
}

void TagFile::load(std::FILE* stream, const SString& sourceName, std::uint32_t offset,
                   std::int64_t length, LogSink& log) {
  sourceName_ = sourceName;
  TagFileParser(stream, sourceName_, lineNumber_, tags_, log).parse(offset, length);
  complete_ = true;
}

const StringDeque* TagFile::findValues(std::string_view name) const {
  const TagTable::Place place = tags_.find(name);
  return place == TagTable::kNowhere ? nullptr : &tags_.values(place);
}

SString TagFile::getValue(std::string_view name, std::int32_t index) const {
  const TagTable::Place place = tags_.find(name);
  return place == TagTable::kNowhere ? SString() : SString(tags_.value(place, index));
}

std::int32_t TagFile::getValueCount(std::string_view name) const {
  const TagTable::Place place = tags_.find(name);
  return place == TagTable::kNowhere ? 0 : tags_.valueCount(place);
}

bool TagFile::getBoolean(std::string_view name, bool fallback) const {
  std::int16_t number = 0;
  return stringToShort(getValue(name), number) ? number != 0 : fallback;
}

void TagFile::setValue(const SString& name, const SString& value) {
  StringDeque& values = tags_.values(tags_.findOrAdd(name));
  if (values.isEmpty()) return values.add(value);
  values.set(0, value);  // first: `value` may be one of those that go
  while (values.count() > 1) values.removeLast();
}

void TagFile::addValue(const SString& name, const SString& value) {
  tags_.values(tags_.findOrAdd(name)).add(value);
}

void TagFile::setBoolean(const SString& name, bool flag) {
  setValue(name, flag ? "1" : "0");
}

void TagFile::setJvmTags(const SString& jvmHome, const SString& jvmFile, bool temporary) {
  setValue(jvmtag::kHome, jvmHome);
  setValue(jvmtag::kFile, jvmFile);
  setBoolean(jvmtag::kTemporary, temporary);
}

void TagFile::removeTag(std::string_view name) {
  const TagTable::Place place = tags_.find(name);
  if (place != TagTable::kNowhere) tags_.remove(place);
}

void TagFile::save(const SString& path) const {
  const StdFile file = openFile(path, OpenMode::Write);
  if (file == nullptr) return;
  TagTable::Place place = TagTable::kNowhere;
  while ((place = tags_.next(place)) != TagTable::kNowhere) writeTag(file.get(), tags_, place);
  const bool isWhole = std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
  if (!isWhole) removeCutFile(file.get(), path);
}

}  // namespace vessant
