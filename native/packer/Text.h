// Texts: between the standard library's strings and the launcher's, for a terminal, for a machine;
// and the known word that somebody may have meant by another.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "launcher/base/Exceptions.h"
#include "launcher/base/SString.h"

namespace vessant {

/// The bytes of one as the other: neither looks at their meaning.
[[nodiscard]] inline std::string str(const SString& text) {
  return std::string(text.view());
}

[[nodiscard]] inline SString sstr(std::string_view text) {
  return SString(text);
}

/// The text with control characters as `\xNN`, so that a foreign name cannot play with a terminal
/// or make a second line.
[[nodiscard]] std::string printable(std::string_view text);

/// The same between double quotes.
[[nodiscard]] std::string quotedName(std::string_view text);

/// A failure with a finished text, which begins with the file concerned.
[[nodiscard]] inline LauncherException failure(std::string_view text) {
  return LauncherException(SString(text));
}

/// Keys stay in the order in which they were set.
using Json = nlohmann::ordered_json;

/// Indented, with a line break at the end. Bytes that are no UTF-8 become U+FFFD: file names and
/// scripts may hold any byte, JSON may not.
[[nodiscard]] std::string jsonText(const Json& json);

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
