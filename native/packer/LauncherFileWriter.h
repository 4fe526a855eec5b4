// Writes installers: a launcher with files, their index, the mode byte and the trailer behind it.
#pragma once

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "packer/Manifest.h"

namespace vessant {

/// Writes the installer that the manifest describes, executable for everybody who may read it. The
/// finished file takes its name in one step; on failure nothing is left of it. Throws
/// LauncherException, naming the file concerned.
void writeLauncherFile(const Manifest& manifest, LogSink& log);

}  // namespace vessant
