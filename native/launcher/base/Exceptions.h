// The exceptions of the launcher. Two carry a finished text for the user; the other two tell of a
// misuse of positions and lengths and are programming errors.
#pragma once

#include <cstdint>
#include <utility>

#include "launcher/base/SString.h"

namespace vessant {

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
