// Collects what a child writes on its two output streams while the progress display moves on.
#pragma once

#include <sys/types.h>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// Reads once, at most 4096 bytes, from a pipe and returns what read returned. A chunk is appended
/// to `text`, when there is one, up to its first zero byte, and moves the progress on by one step.
ssize_t readPipeChunk(int fd, SString* text, ProgressSink& progress);

class OutputCollector {
 public:
  /// The read ends of the two pipes and where their text goes; all the caller's.
  OutputCollector(int stdoutFd, SString* stdoutText, int stderrFd, SString* stderrText,
                  ProgressSink& progress);

  /// Collects until the child has ended and every writer has closed both pipes. A program that the
  /// child left behind may still hold them. Returns the child's wait status.
  int collect(pid_t child);

 private:
  struct Stream {
    int fd;
    SString* text;
    bool isOpen = true;
  };

  bool readStream(Stream& stream);
  bool readBoth();
  void waitForOutput(int timeoutMilliseconds);
  void drain();

  Stream out_;
  Stream err_;
  ProgressSink& progress_;
};

}  // namespace vessant
