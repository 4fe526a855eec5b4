// References to the launcher's variables: N1 to N5 and S1 to S10.
#pragma once

#include <cstdint>
#include <string_view>

#include "launcher/base/SString.h"
#include "launcher/instructions/InstructionActions.h"

namespace vessant {

struct VariableSpecification {
  char type;  // 'N' or 'S'
  std::int32_t number;
};

/// Reads a specification such as "N1" or "s10". Throws LauncherException with `context`, a blank
/// and the reason.
[[nodiscard]] VariableSpecification parseVariableSpecification(std::string_view text,
                                                               std::string_view context);

/// The variable's value as text.
[[nodiscard]] SString variableText(const VariableSpecification& variable,
                                   const InstructionActions& actions);

}  // namespace vessant
