// Each statement of an instruction script by itself.
#pragma once

#include <string>
#include <vector>

#include "packer/Finding.h"
#include "packer/check/Statement.h"

namespace vessant {

/// Reports unknown commands, comments that are none, arguments that are missing, wrong, cut or
/// ignored, and references to variables that do not exist. What is accepted here the launcher
/// accepts, too: it is asked.
void checkStatements(const std::string& file, const std::vector<Statement>& statements,
                     Findings& findings);

}  // namespace vessant
