// What launching a Java program needs from the run. The driver fills this record once and hands it
// down; the references are the driver's. Its one part of its own is the application archive: one
// path for the whole run, made when a command first asks for it.
#pragma once

#include "launcher/archive/Extraction.h"
#include "launcher/archive/LauncherFormat.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

struct LaunchContext {
  const RunServices& services;
  EmbeddedFiles& embeddedFiles;
  TempFiles& tempFiles;
  ModeByteProbe& modeByte;
  /// The launcher file that is running, and the one whose files are used: another one only for an
  /// embedded launcher.
  const SString& launcherFileName;
  const SString& originalLauncherFileName;
  /// The texts of "-cp:p" and "-cp:a".
  const SString& classPathPrefix;
  const SString& classPathSuffix;
  /// Empty until a command has asked for it.
  SString applicationArchive = {};
};

/// The path of the application archive that the launcher carries; empty when it carries none.
[[nodiscard]] SString embeddedApplicationArchive(LaunchContext& context);

/// The path of a temporary copy of `file`, which lies next to the launcher; empty when it cannot be
/// copied. Throws LauncherException when the copy could not be written whole.
[[nodiscard]] SString copiedApplicationArchive(LaunchContext& context, const SString& file);

}  // namespace vessant
