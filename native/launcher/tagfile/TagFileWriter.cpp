// The written form of a tag file.

#include <cstdio>
#include <string_view>
#include <utility>

#include "launcher/base/Handles.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {
namespace {

constexpr std::string_view kBlockEnd = "/:";

/// Quotes keep what a plain value would lose: blanks at its ends, its quotes, its being empty, or
/// its being a value where it looks like the end of the block that it stands in.
bool needsQuotes(const SString& value, bool isBlock) {
  return value.isEmpty() || isSpaceChar(value.at(0)) || isSpaceChar(value.at(value.length() - 1)) ||
         value.find('"') != SString::npos || (isBlock && value == kBlockEnd);
}

void write(std::FILE* file, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), file);  // a failure marks the stream
}

void writeQuoted(std::FILE* file, const SString& value) {
  write(file, "\"");
  for (const char& character : value.view()) {
    if (character == '"') write(file, "\"");
    write(file, {&character, 1});
  }
  write(file, "\"");
}

void writeEntry(std::FILE* file, const TagFileEntry& entry) {
  if (entry.values.isEmpty()) return;
  const bool isBlock = entry.values.count() > 1;
  write(file, entry.name);
  write(file, isBlock ? ":\n" : ":");
  for (const SString& value : entry.values) {
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

/// Closes the file; returns whether all of it was written.
bool finish(StdFile file) {
  const bool whole = std::ferror(file.get()) == 0;
  return std::fclose(file.release()) == 0 && whole;
}

}  // namespace

void TagFile::save(const SString& path) const {
  StdFile file = openFile(path, OpenMode::Write);
  if (file == nullptr) return;
  for (const TagFileEntry& entry : entries_) writeEntry(file.get(), entry);
  if (!finish(std::move(file))) std::remove(path.cString());
}

}  // namespace vessant
