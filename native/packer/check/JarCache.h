// The packed jars, each read once.
#pragma once

#include <map>
#include <string>

#include "packer/check/JarFile.h"
#include "packer/check/Package.h"

namespace vessant {

class JarCache {
 public:
  const JarFile& of(const PackageFile& file);

 private:
  std::map<const PackageFile*, JarFile> jars_;
};

}  // namespace vessant
