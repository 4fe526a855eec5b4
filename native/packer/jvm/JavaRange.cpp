#include "packer/jvm/JavaRange.h"

#include <charconv>

#include "packer/Text.h"

namespace vessant {
int parseJavaVersion(std::string_view text) {
  const std::string_view digits = text == "1.8" ? text.substr(2) : text;
  const char* end = digits.data() + digits.size();
  int version = 0;
  const auto [last, error] = std::from_chars(digits.data(), end, version);
  if (error != std::errc() || last != end || version > JavaRange::kLargest || version < 0) {
    throw failure("\"" + std::string(text) + "\" is no Java version such as 17");
  }
  if (version < JavaRange::kOldest) {
    throw failure("Java " + std::string(digits) +
                  " is too old: the verification class needs Java 8");
  }
  return version;
}

JavaRange parseJavaRange(std::string_view text) {
  const std::size_t dash = text.find('-');
  JavaRange range{.min = parseJavaVersion(text.substr(0, dash)), .max = std::nullopt};
  if (dash != std::string_view::npos) range.max = parseJavaVersion(text.substr(dash + 1));
  checkJavaRange(range);
  return range;
}

void checkJavaRange(const JavaRange& range) {
  if (!range.max || *range.max >= range.min) return;
  throw failure("there is no Java that is " + std::to_string(range.min) + " or newer and " +
                std::to_string(*range.max) + " or older");
}

std::string describe(const JavaRange& range) {
  const std::string text = "Java " + std::to_string(range.min);
  if (!range.max) return text + " or newer";
  if (*range.max == range.min) return text;
  return text + " to " + std::to_string(*range.max);
}

}  // namespace vessant
