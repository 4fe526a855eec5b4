// Turns the text of a tag file into its tags, in time that grows with the text alone.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagFileEntry.h"

namespace vessant {

class TagFileParser {
 public:
  /// `lineNumber` counts the lines read. All four must outlive the parser.
  TagFileParser(std::FILE* stream, const SString& sourceName, std::int32_t& lineNumber,
                LogSink& log)
      : stream_(stream), sourceName_(sourceName), lineNumber_(lineNumber), log_(log) {}

  /// Reads from `offset` on and appends the tags to `entries`. Throws LauncherException at the
  /// first error.
  void parse(std::uint32_t offset, std::int64_t length, TagFileEntryPtrDeque& entries);

 private:
  void readLine(SString& line);
  [[nodiscard]] bool isWithin(std::int64_t end) const;
  void parseTag(const SString& line);
  void parseBlock(std::unique_ptr<TagFileEntry> entry);
  void keep(std::unique_ptr<TagFileEntry> entry);
  void forget(std::string_view name);
  [[noreturn]] void syntaxError(const char* text, std::int32_t lineNumber) const;

  std::FILE* stream_;
  const SString& sourceName_;
  std::int32_t& lineNumber_;
  LogSink& log_;
  bool atEnd_ = false;
  // Tags in their order; a redefined one leaves an empty place behind, so that nothing moves.
  std::vector<std::unique_ptr<TagFileEntry>> found_;
  std::unordered_map<std::string_view, std::size_t> placeOf_;
};

}  // namespace vessant
