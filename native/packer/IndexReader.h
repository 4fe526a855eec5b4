// Reads the index of a launcher file for people: errors name the file.
#pragma once

#include "launcher/archive/LauncherFile.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// Loads the index at `path` into `file`. Throws LauncherException, which begins with the path.
void loadIndex(LauncherFile& file, const SString& path, LogSink& log,
               const MessageSource& messages);

}  // namespace vessant
