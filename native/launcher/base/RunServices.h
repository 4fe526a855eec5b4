// What a lower room may use of the run it is part of: the log, the display of progress, the
// messages in the user's language, the cancel flag and the operating system. The driver fills
// RunServices once and hands it down by reference; nothing below the driver knows more of the run.
// Tests bring their own of each.
//
// None of the interfaces keeps what it is given beyond a call.
#pragma once

#include <csignal>
#include <cstdint>

#include "launcher/base/Exceptions.h"
#include "launcher/base/SString.h"

namespace vessant {

enum class LogLevel : int { Information = 0, Warning = 1, Error = 2 };

/// Where every room writes its log lines.
class LogSink {
 public:
  virtual ~LogSink() = default;
  /// Writes one line, or as many as `text` has. A log that cannot be written is no error.
  virtual void log(const SString& text, LogLevel level) = 0;
};

/// What the search is doing; the numbers are those of the display's lines.
enum class SearchPhase : int { None = 0, Searching = 1, Scanning = 2, Verifying = 3 };

/// What every room may show of its progress.
class ProgressSink {
 public:
  virtual ~ProgressSink() = default;
  /// Moves the display on by `count` steps.
  virtual void addProgressDots(std::int32_t count) = 0;
  /// Shows the line of a phase, filled with `text` (the description of a Java VM).
  virtual void showSearchPhase(SearchPhase phase, const SString& text) = 0;
};

/// The error texts that the launcher's own code raises; the numbers are those of the catalog.
enum class ErrorId : int {
  InputFileNotLoaded = 0,
  InstructionsNotLoaded = 1,
  LaunchScriptNotLoaded = 2,
  JvmFileNotLoaded = 3,
  InvalidJvmFileId = 4,
  InvalidAction = 5,
  MissingLogFileName = 6,
  ExtractionFailed = 7,
  IndexNotLoaded = 8,
  NoJvmInstaller = 9,
  InvalidJvm = 10,
  MissingInputFileName = 11,
  NoJvmFound = 12,
  SearchAllFailed = 13,
  InputFileNotOpened = 14,
  WriteFailed = 15,
  TempSpaceHint = 16,
  Canceled = 17,
  TempRootMissing = 18,
};

/// The launcher's messages in the user's language, for rooms that put them into their exceptions.
class MessageSource {
 public:
  virtual ~MessageSource() = default;
  /// The text as it is stored, without substitution; empty for an unknown number.
  [[nodiscard]] virtual SString errorText(ErrorId error) const = 0;
  /// The text with `argument` in place of its "%s".
  [[nodiscard]] virtual SString formatError(ErrorId error, const SString& argument) const = 0;
};

/// Tells long work that the user wants it to end. Work reads it between two pieces: between chunks,
/// directory entries and candidates.
class CancelFlag {
 public:
  // All are safe in a signal handler.
  void set() { set_ = 1; }
  [[nodiscard]] bool isSet() const { return set_ != 0; }
  /// A signal has come of which it is not decided yet whether it cancels the run. Nothing may wait
  /// for somebody else until it is.
  void setUndecided(bool undecided) { undecided_ = undecided ? 1 : 0; }
  [[nodiscard]] bool isInterrupted() const { return set_ != 0 || undecided_ != 0; }

 private:
  volatile std::sig_atomic_t set_ = 0;
  volatile std::sig_atomic_t undecided_ = 0;
};

/// What a child may use up. 0 stands for no limit.
struct ChildLimits {
  /// Bytes on both of its streams together, counted while they are collected.
  std::uint64_t outputBytes = 0;
  /// From its start to the end of its last output.
  std::uint32_t seconds = 0;

  [[nodiscard]] bool isSet() const { return outputBytes != 0 || seconds != 0; }
};

/// A command line to run, and how.
struct ChildCommand {
  /// The whole command line, for the shell.
  SString command;
  /// Where the child runs; empty means the launcher's current directory.
  SString workingDirectory = {};
  /// Accepted for callers that know about it, but without effect: the launcher always waits.
  bool runInBackground = false;
  /// Make pipes and collect what the child writes.
  bool captureOutput = false;
  /// Attach the child's standard output and error to those pipes.
  bool redirectChildOutput = false;
  /// Receive what was collected, appended. Not owned; may be null.
  SString* stdoutText = nullptr;
  SString* stderrText = nullptr;
  /// Become the command instead of starting a child; the other settings are ignored then.
  bool replaceProcess = false;
  /// Let the child read from an empty input instead of the launcher's.
  bool emptyInput = false;
  /// A child with a limit runs in a process group of its own, and is killed with all of it when it
  /// goes beyond. What it has written until then is kept.
  ChildLimits limits = {};
};

/// Why a child is no longer running.
enum class ChildEnd { Exited, TimeLimit, OutputLimit };

struct ChildResult {
  /// 0 to 255; 0 for a shell ended by a signal and for a child that went beyond a limit.
  std::int32_t exitCode = 0;
  ChildEnd end = ChildEnd::Exited;
  /// The error number when there was no shell to run the command, which the child's standard error
  /// tells, too; else 0.
  int startError = 0;
};

/// What the launcher asks of the operating system beyond files. The real one lies in linux/.
class Platform {
 public:
  virtual ~Platform() = default;

  /// Runs a command to its end. `progress` moves on while output is collected. With
  /// `replaceProcess` it returns only when the replacement failed, with exit code 0. Throws
  /// LauncherException when the child could not be started or waited for. A signal that ended the
  /// program has set the run's cancel flag by then; one that the program survived has not.
  virtual ChildResult executeCommand(const ChildCommand& command, ProgressSink& progress) = 0;

  /// The value of an environment variable; empty when it is not set.
  [[nodiscard]] virtual SString getEnvironmentVariable(const SString& name) const = 0;
  /// Sets a variable for this process and every later child.
  virtual void setEnvironmentVariable(const SString& name, const SString& value) = 0;

  /// Whether the file system of `directory` can take `byteCount` more bytes in `fileCount` files.
  /// Throws LauncherException with the system's text when the file system cannot be asked.
  [[nodiscard]] virtual bool hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                          std::uint32_t fileCount) const = 0;
  /// Whether the file system of `path` refuses to run programs, because it is mounted noexec. False
  /// also when that cannot be told.
  [[nodiscard]] virtual bool isNoExec(const SString& path) const = 0;
};

/// The record that travels. It owns nothing; what it refers to lives as long as the run.
struct RunServices {
  LogSink& logSink;
  ProgressSink& progress;
  const MessageSource& messages;
  const CancelFlag& cancelFlag;
  Platform& platform;

  void log(const SString& text, LogLevel level = LogLevel::Information) const {
    logSink.log(text, level);
  }
  /// Ends the operation with the catalogued text when the run is cancelled.
  void throwIfCanceled() const {
    if (cancelFlag.isSet()) throw LauncherException(messages.errorText(ErrorId::Canceled));
  }
};

}  // namespace vessant
