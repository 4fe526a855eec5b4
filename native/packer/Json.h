// JSON for machines that read vspack's results.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace vessant {

/// Keys stay in the order in which they were set.
using Json = nlohmann::ordered_json;

/// Indented, with a line break at the end. Bytes that are no UTF-8 become U+FFFD: file names and
/// scripts may hold any byte, JSON may not.
[[nodiscard]] std::string jsonText(const Json& json);

}  // namespace vessant
