// JvmInstallation: runs a JVM's installer and takes over what it brought, for the instruction
// script (the bundled installer) and for an input file (one that it names).
//
// An installed JVM has a JVM file named "jvm" at the top of its directory. Its paths may be
// relative to that directory; they are made absolute, so that the file works from anywhere.
#pragma once

#include <cstdint>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/SString.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/instructions/InstructionActions.h"

namespace vessant {

class JvmInstallation {
 public:
  /// Both must outlive this.
  JvmInstallation(LauncherState& state, LauncherServices& services)
      : state_(state), services_(services) {}

  /// Installs the bundled JVM. Mode 0: into a temporary directory, without progress display; 1: the
  /// same with it; 2: with it, into a directory that the user names. N1 tells whether it worked; S1
  /// is then the JVM file. Throws LauncherException when there is no installer or it cannot be run.
  void installEmbeddedJvm(std::int32_t mode);
  /// Runs an installer in a directory and returns the path of the JVM file there, as the directory
  /// was given. Throws LauncherException when it cannot be run or brings no JVM file.
  SString installNamedJvm(Display display, const SString& installer, const SString& destination);

 private:
  [[nodiscard]] SString chooseDestination(std::int32_t mode);
  void runInstaller(const FileIndexEntry& installer, const SString& destination);
  void adoptInstalledJvm(const SString& jvmFile, const SString& destination, bool temporary);

  LauncherState& state_;
  LauncherServices& services_;
};

}  // namespace vessant
