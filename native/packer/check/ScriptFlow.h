// Which ways an instruction script can take.
//
// All ways are followed at once, with what is known of the numbers on each: that N1 is 0 behind a
// JMP0 which jumped, what SET gave, and that FIND_JVM may have answered either way. So a way that
// no run can take is not followed. Where a label is computed at run time the script may go on
// anywhere, and nothing is said of how it ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "packer/check/Statement.h"

namespace vessant {

struct ScriptFlow {
  /// For each statement, whether a run can come there.
  std::vector<bool> reachable;
  /// The statement from which a run goes on to the end without having launched anything, if one
  /// can. The script's result is then 0.
  std::optional<std::size_t> endsWithoutLaunch;
  /// Whether a run can end at all.
  bool ends = false;
  /// For each statement, the string variables that some way to it has set: bit 0 for S1.
  std::vector<std::uint16_t> setStrings;
  /// Statements that launch with what a search found, on a way on which it may have found nothing.
  std::set<std::size_t> uncheckedLaunches;
};

/// The statement that a jump to this label reaches, as the launcher finds it: never the first.
[[nodiscard]] std::optional<std::size_t> findLabelStatement(
    const std::vector<Statement>& statements, const std::string& label);

/// Follows every way. A script with more than a hundred thousand states is taken for good.
[[nodiscard]] ScriptFlow followScript(const std::vector<Statement>& statements);

}  // namespace vessant
