// The difference between two texts, line by line, as a unified diff shows it.
#pragma once

#include <string>

namespace vessant {

/// The names of the two sides, for the head of a diff.
struct DiffNames {
  std::string before;
  std::string after;
};

/// A unified diff with three lines of context; empty for equal texts. A last line without its end
/// is marked as diff does.
[[nodiscard]] std::string unifiedDiff(const DiffNames& names, const std::string& before,
                                      const std::string& after);

}  // namespace vessant
