// Numbers as authors write them. The launcher reads what stands at the start of a text and takes
// the nearest number that fits; an author means more than that.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vessant {

/// The number, when `text` is one and nothing else; it may be longer than any type holds, and is
/// then the largest or smallest that there is.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(const std::string& text);

}  // namespace vessant
