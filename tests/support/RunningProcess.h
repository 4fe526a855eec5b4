// A real program that a test talks to while it runs: reads what it shows, answers, and sends it
// signals, also through a terminal.
#pragma once

#include <string>

#include <sys/types.h>

#include "support/ProcessRunner.h"

namespace vessant::test {

class RunningProcess {
 public:
  enum class Console {
    /// A pipe as standard output; standard input is one that stays open and gives nothing.
    Pipe,
    /// The same pipe, filled to the brim, so that the first byte written waits.
    FullPipe,
    /// A terminal of its own as all three streams: its Ctrl-C reaches the whole process group.
    Terminal,
  };

  /// Starts the program in a session of its own. Its time limit ends it with SIGKILL.
  RunningProcess(const ProcessRequest& request, Console console);
  RunningProcess(const RunningProcess&) = delete;
  RunningProcess& operator=(const RunningProcess&) = delete;
  /// Kills what still runs.
  ~RunningProcess();

  /// Reads until what the program has written so far ends with, or holds, `text`; false when it
  /// ends without.
  bool readUntil(const std::string& text);
  /// As somebody types it; "\x03" is Ctrl-C.
  void type(const std::string& text);
  void send(int signal) const;
  /// To the process and all others of its group.
  void sendToGroup(int signal) const;

  /// Waits for the end, without reading on from a full pipe; the status is as ProcessResult's.
  int wait();
  [[nodiscard]] pid_t id() const { return process_; }
  [[nodiscard]] const std::string& output() const { return output_; }

 private:
  void openPipe(bool full);
  void openTerminal();

  pid_t process_ = -1;
  bool ended_ = false;
  int status_ = -1;
  int in_ = -1;   // what the test writes into
  int out_ = -1;  // what the test reads
  int childIn_ = -1;
  int childOut_ = -1;
  bool full_ = false;
  unsigned timeLimitSeconds_;
  std::string output_;
};

}  // namespace vessant::test
