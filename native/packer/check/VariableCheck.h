// What the string variables of an instruction script hold.
#pragma once

#include <string>
#include <vector>

#include "packer/Finding.h"
#include "packer/check/Statement.h"

namespace vessant {

/// Reports string variables that nothing sets before they are used, and a Java home where the path
/// of a JVM file is wanted.
void checkVariables(const std::string& file, const std::vector<Statement>& statements,
                    Findings& findings);

}  // namespace vessant
