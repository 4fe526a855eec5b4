// Runs command lines through the real platform layer.
#pragma once

#include <string>

#include "launcher/linux/LinuxPlatformImpl.h"
#include "support/BuildPaths.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {

/// A command line that makes the test helper do `actions`.
[[nodiscard]] inline std::string helper(const std::string& actions) {
  return "\"" + std::string(kTestHelper) + "\" " + actions;
}

[[nodiscard]] inline SString text(const std::string& bytes) {
  return std::string_view(bytes);
}

struct ChildRunner {
  /// Collects what the command writes.
  std::int32_t capture(const std::string& command, const std::string& directory = "") {
    ChildCommand child{.command = text(command), .workingDirectory = text(directory)};
    child.captureOutput = true;
    child.redirectChildOutput = true;
    child.stdoutText = &out;
    child.stderrText = &err;
    return platform.executeCommand(child, progress).exitCode;
  }

  /// Lets the command use the streams of this process.
  std::int32_t pass(const std::string& command, const std::string& directory = "") {
    const ChildCommand child{.command = text(command), .workingDirectory = text(directory)};
    return platform.executeCommand(child, progress).exitCode;
  }

  LinuxPlatformImpl platform;
  RecordingProgress progress;
  SString out;
  SString err;
};

}  // namespace vessant::test
