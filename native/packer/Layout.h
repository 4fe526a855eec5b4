// Where the parts of an installer lie.
#pragma once

#include <cstdint>
#include <vector>

namespace vessant {

/// A file to place.
struct PlacedPart {
  std::uint64_t length = 0;
  /// A text whose last line does not end gets a line break behind it, outside its length: the
  /// launcher reads whole lines and would go on into what follows.
  bool needsLineBreak = false;
};

struct Layout {
  /// Of each file, in order. May lie beyond what an index can say.
  std::vector<std::uint64_t> offsets;
  std::uint64_t indexOffset = 0;

  /// Whether every number fits into the index's 32 bits.
  [[nodiscard]] bool fits() const;
};

/// Large files begin on a page, so that systems which share equal blocks find them in every
/// version of an installer, and copies can be made without moving bytes.
inline constexpr std::uint64_t kAlignedSize = 65536;
inline constexpr std::uint64_t kAlignment = 4096;

/// Places the files behind a launcher of `launcherLength` bytes.
[[nodiscard]] Layout layOut(std::uint64_t launcherLength, const std::vector<PlacedPart>& parts,
                            bool align);

}  // namespace vessant
