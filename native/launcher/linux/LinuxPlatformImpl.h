// The operating system's services on Linux: commands, the environment and the room on its disks;
// and what they are made of.
#pragma once

#include <cstdint>

#include "launcher/base/Deque.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

class LinuxPlatformImpl : public Platform {
 public:
  /// Runs the command to its end in a child process, or becomes it: then it returns, with an empty
  /// result, only when that failed. What stands in the buffer of standard output is written first.
  /// Throws what runChildProcess throws.
  ChildResult executeCommand(const ChildCommand& command, ProgressSink& progress) override;

  [[nodiscard]] SString getEnvironmentVariable(const SString& name) const override;
  /// The text handed to the environment is never freed, because the environment keeps pointing at
  /// it. An empty name does nothing.
  void setEnvironmentVariable(const SString& name, const SString& value) override;

  [[nodiscard]] bool hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                  std::uint32_t fileCount) const override;
  [[nodiscard]] bool isNoExec(const SString& path) const override;
};

/// Takes a command line apart, for a program that is started without a shell: fills `list` with the
/// arguments of `commandLine` and returns true; it never fails.
///
/// Whitespace separates arguments; double quotes, also in the middle of an argument, keep it. A
/// backslash makes a quote an ordinary character and is itself one before anything else; in the
/// first argument, the program, it never means anything, so that a path keeps its backslashes. A
/// missing closing quote takes the rest of the text. Empty arguments are dropped.
bool splitCommandLine(StringDeque& list, const SString& commandLine);

/// What a file system has room for.
struct DiskSpace {
  /// Bytes in a block.
  std::uint64_t fragmentSize;
  /// Blocks that unprivileged users may still fill.
  std::uint64_t availableBlocks;
};

/// Asks the file system of an absolute directory; for any other text, that of the current
/// directory. Throws LauncherException with the system's error text.
[[nodiscard]] DiskSpace queryDiskSpace(const SString& directory);

/// Whether the files fit: their bytes in whole blocks, and a partly used block for each of several
/// files.
[[nodiscard]] bool fitsOnDisk(std::uint32_t byteCount, std::uint32_t fileCount,
                              const DiskSpace& space);

/// Whether programs may not be run from the file system of `path`, because it is mounted noexec.
/// False also when that cannot be told.
[[nodiscard]] bool isMountedNoExec(const SString& path);

}  // namespace vessant
