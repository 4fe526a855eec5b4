#include "packer/JvmBundle.h"

#include <string_view>

namespace vessant {

std::optional<SizeInformation> measuredSizeOf(const ByteSource& installer) {
  constexpr std::size_t kTwoLines = 256;
  const std::string head = installer.bytesAt(0, kTwoLines);
  const std::size_t start = head.find('\n') + 1;
  const std::size_t end = head.find('\n', start);
  if (start == 0 || end == std::string::npos) return std::nullopt;
  const std::string_view line = std::string_view(head).substr(start, end - start);
  if (!head.starts_with("#!") || !line.starts_with(kBundleMark)) return std::nullopt;
  return readSizeInformation(line.substr(kBundleMark.size()));
}

}  // namespace vessant
