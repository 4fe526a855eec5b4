// Where every room writes its log lines. The driver has the real log; tests have their own.
#pragma once

#include "launcher/base/SString.h"

namespace vessant {

enum class LogLevel : int { Information = 0, Warning = 1, Error = 2 };

class LogSink {
 public:
  virtual ~LogSink() = default;
  virtual void log(const SString& text, LogLevel level) = 0;
};

}  // namespace vessant
