#include "system/RealJdk.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

/// The version that a Java home tells in its "release" file; empty when it tells none.
std::string versionOf(const fs::path& home) {
  std::ifstream release(home / "release");
  const std::string begin = "JAVA_VERSION=\"";
  for (std::string line; std::getline(release, line);) {
    if (line.starts_with(begin)) return line.substr(begin.size(), line.rfind('"') - begin.size());
  }
  return "";
}

std::optional<RealJdk> jdkAt(const fs::path& home) {
  const std::string version = versionOf(home);
  if (version.empty() || !fs::exists(home / "bin/java")) return {};
  return RealJdk{home.string(), version};
}

}  // namespace

int RealJdk::feature() const {
  const int first = std::stoi(version);
  return first == 1 ? std::stoi(version.substr(2)) : first;
}

std::optional<RealJdk> findRealJdk() {
  std::vector<fs::path> homes;
  std::istringstream path(std::getenv("PATH") == nullptr ? "" : std::getenv("PATH"));
  std::error_code missing;
  for (std::string entry; std::getline(path, entry, ':');) {
    const fs::path java = fs::canonical(entry + "/java", missing);
    if (!missing) homes.push_back(java.parent_path().parent_path());
  }
  for (const fs::directory_entry& entry : fs::directory_iterator("/usr/lib/jvm", missing)) {
    if (!entry.is_symlink()) homes.push_back(entry.path());
  }
  for (const fs::path& home : homes) {
    const std::optional<RealJdk> jdk = jdkAt(home);
    if (jdk) return jdk;
  }
  return {};
}

}  // namespace vessant::test
