#include "launcher/tagfile/TagFile.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "launcher/tagfile/TagFileParser.h"
#include "launcher/tagfile/TagFileWriter.h"

namespace vessant {

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
  writeTagFile(tags_, path);
}

}  // namespace vessant
