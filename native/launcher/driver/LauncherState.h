// LauncherState: the one process-wide record. It says what the command line and the input file set
// and carries the result variables. Everything else that lives for the whole run hangs off it by
// reference, so a test that makes a new one starts afresh.
//
// What the log and the console may do is set through them (Log, Console) and kept here.
#pragma once

#include <cstdint>

#include "launcher/archive/LauncherFile.h"
#include "launcher/archive/ModeByte.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/driver/ResultVariables.h"
#include "launcher/driver/output/Console.h"
#include "launcher/driver/output/Log.h"

namespace vessant {

/// The run's result when something has failed; the exit status is then 255.
inline constexpr std::int32_t kRunFailed = -1;

struct LauncherState {
  LogState log;
  ConsoleState console;
  /// The launcher's own file, absolute.
  SString launcherFileName;
  /// The launcher file to read the index from; another one only for an embedded launcher.
  SString originalLauncherFileName;
  LauncherFile launcherFile;
  /// Arguments for the Java program.
  StringDeque passThroughArguments;
  /// Every argument as given.
  StringDeque commandLineArguments;
  /// The Java home that the user named; empty when there is none.
  SString javaHome;
  SString classPathPrefix;
  SString classPathSuffix;
  /// Shown at exit after a failed run; empty means nothing is.
  SString launchFailureMessage;
  /// What the launched program wrote on its standard output.
  SString launchOutput;
  /// The temporary root; empty until it is set or first used.
  SString tempDirectory;
  /// Where the search of the whole disk starts; tests have a disk of their own.
  SString fileSystemRoot = "/";
  /// This process is an embedded launcher that another launcher started. The first copy of the flag
  /// is for launching, the second for the clean-up.
  bool originalLauncherMode = false;
  bool originalLauncherCleanup = false;
  /// The Java program runs with a console.
  bool javaConsole = false;
  /// The launcher file's mode byte, once it has been read.
  std::int32_t lastTrailerByte = kNoModeByte;
  ResultVariables variables;
  CancelFlag cancelFlag;
};

}  // namespace vessant
