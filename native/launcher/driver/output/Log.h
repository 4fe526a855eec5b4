// The launcher's log file.
#pragma once

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// The process-wide state of the log.
struct LogState {
  /// Empty: no log.
  SString fileName;
  /// Whether this process has written its first line.
  bool separatorWritten = false;
};

/// Appends to the log file. The file is opened and closed for every line, so that a crash loses
/// nothing and other processes may write in between. A file that cannot be opened is passed over.
class Log : public LogSink {
 public:
  explicit Log(LogState& state) : state_(state) {}

  void setLogFileName(const SString& name) { state_.fileName = name; }
  void log(const SString& text, LogLevel level) override;

 private:
  LogState& state_;
};

}  // namespace vessant
