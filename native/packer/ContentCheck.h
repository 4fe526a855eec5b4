// Whether the files that an installer carries are whole.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "packer/Finding.h"
#include "packer/Installer.h"

namespace vessant {

/// Is told of the bytes that were read, and where in the installer they lie.
using ReadWatch = std::function<void(std::uint64_t position, std::string_view bytes)>;

/// Reads every text with the launcher's own reader and every archive with its own checksums, in the
/// order in which they lie. The installer's structure must be sound. `watch` is told of what was
/// read of the installer; it may be empty. Throws LauncherException when the file cannot be read.
void checkContents(const Installer& installer, const ReadWatch& watch, Findings& findings);

}  // namespace vessant
