// The command that a launch would run, from the launcher's own launch script.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "packer/explain/DryRun.h"

namespace vessant {

struct LaunchPlan {
  std::string command;
  /// Empty when it is the user's own.
  std::string directory;
  /// Whether what the program writes goes into the log and not to the user.
  bool collectsOutput = false;
  std::vector<std::pair<std::string, std::string>> variables;
  /// Why there is no command; empty when there is one.
  std::string failure;
};

/// What launching with this JVM file does, with `home` as its Java home unless that is empty.
[[nodiscard]] LaunchPlan planLaunch(DryRun& run, const FileIndexEntry& launchScript,
                                    const FileIndexEntry& jvmFile, const std::string& home);

struct SideFile {
  std::string path;
  const char* purpose;
  bool isThere;
};

/// The files beside the installer that a launch reads.
[[nodiscard]] std::vector<SideFile> sideFilesOf(const DryRun& run);

}  // namespace vessant
