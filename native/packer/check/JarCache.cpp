#include "packer/check/JarCache.h"

namespace vessant {

const JarFile& JarCache::of(const PackageFile& file) {
  const auto known = jars_.find(&file);
  if (known != jars_.end()) return known->second;
  return jars_.emplace(&file, readJarFile(file.bytes)).first->second;
}

}  // namespace vessant
