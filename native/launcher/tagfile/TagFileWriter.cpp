#include "launcher/tagfile/TagFileWriter.h"

#include <cstdio>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Handles.h"
#include "launcher/base/TextUtil.h"

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

void writeTagFile(const TagTable& tags, const SString& path) {
  const StdFile file = openFile(path, OpenMode::Write);
  if (file == nullptr) return;
  TagTable::Place place = TagTable::kNowhere;
  while ((place = tags.next(place)) != TagTable::kNowhere) writeTag(file.get(), tags, place);
  const bool isWhole = std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
  if (!isWhole) removeCutFile(file.get(), path);
}

}  // namespace vessant
