// The files that an installer carries: their kinds, by the words of manifests, and their names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "launcher/archive/LauncherFormat.h"

namespace vessant {

/// The word by which manifests and listings call a kind of file.
[[nodiscard]] const char* fileTypeName(FileType type);
/// The words for all kinds, in the order of their numbers.
[[nodiscard]] std::vector<std::string> fileTypeNames();
/// Whether files of this kind are texts: tag files, which the launcher reads in place.
[[nodiscard]] bool isTextType(FileType type);

/// Why a file of this name cannot be extracted, as the end of a sentence about the name; empty for
/// a good name. A foreign installer may well carry "../../.profile".
[[nodiscard]] std::string nameFlaw(std::string_view name);

}  // namespace vessant
