#include "packer/check/JarFile.h"

#include <algorithm>
#include <sstream>

#include "packer/ArchiveReader.h"
#include "packer/MappedBytes.h"
#include "packer/Nearest.h"

namespace vessant {
namespace {

constexpr const char* kManifestName = "META-INF/MANIFEST.MF";
constexpr std::size_t kLongestManifest = 1U << 20U;

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && editDistance(a, b) == 0;
}

}  // namespace

bool JarFile::holdsClass(const std::string& className) const {
  std::string path = className;
  std::replace(path.begin(), path.end(), '.', '/');
  return names.contains(path + ".class");
}

JarFile readJarFile(const ByteSource& bytes) {
  JarFile jar;
  const MappedBytes mapped(bytes);
  ArchiveReader reader(mapped.bytes(), ArchiveFormat::Zip);
  std::string manifest;
  while (const std::optional<ArchiveMember> member = reader.next()) {
    if (member->name == kManifestName) manifest = reader.contents(kLongestManifest);
    jar.names.insert(member->name);
  }
  jar.flaw = reader.flaw();
  jar.mainClass = manifestAttribute(manifest, "Main-Class");
  jar.classPath = manifestAttribute(manifest, "Class-Path");
  return jar;
}

std::string manifestAttribute(const std::string& manifest, const std::string& name) {
  std::istringstream stream(manifest);
  std::string value;
  bool inAttribute = false;
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.empty()) break;  // the main attributes end here
    if (line.starts_with(' ')) {
      if (inAttribute) value += line.substr(1);
      continue;
    }
    if (inAttribute) break;
    const std::size_t colon = line.find(": ");
    inAttribute = colon != std::string::npos && equalIgnoringCase(line.substr(0, colon), name);
    if (inAttribute) value = line.substr(colon + 2);
  }
  return value;
}

const JarFile& JarCache::of(const PackageFile& file) {
  const auto known = jars_.find(&file);
  if (known != jars_.end()) return known->second;
  return jars_.emplace(&file, readJarFile(file.bytes)).first->second;
}

}  // namespace vessant
