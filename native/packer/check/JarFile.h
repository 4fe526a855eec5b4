// What a jar holds, as far as starting a program from it goes.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "packer/ByteSource.h"
#include "packer/check/Package.h"

namespace vessant {

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

class JarCache {
 public:
  const JarFile& of(const PackageFile& file);

 private:
  std::map<const PackageFile*, JarFile> jars_;
};

}  // namespace vessant
