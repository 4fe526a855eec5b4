// The unfinished output files of this process, and directories for them, which an interrupt
// removes.
#pragma once

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>

namespace vessant {

/// While one lives, the signals by which users and systems end a program remove the files that are
/// registered with it before they end the process as they would have anyhow. Signals that were
/// ignored stay ignored. A file that grows beyond the process's limit is a failed write and no
/// signal. There is one at a time, made where the process begins.
class PendingFiles {
 public:
  PendingFiles();
  PendingFiles(const PendingFiles&) = delete;
  PendingFiles& operator=(const PendingFiles&) = delete;
  ~PendingFiles();

  /// `path` must stay where it is in memory until it is forgotten. Nothing happens when no
  /// PendingFiles lives or too many files are pending.
  static void remember(const char* path);
  static void forget(const char* path);

 private:
  static constexpr std::size_t kMostFiles = 16;
  static constexpr std::array<int, 5> kSignals = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM};

  static void removeAllAndDie(int signal);

  std::array<std::atomic<const char*>, kMostFiles> paths_ = {};
  std::array<struct sigaction, kSignals.size()> before_ = {};
  struct sigaction sizeLimitBefore_ = {};
};

}  // namespace vessant
