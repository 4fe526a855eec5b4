// The written form of a tag file.

#include <cstdio>

#include "launcher/base/StdFile.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {
namespace {

constexpr std::string_view kBlockEnd = "/:";

/// Quotes keep what a plain value would lose: blanks at its ends, its quotes, its being empty, or
/// its being a value where it looks like the end of a block.
bool needsQuotes(const SString& value) {
  return value.isEmpty() || isSpaceChar(value.at(0)) || isSpaceChar(value.at(value.length() - 1)) ||
         value.find('"') != SString::npos || value == kBlockEnd;
}

SString withDoubledQuotes(const SString& value) {
  SString result;
  for (const char character : value.view()) {
    if (character == '"') result += '"';
    result += character;
  }
  return result;
}

void appendEntry(SString& text, const TagFileEntry& entry) {
  if (entry.values.isEmpty()) return;
  const bool isBlock = entry.values.count() > 1;
  text.append(entry.name).append(isBlock ? ":\n" : ":");
  for (const SString& value : entry.values) {
    text.append("  ").append(needsQuotes(value) ? quoted(withDoubledQuotes(value)) : value);
    text += '\n';
  }
  if (isBlock) text.append(kBlockEnd).append("\n");
}

bool writeWhole(StdFile file, const SString& text) {
  const bool written = std::fwrite(text.cString(), 1, text.length(), file.get()) == text.length();
  return std::fclose(file.release()) == 0 && written;
}

}  // namespace

void TagFile::save(const SString& path) const {
  SString text;
  for (const TagFileEntry& entry : entries_) appendEntry(text, entry);
  StdFile file = openFile(path, OpenMode::Write);
  if (file == nullptr) return;
  if (!writeWhole(std::move(file), text)) std::remove(path.cString());
}

}  // namespace vessant
