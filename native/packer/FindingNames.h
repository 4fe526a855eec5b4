// The names of all findings: what may follow `--allow`.
#pragma once

#include <string>
#include <vector>

namespace vessant {

/// Every name that a finding can have, sorted.
[[nodiscard]] const std::vector<std::string>& findingNames();

}  // namespace vessant
