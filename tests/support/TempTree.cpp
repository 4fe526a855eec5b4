#include "support/TempTree.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <sys/stat.h>

namespace vessant::test {

namespace fs = std::filesystem;

TempTree::TempTree() {
  std::string name = (fs::temp_directory_path() / "vessant-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make " + name);
  root_ = fs::canonical(name).string();
}

TempTree::~TempTree() {
  std::error_code ignored;
  for (fs::recursive_directory_iterator at(root_, ignored), end; at != end; at.increment(ignored)) {
    if (at->is_directory(ignored) && !at->is_symlink(ignored)) {
      fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(root_, ignored);
}

std::string TempTree::path(std::string_view relative) const {
  return relative.empty() ? root_ : root_ + "/" + std::string(relative);
}

std::string TempTree::file(std::string_view relative, std::string_view content) {
  const std::string full = path(relative);
  fs::create_directories(fs::path(full).parent_path());
  writeFile(full, content);
  return full;
}

std::string TempTree::program(std::string_view relative, std::string_view content) {
  const std::string full = file(relative, content);
  fs::permissions(full, fs::perms(0755));
  return full;
}

std::string TempTree::dir(std::string_view relative) {
  const std::string full = path(relative);
  fs::create_directories(full);
  return full;
}

std::string TempTree::link(std::string_view relative, std::string_view target) {
  const std::string full = path(relative);
  fs::create_directories(fs::path(full).parent_path());
  fs::create_symlink(target, full);
  return full;
}

std::vector<std::string> TempTree::list(std::string_view relative) const {
  std::vector<std::string> names;
  const fs::path top = path(relative);
  for (const auto& entry : fs::recursive_directory_iterator(top)) {
    names.push_back(entry.path().lexically_relative(top).string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

mode_t permissionsOf(const std::string& path) {
  struct stat status = {};
  if (::lstat(path.c_str(), &status) != 0) throw std::runtime_error("no status of " + path);
  return status.st_mode & ALLPERMS;
}

std::string readFile(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + path);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

void writeFile(const std::string& path, std::string_view content) {
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream << content;
  stream.close();
  if (!stream) throw std::runtime_error("cannot write " + path);
}

}  // namespace vessant::test
