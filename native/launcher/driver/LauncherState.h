// LauncherState, the one process-wide record, and LauncherServices, the objects that work on it.
//
// The record says what the command line and the input file set and carries the result variables.
// Everything else that lives for the whole run hangs off it by reference, so a test that makes a
// new one starts afresh. What the log and the console may do is set through them (Log, Console) and
// kept here.
#pragma once

#include <array>
#include <cstdint>

#include "launcher/archive/Extraction.h"
#include "launcher/archive/LauncherFile.h"
#include "launcher/archive/LauncherFormat.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/base/Deque.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/driver/output/Console.h"
#include "launcher/driver/output/Log.h"
#include "launcher/driver/output/Messages.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/linux/LinuxPlatformImpl.h"

namespace vessant {

/// S1 to S10 and N1 to N5, in which operations leave what they found and which scripts read and
/// set. By convention N1 tells success (1) or failure (0), S1 holds the Java home or JVM file found
/// and S2 the JVM file that a search found.
///
/// Empty and 0 at the start. Every operation throws LauncherException for a number out of range.
class ResultVariables {
 public:
  [[nodiscard]] const SString& getStringVariable(std::int32_t number) const;
  void setStringVariable(std::int32_t number, const SString& value);
  [[nodiscard]] std::int32_t getNumericVariable(std::int32_t number) const;
  void setNumericVariable(std::int32_t number, std::int32_t value);

 private:
  std::array<SString, InstructionActions::kStringVariables> strings_;
  std::array<std::int32_t, InstructionActions::kNumericVariables> numbers_ = {};
};

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

/// The objects that a run works with, wired to one another and to the state, which must outlive
/// them. This is the only place that knows all of them; the rooms below get the records they ask
/// for.
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
