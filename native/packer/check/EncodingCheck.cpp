#include "packer/check/EncodingCheck.h"

#include <algorithm>

namespace vessant {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

/// With a mark, or as Latin letters look without one: every second byte is zero.
bool isUtf16(std::string_view bytes) {
  if (bytes.starts_with(kLittleEndianMark) || bytes.starts_with(kBigEndianMark)) return true;
  constexpr std::size_t kFewest = 4;
  const std::string_view start = bytes.substr(0, 256);
  const auto zeros = std::count(start.begin(), start.end(), '\0');
  return start.size() >= kFewest && static_cast<std::size_t>(zeros) * 5 >= start.size() * 2;
}

/// Calls `report` once for each line that has a flaw.
template <typename IsFlaw, typename Report>
void forEachFlawedLine(std::string_view bytes, IsFlaw isFlaw, Report report) {
  int line = 1;
  bool reported = false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (!reported && isFlaw(i)) {
      report(line);
      reported = true;
    }
    if (bytes[i] != '\n') continue;
    ++line;
    reported = false;
  }
}

}  // namespace

std::optional<std::string_view> checkEncoding(const std::string& file, std::string_view bytes,
                                              Findings& findings) {
  if (isUtf16(bytes)) {
    findings.error(file, 1, "utf-16",
                   "the text is UTF-16, which the launcher cannot read: save it as ASCII or UTF-8");
    return std::nullopt;
  }
  if (bytes.starts_with(kUtf8Mark)) {
    findings.error(file, 1, "byte-order-mark",
                   "a byte order mark stands in front of the first tag and becomes a part of its "
                   "name: save the text without it");
    bytes.remove_prefix(kUtf8Mark.size());
  }
  const auto isStrayReturn = [bytes](std::size_t i) {
    return bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n');
  };
  forEachFlawedLine(bytes, isStrayReturn, [&](int line) {
    findings.error(file, line, "stray-carriage-return",
                   "a carriage return that ends no line is dropped, and what stands on both sides "
                   "is read as one: end lines with a line feed");
  });
  const auto isZero = [bytes](std::size_t i) { return bytes[i] == '\0'; };
  forEachFlawedLine(bytes, isZero, [&](int line) {
    findings.error(file, line, "zero-byte", "a zero byte is no part of a text: remove it");
  });
  return bytes;
}

}  // namespace vessant
