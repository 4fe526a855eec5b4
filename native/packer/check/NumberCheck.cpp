#include "packer/check/NumberCheck.h"

#include <charconv>
#include <limits>

namespace vessant {

std::optional<std::int64_t> wholeNumber(const std::string& text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc::invalid_argument || stopped != end) return std::nullopt;
  if (error != std::errc::result_out_of_range) return number;
  return text.starts_with('-') ? std::numeric_limits<std::int64_t>::min()
                               : std::numeric_limits<std::int64_t>::max();
}

}  // namespace vessant
