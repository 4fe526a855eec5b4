// The application archive: one path for the whole run, made when a command first asks for it.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {

/// The path of the application archive that the launcher carries; empty when it carries none.
[[nodiscard]] SString embeddedApplicationArchive(LaunchContext& context);

/// The path of a temporary copy of `file`, which lies next to the launcher; empty when it cannot be
/// copied. Throws LauncherException when the copy could not be written whole.
[[nodiscard]] SString copiedApplicationArchive(LaunchContext& context, const SString& file);

}  // namespace vessant
