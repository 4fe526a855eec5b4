// JvmFinder: finds and verifies Java VMs, for the instruction script and for the actions of an
// input file, and leaves what it found in the result variables.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/LoadedObjects.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/jvm/JVMSearch.h"

namespace vessant {

class JvmFinder {
 public:
  /// All must outlive this.
  JvmFinder(LauncherState& state, LauncherServices& services, LoadedObjects& objects)
      : state_(state), services_(services), objects_(objects) {}

  /// Looks for a JVM that one of the JVM files accepts. N1 tells whether there was one; S1 is then
  /// its home and S2 the file written for it, which is temporary.
  void findJvm(Display display);
  /// Appends every JVM on the whole disk that one of the JVM files accepts.
  void findAllJvms(Display display, JVMMatchPtrDeque& matches);
  /// Verifies the embedded JVM file with the id at the home that the user named, or at its own.
  /// Throws LauncherException when there is no such file.
  void verifyEmbeddedJvmFile(Display display, std::int32_t fileId);
  /// Verifies one JVM: the one at `javaHome` or, when that is empty, the one the file describes. N1
  /// tells whether it is valid; S1 is then its home.
  void verifyJvm(Display display, JVMFile& jvmFile, const SString& javaHome);

  /// Writes a match's JVM file as a temporary file and returns its path.
  SString writeJvmFile(const JVMMatch& match);

 private:
  void showSearchStage(Display display);

  LauncherState& state_;
  LauncherServices& services_;
  LoadedObjects& objects_;
};

}  // namespace vessant
