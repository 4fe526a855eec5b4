// The objects that a run works with, wired to one another and to the process-wide state. This is
// the only place that knows all of them; the rooms below get the records they ask for.
#pragma once

#include "launcher/archive/Extraction.h"
#include "launcher/archive/ModeByte.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/base/RunServices.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/output/Console.h"
#include "launcher/driver/output/Log.h"
#include "launcher/driver/output/Messages.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/linux/LinuxPlatformImpl.h"

namespace vessant {

struct LauncherServices {
  explicit LauncherServices(LauncherState& state);
  LauncherServices(const LauncherServices&) = delete;
  LauncherServices& operator=(const LauncherServices&) = delete;

  /// Tells the log and the user when programs cannot be started from a temporary directory, because
  /// its file system is mounted so. To be called before one is: its own failure says only that it
  /// was not permitted.
  void adviseIfNothingRunsIn(const SString& temporaryDirectory);

  // Each is made of those above it.
  LinuxPlatformImpl platform;
  Messages messages;
  Log log;
  Console console;
  RunServices run;
  TempFiles tempFiles;
  FileExtractor extractor;
  EmbeddedFiles embeddedFiles;
  ModeByteProbe modeByte;
  LaunchContext launch;
  JVMSearchContext search;
};

}  // namespace vessant
