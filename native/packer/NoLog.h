// Nowhere to write: the readers repeat their log lines in the errors that they throw.
#pragma once

#include "launcher/base/RunServices.h"

namespace vessant {

class NoLog : public LogSink {
 public:
  void log(const SString& /*text*/, LogLevel /*level*/) override {}
};

}  // namespace vessant
