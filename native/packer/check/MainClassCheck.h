// Whether the class that a command starts is in the jars that it starts it from.
#pragma once

#include <functional>
#include <string>

#include "packer/check/JarFile.h"
#include "packer/check/ShellWords.h"

namespace vessant {

/// What a Java command starts, as far as its words tell.
struct JavaStart {
  /// False when the words do not tell.
  bool isKnown = false;
  /// The main class; empty when a jar's manifest names it.
  std::string mainClass;
  /// The entries of the class path, or the one jar of -jar.
  std::string classPath;
};

/// `executable`: how the word that is the Java program ends.
[[nodiscard]] JavaStart readJavaStart(const ShellReading& command, const std::string& executable);

/// The packed jar that a class path entry of a trial command stands for, or null.
using JarOfEntry = std::function<const JarFile*(const std::string& entry)>;

/// Why the start must fail; empty when it need not, or when that cannot be told.
[[nodiscard]] std::string whyStartFails(const JavaStart& start, const std::string& separator,
                                        const JarOfEntry& jarOfEntry);

}  // namespace vessant
