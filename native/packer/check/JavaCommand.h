// The Java program that a command line starts: whether it is one, whether it gets what it needs,
// and whether the class that it starts is in the jars that it is started from.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "packer/Finding.h"
#include "packer/check/JarFile.h"
#include "packer/check/ShellCommand.h"

namespace vessant {

/// A flaw of a command that makes it do something else than its author meant.
struct CommandFlaw {
  /// The name of the finding.
  const char* name = "";
  Severity severity = Severity::Error;
  std::string text = {};
};

/// The flaws that the words alone tell of a command that starts Java: programs that are none, a
/// class path that Java does not read, user's arguments that reach somebody else. `executable` is
/// the JVM file's JVM_EXE.
[[nodiscard]] std::vector<CommandFlaw> flawsOf(const ShellReading& command,
                                               const std::string& executable);

/// What a Java command starts, as far as its words tell.
struct JavaStart {
  /// False when the words do not tell.
  bool isKnown = false;
  /// The main class; empty when a jar's manifest names it.
  std::string mainClass;
  /// The entries of the class path, or the one jar of -jar.
  std::string classPath;
  /// Whether a class path stands behind the class, where it is an argument of the program.
  bool hasLatePath = false;
  /// Whether the words end before a class or a jar is named.
  bool isNothing = false;
};

/// `executable`: how the word that is the Java program ends.
[[nodiscard]] JavaStart readJavaStart(const ShellReading& command, const std::string& executable);

/// The packed jar that a class path entry of a trial command stands for, or null.
using JarOfEntry = std::function<const JarFile*(const std::string& entry)>;

/// Why the start must fail; empty when it need not, or when that cannot be told.
[[nodiscard]] std::string whyStartFails(const JavaStart& start, const std::string& separator,
                                        const JarOfEntry& jarOfEntry);

}  // namespace vessant
