#include "packer/Layout.h"

namespace vessant {

bool Layout::fits() const {
  constexpr std::uint64_t kLargest = 0xFFFFFFFFU;
  return indexOffset <= kLargest;  // everything else lies in front of it
}

Layout layOut(std::uint64_t launcherLength, const std::vector<PlacedPart>& parts, bool align) {
  Layout layout;
  std::uint64_t position = launcherLength;
  for (const PlacedPart& part : parts) {
    if (align && part.length >= kAlignedSize) {
      position = (position + kAlignment - 1) / kAlignment * kAlignment;
    }
    layout.offsets.push_back(position);
    position += part.length + (part.needsLineBreak ? 1 : 0);
  }
  layout.indexOffset = position;
  return layout;
}

}  // namespace vessant
