// What the instruction script asks of the launcher. The driver implements it.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"

namespace vessant {

/// What an operation shows of itself. Scripts give it as two arguments, input files as two keys.
struct Display {
  /// Its stage and the progress display, which is turned off otherwise.
  bool progress = false;
  /// A message when it finds nothing.
  bool failure = false;
};

/// Throws LauncherException for a variable number out of range and whatever the operations throw.
class InstructionActions {
 public:
  static constexpr std::int32_t kStringVariables = 10;
  static constexpr std::int32_t kNumericVariables = 5;

  virtual ~InstructionActions() = default;

  /// Is called before each statement, behind the last and wherever else a script may run for ever.
  /// Throws LauncherException when the run has been cancelled.
  virtual void throwIfCanceled() const = 0;

  virtual void findJvm(Display display) = 0;
  /// The launches return the program's status. They show their stage when `seconds` is above 0; it
  /// stays on the screen, however many they are.
  virtual std::int32_t launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds) = 0;
  virtual void beginProgress() = 0;
  virtual void installEmbeddedJvm(std::int32_t mode) = 0;
  virtual std::int32_t launchWithJvmFile(const SString& fileName, std::int16_t seconds) = 0;
  virtual void verifyEmbeddedJvmFile(Display display, std::int32_t fileId) = 0;
  /// Returns only when the launcher could not be started.
  virtual void runEmbeddedLauncher(std::int32_t fileId) = 0;

  /// Variables S1 to S10 and N1 to N5. They outlive a run of the script.
  [[nodiscard]] virtual SString getStringVariable(std::int32_t number) const = 0;
  virtual void setStringVariable(std::int32_t number, const SString& value) = 0;
  [[nodiscard]] virtual std::int32_t getNumericVariable(std::int32_t number) const = 0;
  virtual void setNumericVariable(std::int32_t number, std::int32_t value) = 0;
};

}  // namespace vessant
