// What every room may show of its progress. The driver has the real display; tests have their own.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"

namespace vessant {

/// What the search is doing; the numbers are those of the display's lines.
enum class SearchPhase : int { None = 0, Searching = 1, Scanning = 2, Verifying = 3 };

class ProgressSink {
 public:
  virtual ~ProgressSink() = default;
  /// Moves the display on by `count` steps.
  virtual void addProgressDots(std::int32_t count) = 0;
  /// Shows the line of a phase, filled with `text` (the description of a Java VM).
  virtual void showSearchPhase(SearchPhase phase, const SString& text) = 0;
};

}  // namespace vessant
