// An instruction script as a whole: its labels, the ways through it, its variables.
#pragma once

#include <vector>

#include "packer/Finding.h"
#include "packer/check/Statement.h"
#include "packer/check/TagText.h"

namespace vessant {

/// The statements of a script's text.
[[nodiscard]] std::vector<Statement> readStatements(const TagText& script);

/// Reports everything that can be said of a script without knowing the files around it.
void checkScript(const TagText& script, const std::vector<Statement>& statements,
                 Findings& findings);

}  // namespace vessant
