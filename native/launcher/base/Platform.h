// What the launcher asks of the operating system beyond files: child processes, the environment
// and disk space. The real one lies in linux/; tests bring their own.
#pragma once

#include <cstdint>

#include "launcher/base/ProgressSink.h"
#include "launcher/base/SString.h"

namespace vessant {

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
};

class Platform {
 public:
  virtual ~Platform() = default;

  /// Runs a command to its end and returns its exit code: 0 to 255, 0 for a child ended by a
  /// signal. `progress` moves on while output is collected. With `replaceProcess` it returns only
  /// when the replacement failed, with 0. Throws LauncherException when the child could not be
  /// started or waited for.
  virtual std::int32_t executeCommand(const ChildCommand& command, ProgressSink& progress) = 0;

  /// The value of an environment variable; empty when it is not set.
  [[nodiscard]] virtual SString getEnvironmentVariable(const SString& name) const = 0;
  /// Sets a variable for this process and every later child.
  virtual void setEnvironmentVariable(const SString& name, const SString& value) = 0;

  /// Whether the file system of `directory` can take `byteCount` more bytes in `fileCount` files.
  /// Throws LauncherException with the system's text when the file system cannot be asked.
  [[nodiscard]] virtual bool hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                          std::uint32_t fileCount) const = 0;
};

}  // namespace vessant
