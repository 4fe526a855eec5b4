// The jar of the program that an installer starts.
#pragma once

#include <string>

namespace vessant {

struct ApplicationJar {
  std::string path;
  /// With dots.
  std::string mainClass;
  /// Whether Java's own -jar starts that class, because the jar's manifest names it.
  bool startsByItself = false;
  /// The oldest Java that can load the class.
  int feature = 0;
};

/// Reads the jar at `path`; `chosenMain` goes before what its manifest names. Throws
/// LauncherException, naming the jar, when it is none, has no such class or needs jars beside it.
[[nodiscard]] ApplicationJar readApplicationJar(const std::string& path,
                                                const std::string& chosenMain);

/// The feature version of the Java that a class file was compiled for; 0 when the bytes are no
/// class file.
[[nodiscard]] int featureOfClass(const std::string& bytes);

/// A file name of letters, digits, ".", "_" and "-" alone, made of any file name: nothing of it
/// means something to a shell or to the launcher's macros.
[[nodiscard]] std::string safeFileName(const std::string& name);

}  // namespace vessant
