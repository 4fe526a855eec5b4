// Between the standard library's strings and the launcher's.
#pragma once

#include <string>
#include <string_view>

#include "launcher/base/Exceptions.h"
#include "launcher/base/SString.h"

namespace vessant {

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

}  // namespace vessant
