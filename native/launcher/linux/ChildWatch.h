// Waits for a child to end while its output is collected, its limits hold and signals are heeded.
#pragma once

#include <cstdint>

#include <sys/types.h>

#include "launcher/base/Handles.h"
#include "launcher/base/RunServices.h"
#include "launcher/linux/SignalRelay.h"

namespace vessant {

/// Reads once, at most 4096 bytes, from a pipe and returns what read returned. A chunk is appended
/// to `text`, when there is one, up to its first zero byte, and moves the progress on by one step.
ssize_t readPipeChunk(int fd, SString* text, ProgressSink& progress);

class ChildWatch {
 public:
  /// `child` has been started and not been waited for.
  ChildWatch(pid_t child, const ChildCommand& command, SignalRelay& relay, ProgressSink& progress);

  /// Collects what comes from the read ends of the two pipes; the descriptors are the caller's.
  void collectFrom(int stdoutFd, int stderrFd);

  /// Returns when the child has ended and every writer has closed the pipes that are collected: a
  /// program that the child left behind may still hold them. Other children that end meanwhile are
  /// reaped, since nobody else does. Throws LauncherException when the child cannot be waited for.
  ChildResult run();

 private:
  struct Stream {
    int fd = -1;
    SString* text = nullptr;
    bool isOpen = false;
  };

  [[nodiscard]] bool isDone() const { return hasEnded_ && !out_.isOpen && !err_.isOpen; }
  void reap();
  void noteEnd(int status);
  bool readBoth();
  bool readStream(Stream& stream);
  void wait();
  [[nodiscard]] ChildEnd brokenLimit(bool hasRead) const;
  ChildResult endBeyond(ChildEnd limit);
  [[nodiscard]] int waitMilliseconds() const;

  pid_t child_;
  ChildLimits limits_;
  SignalRelay& relay_;
  ProgressSink& progress_;
  UniqueFd end_;  // becomes readable when the child ends; none on an old kernel
  Stream out_;
  Stream err_;
  std::int64_t deadline_;
  std::uint64_t bytes_ = 0;
  int status_ = 0;
  bool hasEnded_ = false;
};

}  // namespace vessant
