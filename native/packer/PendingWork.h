// What an interrupt finds half done: files, directories and a program that works for this one.
#pragma once

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>

#include <sys/types.h>

namespace vessant {

/// While one lives, the signals by which users and systems end a program end the child and remove
/// the files and directories that are registered with it, before they end the process as they would
/// have anyhow. Signals that were ignored stay ignored. A file that grows beyond the process's
/// limit is a failed write and no signal. There is one at a time, made where the process begins;
/// while there is none, registering does nothing.
class PendingWork {
 public:
  PendingWork();
  PendingWork(const PendingWork&) = delete;
  PendingWork& operator=(const PendingWork&) = delete;
  ~PendingWork();

  /// Registers a file, or a directory that holds nothing but what is registered, too. `path` must
  /// stay where it is in memory until it is forgotten. Beyond 16 of them nothing is registered.
  static void remember(const char* path);
  static void forget(const char* path);

  /// The same for a directory with all that is in it, one at a time.
  static void rememberTree(const char* path);
  static void forgetTree() { rememberTree(nullptr); }

  /// The child that this process waits for, one at a time. The interrupting signals must be blocked
  /// from before it is made until it is registered, and it must be forgotten before it is waited
  /// for: a number that is free again may be somebody else's.
  static void rememberChild(pid_t child);
  static void forgetChild() { rememberChild(0); }

  /// The signals meant above.
  static constexpr std::array<int, 5> kSignals = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM};

 private:
  static constexpr std::size_t kMostFiles = 16;

  static void undoAllAndDie(int signal);
  void undoAll() const;

  std::array<std::atomic<const char*>, kMostFiles> paths_ = {};
  std::atomic<const char*> tree_ = nullptr;
  std::atomic<pid_t> child_ = 0;
  std::array<struct sigaction, kSignals.size()> before_ = {};
  struct sigaction sizeLimitBefore_ = {};
};

}  // namespace vessant
