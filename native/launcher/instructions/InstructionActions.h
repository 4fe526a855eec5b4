// What the instruction script asks of the launcher. The driver implements it.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"

namespace vessant {

/// Throws LauncherException for a variable number out of range and whatever the operations throw.
class InstructionActions {
 public:
  static constexpr std::int32_t kStringVariables = 10;
  static constexpr std::int32_t kNumericVariables = 5;

  virtual ~InstructionActions() = default;

  virtual void findJvm(bool showProgress, bool showFailure) = 0;
  virtual std::int32_t launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds) = 0;
  virtual void beginProgress() = 0;
  virtual void installEmbeddedJvm(std::int32_t mode) = 0;
  virtual std::int32_t launchWithJvmFile(const SString& fileName, std::int16_t seconds) = 0;
  virtual void verifyEmbeddedJvmFile(bool showProgress, bool showFailure, std::int32_t fileId) = 0;
  virtual void runEmbeddedLauncher(std::int32_t fileId) = 0;

  /// Variables S1 to S10 and N1 to N5. They outlive a run of the script.
  [[nodiscard]] virtual SString getStringVariable(std::int32_t number) const = 0;
  virtual void setStringVariable(std::int32_t number, const SString& value) = 0;
  [[nodiscard]] virtual std::int32_t getNumericVariable(std::int32_t number) const = 0;
  virtual void setNumericVariable(std::int32_t number, std::int32_t value) = 0;
};

}  // namespace vessant
