// Statements of an instruction script in words.
#pragma once

#include <string>
#include <vector>

#include "packer/check/Statement.h"

namespace vessant {

/// What a run does at this statement, with the number of the statement that a jump goes on with.
[[nodiscard]] std::string inWords(const std::vector<Statement>& statements, std::size_t index);

}  // namespace vessant
