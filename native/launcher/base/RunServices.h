// What a lower room may use of the run it is part of. The driver fills this record once and hands
// it down by reference; nothing below the driver knows more of the run.
#pragma once

#include "launcher/base/CancelFlag.h"
#include "launcher/base/LogSink.h"
#include "launcher/base/MessageSource.h"
#include "launcher/base/Platform.h"
#include "launcher/base/ProgressSink.h"

namespace vessant {

struct RunServices {
  LogSink& logSink;
  ProgressSink& progress;
  const MessageSource& messages;
  const CancelFlag& cancelFlag;
  Platform& platform;

  void log(const SString& text, LogLevel level = LogLevel::Information) const {
    logSink.log(text, level);
  }
};

}  // namespace vessant
