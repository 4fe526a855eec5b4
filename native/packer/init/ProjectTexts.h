// What `vspack init` writes for an author to pack and to go on with.
#pragma once

#include <string>
#include <vector>

#include "packer/init/Project.h"

namespace vessant {

struct ProjectFile {
  std::string name;
  std::string text;
};

/// All texts of a project: manifest, script, launch script, JVM files and a page for the author. Throws
/// LauncherException when the title cannot be shown.
[[nodiscard]] std::vector<ProjectFile> textsOf(const Project& project);

}  // namespace vessant
