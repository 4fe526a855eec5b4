// Which processes another process runs.
#pragma once

#include <vector>

#include <sys/types.h>

namespace vessant {

/// The children of a process in the order of their numbers; none when it has none or has gone.
/// Asks /proc and, where that is missing, the system process by process.
[[nodiscard]] std::vector<pid_t> childrenOf(pid_t parent);

/// All processes below a process, parents first.
[[nodiscard]] std::vector<pid_t> descendantsOf(pid_t ancestor);

/// What a shell runs: its children or, for one that is a copy of the shell at work on a part of the
/// command, the children of that.
[[nodiscard]] std::vector<pid_t> programsOf(pid_t shell);

}  // namespace vessant
