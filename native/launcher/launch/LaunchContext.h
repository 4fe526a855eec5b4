// What launching a Java program needs from the run. The driver fills this record once and hands it
// down; the references are the driver's.
#pragma once

#include "launcher/archive/Extraction.h"
#include "launcher/archive/ModeByte.h"
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
  /// The path of the application archive, once a command has asked for it.
  SString applicationArchive = {};
};

}  // namespace vessant
