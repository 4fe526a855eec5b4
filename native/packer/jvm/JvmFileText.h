// The text of a JVM file: which Java is wanted, and where to look for it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "packer/jvm/JavaRange.h"

namespace vessant {

/// What an author asks of a Java.
struct JavaWish {
  JavaRange range;
  bool jdk = false;
  /// The value of java.vendor; empty: anybody's. One that ends in "..." is a prefix.
  std::string vendor = {};
  std::vector<std::string> modules = {};
};

/// "Java 17 or newer", with what else is asked: "a JDK", the vendor, the modules.
[[nodiscard]] std::string describe(const JavaWish& wish);

/// A JVM file for it, with hints for the places where Linux systems put their Javas. Throws
/// LauncherException when a module's name could not stand in the command of the verification or
/// the vendor is no line of text.
[[nodiscard]] std::string jvmFileText(const JavaWish& wish);

/// A JVM that is there, described by its own system properties.
struct KnownJava {
  std::string description;
  /// In the order in which they are asked.
  std::vector<std::pair<std::string, std::string>> properties;
  std::string home;
  /// Whether to look for it at its home, and at JAVA_HOME and its like, too.
  bool isLookedFor = true;
};

/// A JVM file for every JVM with the same values. The home is the file's own JVM_HOME.
[[nodiscard]] std::string jvmFileText(const KnownJava& java);

}  // namespace vessant
