// The launch command, tried with each JVM file.
#pragma once

#include "packer/Finding.h"
#include "packer/check/JarFile.h"
#include "packer/check/Package.h"

namespace vessant {

/// How much is to be told.
struct LaunchCheckOptions {
  /// Also report what is right but can be abused.
  bool strict = false;
};

/// Reports mistakes in the macros, the quotes and the class path of the launch script's command,
/// and classes that it cannot start.
void checkLaunch(const Package& package, const PackageFile& script, JarCache& jars,
                 const LaunchCheckOptions& options, Findings& findings);

}  // namespace vessant
