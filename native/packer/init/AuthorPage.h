// The page that lies in a new project's directory.
#pragma once

#include <string>

#include "packer/init/Project.h"

namespace vessant {

/// README.md: how to pack, and what each file is for.
[[nodiscard]] std::string authorPage(const Project& project);

}  // namespace vessant
