// TagFile, a parsed tag file: the syntax of every structured text that the launcher reads.
//
//     COLOR: blue
//     ITEMS:
//       first item
//       "  padded item  "
//     /:
//
// A tag has one value on its own line or a block of values that "/:" ends. Lines are trimmed and
// blank ones skipped. Double quotes keep blanks at the ends of a value; a doubled quote inside
// stands for one. There are no comments. A tag that is defined twice keeps its last definition.
// Names are compared byte for byte.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "launcher/base/Deque.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagTable.h"

namespace vessant {

class TagFile {
 public:
  static constexpr std::int64_t kToEndOfFile = -1;

  TagFile() = default;
  /// Reads the file at `path`. Throws LauncherException when it cannot be opened or has a syntax
  /// error; a syntax error is logged, too.
  TagFile(const SString& path, LogSink& log);
  TagFile(const TagFile&) = delete;
  TagFile& operator=(const TagFile&) = delete;
  virtual ~TagFile() = default;

  /// Reads the tags that begin within `length` bytes from `offset` of a stream (or up to its end).
  /// A block that begins there is read on to its end. `sourceName` stands in error messages. What
  /// was read before stays, unless it is defined anew; and what stands in front of an error is
  /// there when the error is thrown.
  void load(std::FILE* stream, const SString& sourceName, std::uint32_t offset, std::int64_t length,
            LogSink& log);

  /// The values of a tag, or null when there is no such tag.
  [[nodiscard]] const StringDeque* findValues(std::string_view name) const;
  /// One value; empty when the tag or the value is missing.
  [[nodiscard]] SString getValue(std::string_view name, std::int32_t index = 0) const;
  [[nodiscard]] std::int32_t getValueCount(std::string_view name) const;
  /// Whether the tag's first value is a number other than 0; `fallback` when it is not a number.
  [[nodiscard]] bool getBoolean(std::string_view name, bool fallback) const;

  /// Makes `value` the only value of the tag.
  void setValue(const SString& name, const SString& value);
  void addValue(const SString& name, const SString& value);
  /// Sets "1" or "0".
  void setBoolean(const SString& name, bool flag);
  /// Notes which Java VM was chosen, for the next stage.
  void setJvmTags(const SString& jvmHome, const SString& jvmFile, bool temporary);
  void removeTag(std::string_view name);

  /// Writes the tags that have values in the form that reading them gives back. A file that cannot
  /// be created is not written. One that cannot be written whole is removed, because what is cut
  /// could pass for a whole one; a device is left alone, and behind a link the file is emptied.
  /// Neither raises an error.
  void save(const SString& path) const;

  [[nodiscard]] const TagTable& tags() const { return tags_; }
  /// The path or the embedded name that the tags were read from.
  [[nodiscard]] const SString& sourceName() const { return sourceName_; }
  [[nodiscard]] std::int32_t lineNumber() const { return lineNumber_; }
  /// True once parsing has reached the end of the text.
  [[nodiscard]] bool isComplete() const { return complete_; }

 private:
  TagTable tags_;
  bool complete_ = false;
  std::int32_t lineNumber_ = 0;
  SString sourceName_;
};

using TagFilePtrDE = PtrDE<TagFile>;
using TagFilePtrDeque = PtrDeque<TagFile>;

}  // namespace vessant
