#include "launcher/tagfile/TagFile.h"

#include <memory>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "launcher/tagfile/TagFileParser.h"

namespace vessant {

TagFile::TagFile(const SString& path, LogSink& log) {
  const StdFile file = openFile(path, OpenMode::Read);
  if (file == nullptr) throw LauncherException("Unable to load input file: " + path);
  load(file.get(), path, 0, kToEndOfFile, log);
}

void TagFile::load(std::FILE* stream, const SString& sourceName, std::uint32_t offset,
                   std::int64_t length, LogSink& log) {
  sourceName_ = sourceName;
  TagFileParser parser(stream, sourceName_, lineNumber_, log);
  parser.parse(offset, length, entries_);
  complete_ = true;
}

const StringDeque* TagFile::findValues(std::string_view name) const {
  const TagFileEntry* entry = find(name);
  return entry == nullptr ? nullptr : &entry->values;
}

SString TagFile::getValue(std::string_view name, std::int32_t index) const {
  const StringDeque* values = findValues(name);
  return values == nullptr ? SString() : values->get(index);
}

std::int32_t TagFile::getValueCount(std::string_view name) const {
  const StringDeque* values = findValues(name);
  return values == nullptr ? 0 : values->count();
}

bool TagFile::getBoolean(std::string_view name, bool fallback) const {
  std::int16_t number = 0;
  return stringToShort(getValue(name), number) ? number != 0 : fallback;
}

void TagFile::setValue(const SString& name, const SString& value) {
  StringDeque& values = findOrAdd(name).values;
  if (values.isEmpty()) return values.add(value);
  values.set(0, value);  // first: `value` may be one of those that go
  while (values.count() > 1) values.removeLast();
}

void TagFile::addValue(const SString& name, const SString& value) {
  findOrAdd(name).values.add(value);
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
  for (std::int32_t i = 0; i < entries_.count(); ++i) {
    if (entries_.get(i)->name == name) return entries_.removeAt(i);
  }
}

TagFileEntry* TagFile::find(std::string_view name) const {
  for (TagFileEntry& entry : entries_) {
    if (entry.name == name) return &entry;
  }
  return nullptr;
}

TagFileEntry& TagFile::findOrAdd(const SString& name) {
  TagFileEntry* entry = find(name);
  if (entry != nullptr) return *entry;
  entries_.add(std::make_unique<TagFileEntry>(name));
  return *entries_.getLast();
}

}  // namespace vessant
