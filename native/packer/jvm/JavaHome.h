// A Java home on this machine: asked what it is, as the launcher asks, and its programs run.
#pragma once

#include <string>
#include <vector>

#include "packer/jvm/JvmFileText.h"

namespace vessant {

/// How a program ended.
struct ProgramResult {
  /// The exit status, or 128 and the number of the signal that ended it.
  int status = 0;
  /// What it wrote on its standard output. Its standard error is that of vspack.
  std::string out;
};

/// Runs the program, whose path comes first, with empty input. An interrupt meanwhile ends it with
/// vspack. Throws LauncherException, naming it, when it cannot be started.
[[nodiscard]] ProgramResult runProgram(const std::vector<std::string>& command);

/// What a Java says of itself.
struct JavaFacts {
  /// The absolute path that it was asked at.
  std::string home;
  /// 8, 11, 17 ...
  int feature = 0;
  std::string version;
  std::string vendor;
  std::string architecture;
  /// The home that it takes for its own, without links: another one than that above where the
  /// latter has but a link to a Java, as /usr has, or holds a runtime of its own.
  std::string realHome;
};

/// The verification class that was installed together with vspack, whose path `program` is. Throws
/// LauncherException when there is none.
[[nodiscard]] std::string installedVerifyJar(const std::string& program);

/// Runs the Java in `home` with the verification class of `verifyJar`. Throws LauncherException,
/// naming the home, when there is none or it does not answer.
[[nodiscard]] JavaFacts askJava(const std::string& home, const std::string& verifyJar);

/// A JVM like that one: of the same version and vendor, for the same kind of machine.
[[nodiscard]] KnownJava knownJava(const JavaFacts& facts);

/// Throws LauncherException when the launcher would pass the home over or could not run its Java:
/// it puts the path between double quotes into a command of the shell.
void checkHomeForLauncher(const std::string& home);

}  // namespace vessant
