// Shows what an installer carries.
#pragma once

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// A table of the installer's files, a line each, below a line with its mode byte. Throws
/// LauncherException, naming the file, when the index cannot be read or there is none.
[[nodiscard]] SString listLauncherFile(const SString& path, LogSink& log,
                                       const MessageSource& messages);

}  // namespace vessant
