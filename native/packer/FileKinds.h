// The kinds of files that an installer carries, by the words of manifests.
#pragma once

#include <string>
#include <vector>

#include "launcher/archive/LauncherFormat.h"

namespace vessant {

/// The word by which manifests and listings call a kind of file.
[[nodiscard]] const char* fileTypeName(FileType type);
/// The words for all kinds, in the order of their numbers.
[[nodiscard]] std::vector<std::string> fileTypeNames();
/// Whether files of this kind are texts: tag files, which the launcher reads in place.
[[nodiscard]] bool isTextType(FileType type);

}  // namespace vessant
