// Copies a stretch of an open file in steps that a user sees and can interrupt.
#pragma once

#include <cstdint>

#include "launcher/base/RunServices.h"

namespace vessant {

/// Where a copy ended.
struct CopyEnd {
  /// Of the failed write; 0 when all of it was written, the source ended or the run was cancelled.
  int error = 0;
  /// The bytes in the target.
  std::uint64_t copied = 0;
};

/// Copies `length` bytes from `offset` of `source` to the start of the empty file `target`. A read
/// error is treated as the end of the source.
///
/// The copy goes on in chunks of 61,439 bytes: after each, and after what stands for one at an
/// early end, the progress display moves on by one step, and before each, the cancel flag is read.
/// A cancelled copy holds the whole chunks up to there. What the kernel is asked for in between is
/// larger.
[[nodiscard]] CopyEnd copyStretch(int source, std::uint64_t offset, std::uint64_t length,
                                  int target, const RunServices& services);

}  // namespace vessant
