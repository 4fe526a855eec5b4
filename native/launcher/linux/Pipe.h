// A pipe whose two ends close themselves and do not pass on to programs that a child starts.
#pragma once

#include "launcher/base/Handles.h"

namespace vessant {

struct Pipe {
  UniqueFd readEnd;
  UniqueFd writeEnd;

  /// Opens both ends. Returns false, with errno set, when there are no more descriptors.
  [[nodiscard]] bool open();
};

}  // namespace vessant
