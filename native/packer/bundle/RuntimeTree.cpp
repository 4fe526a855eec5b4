#include "packer/bundle/RuntimeTree.h"

#include <algorithm>
#include <filesystem>

#include <unistd.h>

#include "packer/Text.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kLeftOut[] = {
    "demo", "docs", "jmods", "lib/src.zip", "man", "sample", "src.zip",
};

class RuntimeWalk {
 public:
  explicit RuntimeWalk(const std::string& home) : home_(fs::canonical(home)) {}

  std::vector<RuntimeEntry> run();

 private:
  void addDirectory(const fs::path& source, const std::string& name);
  void add(const fs::path& source, const std::string& name);
  void addLink(const fs::path& source, const std::string& name);
  void addFile(const fs::path& source, const std::string& name);
  [[nodiscard]] bool isInHome(const fs::path& path) const;

  fs::path home_;
  std::vector<fs::path> open_;  // the directories that are being read, outermost first
  std::vector<RuntimeEntry> entries_;
};

bool isLeftOut(const std::string& name) {
  return std::find(std::begin(kLeftOut), std::end(kLeftOut), name) != std::end(kLeftOut);
}

std::vector<RuntimeEntry> RuntimeWalk::run() {
  addDirectory(home_, "");
  std::sort(entries_.begin(), entries_.end(),
            [](const RuntimeEntry& a, const RuntimeEntry& b) { return a.name < b.name; });
  return std::move(entries_);
}

void RuntimeWalk::addDirectory(const fs::path& source, const std::string& name) {
  if (std::find(open_.begin(), open_.end(), source) != open_.end()) {
    throw failure(source.string() + ": a link leads back to the directory that it is in");
  }
  if (!name.empty()) entries_.push_back({.name = name, .kind = RuntimeEntry::Kind::Directory});
  open_.push_back(source);
  for (const fs::directory_entry& entry : fs::directory_iterator(source)) {
    const std::string below = entry.path().filename().string();
    add(entry.path(), name.empty() ? below : name + "/" + below);
  }
  open_.pop_back();
}

void RuntimeWalk::add(const fs::path& source, const std::string& name) {
  if (isLeftOut(name)) return;
  switch (fs::symlink_status(source).type()) {
    case fs::file_type::directory:
      return addDirectory(source, name);
    case fs::file_type::symlink:
      return addLink(source, name);
    case fs::file_type::regular:
      return addFile(source, name);
    default:
      throw failure(source.string() + ": is neither a file nor a directory");
  }
}

bool RuntimeWalk::isInHome(const fs::path& path) const {
  const fs::path relative = path.lexically_relative(home_);
  return !relative.empty() && *relative.begin() != "..";
}

void RuntimeWalk::addLink(const fs::path& source, const std::string& name) {
  std::error_code leadsNowhere;
  const fs::path target = fs::canonical(source, leadsNowhere);
  if (leadsNowhere) return;
  if (!isInHome(target)) return add(target, name);
  const fs::path inHome = target.lexically_relative(home_);
  if (isLeftOut(inHome.string())) return;
  entries_.push_back({.name = name,
                      .kind = RuntimeEntry::Kind::Link,
                      .target = inHome.lexically_relative(fs::path(name).parent_path()).string()});
}

void RuntimeWalk::addFile(const fs::path& source, const std::string& name) {
  const bool isExecutable =
      (fs::status(source).permissions() & fs::perms::owner_exec) != fs::perms::none;
  entries_.push_back({.name = name,
                      .kind = RuntimeEntry::Kind::File,
                      .isExecutable = isExecutable,
                      .source = source.string(),
                      .size = fs::file_size(source)});
}

}  // namespace

std::vector<RuntimeEntry> collectRuntime(const std::string& home) {
  try {
    return RuntimeWalk(home).run();
  } catch (const fs::filesystem_error& error) {
    throw failure(error.path1().string() + ": " + error.code().message());
  }
}

}  // namespace vessant
