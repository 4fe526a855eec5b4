// The exceptions that carry a finished text, and the system's own words for such a text. (Two more,
// of SString.h, tell of a misuse of positions and lengths; they are programming errors.)
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include "launcher/base/SString.h"

namespace vessant {

/// The text of `error`, by default of the error that a system call has just left in errno. Where
/// anything runs between the call and the question, even a destructor, keep the number and hand it
/// in: freeing memory and closing files may change errno.
[[nodiscard]] inline SString systemErrorText(int error = errno) {
  return std::strerror(error);
}

/// A failure that ends the current operation. Carries one complete, readable text.
class LauncherException {
 public:
  explicit LauncherException(SString message) : message_(std::move(message)) {}
  LauncherException(const LauncherException&) = default;
  LauncherException& operator=(const LauncherException&) = default;
  virtual ~LauncherException() = default;

  [[nodiscard]] const SString& message() const { return message_; }

 private:
  SString message_;
};

/// An error in an instruction script, with the 1-based number of the statement it refers to.
class InstructionsException {
 public:
  InstructionsException(SString message, std::int32_t lineNumber)
      : message_(std::move(message)), lineNumber_(lineNumber) {}
  InstructionsException(const InstructionsException&) = default;
  InstructionsException& operator=(const InstructionsException&) = default;
  virtual ~InstructionsException() = default;

  [[nodiscard]] const SString& message() const { return message_; }
  [[nodiscard]] std::int32_t lineNumber() const { return lineNumber_; }

 private:
  SString message_;
  std::int32_t lineNumber_;
};

}  // namespace vessant
