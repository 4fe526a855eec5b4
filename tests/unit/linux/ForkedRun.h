// Runs a piece of a test in a process of its own: for what changes or ends the whole process, such
// as limits, signals, standard streams and becoming another program.
#pragma once

#include <functional>
#include <string>

namespace vessant::test {

struct ForkedResult {
  /// What the piece returned, or 128 and the number of the signal that ended it.
  int status = -1;
  std::string out;
  std::string err;
};

/// The result of a piece that threw.
inline constexpr int kThrown = 111;

/// Runs `piece` with standard output and error going to files, which are fully buffered. The child
/// ends without flushing them. The text of a LauncherException goes to standard error.
[[nodiscard]] ForkedResult runForked(const std::function<int()>& piece);

}  // namespace vessant::test
