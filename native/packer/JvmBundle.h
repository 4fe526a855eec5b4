// The mark by which a bundled runtime tells what it unpacks to.
#pragma once

#include <optional>
#include <string_view>

#include "packer/ByteSource.h"
#include "packer/ManifestLine.h"

namespace vessant {

/// Stands at the start of the second line of a runtime that `vspack bundle-jvm` made, in front of
/// FILES:BYTES.
inline constexpr std::string_view kBundleMark = "# vspack bundle-jvm unpacks=";

/// What unpacking the runtime makes, as it says itself; nothing for any other file.
[[nodiscard]] std::optional<SizeInformation> measuredSizeOf(const ByteSource& installer);

}  // namespace vessant
