// What was built or installed together with the running vspack: the launcher, verify.jar, JVM
// files.
#pragma once

#include <string>
#include <vector>

namespace vessant {

/// The directories in which files lie that packages bring along, nearest first: `share` next to the
/// build's own program, then the system's. Each is followed by its `jvm` directory. `program` is
/// the path of vspack.
[[nodiscard]] std::vector<std::string> installedDirectories(const std::string& program);

/// The path of an installed file, such as "verify.jar"; empty when there is none.
[[nodiscard]] std::string installedFile(const std::string& program, const std::string& name);

/// The launcher that belongs to this vspack: the one next to it, else the system's. The former when
/// there is none, so that an error names it.
[[nodiscard]] std::string installedLauncher(const std::string& program);

}  // namespace vessant
