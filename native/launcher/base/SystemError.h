// The system's own words for an error number.
#pragma once

#include <cerrno>
#include <cstring>

#include "launcher/base/SString.h"

namespace vessant {

/// The text of `error`, by default of the error that a system call has just left in errno.
[[nodiscard]] inline SString systemErrorText(int error = errno) {
  return std::strerror(error);
}

}  // namespace vessant
