// Reads texts with the launcher's own reader, from memory.
#pragma once

#include <string>

#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// Reads `text` into `tags` as the launcher would. `name` stands in errors. Throws
/// LauncherException at the first syntax error.
void loadTags(TagFile& tags, const std::string& name, const std::string& text);

}  // namespace vessant
