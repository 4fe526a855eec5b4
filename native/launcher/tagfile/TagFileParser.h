// Turns the text of a tag file into its tags, in time that grows with the text alone.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagTable.h"

namespace vessant {

class TagFileParser {
 public:
  /// `lineNumber` counts the lines read. What is found goes into `tags`. All must outlive the
  /// parser.
  TagFileParser(std::FILE* stream, const SString& sourceName, std::int32_t& lineNumber,
                TagTable& tags, LogSink& log)
      : stream_(stream), sourceName_(sourceName), lineNumber_(lineNumber), tags_(tags), log_(log) {}

  /// Reads from `offset` on. Throws LauncherException at the first error; the tags in front of it
  /// are there then.
  void parse(std::uint32_t offset, std::int64_t length);

 private:
  void load(std::int64_t length);
  void reserve();
  bool loadMore(std::size_t count);
  [[nodiscard]] std::string_view nextLine();
  void parseTag(std::string_view line);
  void parseBlock(std::string_view name);
  [[nodiscard]] TagTable::Part partOf(std::string_view piece) const;
  [[nodiscard]] TagTable::Part valueFrom(std::string_view line, std::size_t start);
  void removeKnown(std::string_view name);
  [[noreturn]] void syntaxError(const char* text, std::int32_t lineNumber) const;

  std::FILE* stream_;
  const SString& sourceName_;
  std::int32_t& lineNumber_;
  TagTable& tags_;
  LogSink& log_;
  std::size_t position_ = 0;  // of the next line in the table's text
  bool streamEnded_ = false;
  bool atEnd_ = false;
};

}  // namespace vessant
