#include "packer/InstalledFiles.h"

#include <filesystem>

namespace vessant {
namespace {

namespace fs = std::filesystem;

bool isThere(const fs::path& path) {
  std::error_code unknown;
  return fs::exists(path, unknown);
}

fs::path directoryOfProgram(const std::string& program) {
  return fs::path(program).parent_path();
}

/// Where an installation keeps the project's files, seen from the directory of its programs.
constexpr const char* kShares[] = {"../share/vessant", "../share", "/usr/local/share/vessant",
                                   "/usr/share/vessant"};
constexpr const char* kLaunchers[] = {
    "launcher", "../lib/vessant/launcher", "../share/vessant/launcher",
    "/usr/local/lib/vessant/launcher", "/usr/lib/vessant/launcher"};

}  // namespace

std::vector<std::string> installedDirectories(const std::string& program) {
  std::vector<std::string> directories;
  for (const char* share : kShares) {
    const fs::path directory = (directoryOfProgram(program) / share).lexically_normal();
    directories.push_back(directory.string());
    directories.push_back((directory / "jvm").string());
  }
  return directories;
}

std::string installedFile(const std::string& program, const std::string& name) {
  for (const std::string& directory : installedDirectories(program)) {
    const fs::path path = fs::path(directory) / name;
    if (isThere(path)) return path.string();
  }
  return "";
}

std::string installedLauncher(const std::string& program) {
  const fs::path directory = directoryOfProgram(program);
  for (const char* place : kLaunchers) {
    const fs::path path = (directory / place).lexically_normal();
    if (isThere(path)) return path.string();
  }
  return (directory / kLaunchers[0]).string();
}

}  // namespace vessant
