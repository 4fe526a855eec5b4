// What a jar holds, as far as starting a program from it goes.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "packer/ByteSource.h"
#include "packer/check/Package.h"

namespace vessant {

/// The names in a jar and what its manifest says of starting it. Holds no contents.
struct JarFile {
  /// Why it is no zip file; empty when it is one.
  std::string flaw;
  std::vector<std::string> names;
  /// From its manifest; empty when that does not say.
  std::string mainClass;
  std::string classPath;

  [[nodiscard]] bool isZip() const { return flaw.empty(); }
  /// `className` with dots, as a command names it.
  [[nodiscard]] bool holdsClass(const std::string& className) const;
};

/// Reads the central directory and the jar's manifest.
[[nodiscard]] JarFile readJarFile(const ByteSource& bytes);

/// The value of a main attribute of a jar's manifest, whose long lines are folded.
[[nodiscard]] std::string manifestAttribute(const std::string& manifest, const std::string& name);

/// Jars by the files that they come from: several checks ask for the same one, and each is read
/// once.
class JarCache {
 public:
  /// Reads it at the first call. The reference stays valid as long as the cache; the file must,
  /// too.
  const JarFile& of(const PackageFile& file);

 private:
  std::map<const PackageFile*, JarFile> jars_;
};

/// The jar of the program that an installer starts.
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

}  // namespace vessant
