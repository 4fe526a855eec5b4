// ProgramLaunch: starts the Java program with a JVM that was found, or an embedded launcher in
// place of this one.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/LoadedObjects.h"
#include "launcher/jvm/JVMFile.h"

namespace vessant {

class ProgramLaunch {
 public:
  /// All must outlive this.
  ProgramLaunch(LauncherState& state, LauncherServices& services, LoadedObjects& objects)
      : state_(state), services_(services), objects_(objects) {}

  /// Both return the program's status, or kRunFailed without a launch script. The launch's stage is
  /// shown when `seconds` is above 0. The progress display is off afterwards, and the state holds
  /// what the program wrote. Throw LauncherException when the JVM file cannot be read or the
  /// program not be started.
  std::int32_t launchWithJvmFile(const SString& fileName, std::int16_t seconds);
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds);

  /// Becomes the embedded launcher with the id. Returns, with a line in the log, when it cannot.
  void runEmbeddedLauncher(std::int32_t fileId);

 private:
  std::int32_t launch(JVMFile& jvmFile, std::int16_t seconds);
  [[nodiscard]] SString embeddedLauncherCommand(const SString& launcher) const;

  LauncherState& state_;
  LauncherServices& services_;
  LoadedObjects& objects_;
};

}  // namespace vessant
