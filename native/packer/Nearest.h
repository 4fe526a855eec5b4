// The known word that somebody may have meant.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vessant {

/// How many letters must be changed, added, left out or swapped with their neighbour to make one
/// word the other. Small and capital letters count as equal.
[[nodiscard]] int editDistance(std::string_view a, std::string_view b);

/// The candidate that is nearest to `word`, the first of several; nothing when all are too far
/// away: more than a third of the word's letters (at least one) would have to change, and none
/// begins with the word.
[[nodiscard]] std::optional<std::string> nearest(std::string_view word,
                                                 const std::vector<std::string>& candidates);

/// `; did you mean "X"?` for the nearest candidate, else the empty text.
[[nodiscard]] std::string suggestion(std::string_view word,
                                     const std::vector<std::string>& candidates);

}  // namespace vessant
