// A statement, executed by the launcher's own interpreter in a world where nothing happens.
#pragma once

#include <string>

#include "packer/check/Statement.h"

namespace vessant {

/// Why the launcher would end the run at this statement; empty when it would not. Every variable
/// holds 1, and every label exists.
[[nodiscard]] std::string whyRefused(const Statement& statement);

}  // namespace vessant
