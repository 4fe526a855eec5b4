// ResultVariables: S1 to S10 and N1 to N5, in which operations leave what they found and which
// scripts read and set.
//
// By convention N1 tells success (1) or failure (0), S1 holds the Java home or JVM file found and
// S2 the JVM file that a search found.
#pragma once

#include <array>
#include <cstdint>

#include "launcher/base/SString.h"
#include "launcher/instructions/InstructionActions.h"

namespace vessant {

/// Empty and 0 at the start. Every operation throws LauncherException for a number out of range.
class ResultVariables {
 public:
  [[nodiscard]] const SString& getStringVariable(std::int32_t number) const;
  void setStringVariable(std::int32_t number, const SString& value);
  [[nodiscard]] std::int32_t getNumericVariable(std::int32_t number) const;
  void setNumericVariable(std::int32_t number, std::int32_t value);

 private:
  std::array<SString, InstructionActions::kStringVariables> strings_;
  std::array<std::int32_t, InstructionActions::kNumericVariables> numbers_ = {};
};

}  // namespace vessant
