#include "packer/init/ProjectDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>

#include "packer/PendingWork.h"
#include "packer/Text.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissions = 0777;

[[noreturn]] void fail(const fs::path& path, const std::string& reason) {
  throw failure(path.string() + ": " + reason);
}

fs::path withoutSlashAtEnd(const std::string& path) {
  if (path.empty()) throw failure("the directory must have a name");
  const fs::path normal = fs::absolute(path).lexically_normal();
  return normal.has_filename() ? normal : normal.parent_path();
}

/// What a directory made with all permissions would get.
mode_t permissionsOfUser() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return kPermissions & ~mask;
}

}  // namespace

ProjectDirectory::ProjectDirectory(const std::string& path, bool force)
    : path_(withoutSlashAtEnd(path)) {
  std::error_code unknown;
  const fs::file_type type = fs::status(path_, unknown).type();
  isThere_ = type != fs::file_type::not_found;
  if (isThere_ && type != fs::file_type::directory) fail(path_, "is no directory");
  if (isThere_) checkContents(force);
  makeStage();
}

ProjectDirectory::~ProjectDirectory() {
  for (const std::string& path : pending_) PendingWork::forget(path.c_str());
  std::error_code ignored;
  fs::remove_all(stage_, ignored);
}

void ProjectDirectory::checkContents(bool force) const {
  std::error_code error;
  const bool isEmpty = fs::is_empty(path_, error);
  if (error) fail(path_, error.message());
  if (!isEmpty && !force) fail(path_, "is not empty; --force writes into it all the same");
}

/// On the disk of the directory: what is finished only has to be renamed.
void ProjectDirectory::makeStage() {
  const fs::path around = isThere_ ? path_ : path_.parent_path();
  std::string name = (around / ".vspack-init-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) fail(around, std::strerror(errno));
  stage_ = remember(name);
}

const std::string& ProjectDirectory::remember(const std::string& path) {
  PendingWork::remember(pending_.emplace_back(path).c_str());
  return pending_.back();
}

std::string ProjectDirectory::stagePath(const std::string& name) {
  return remember((stage_ / name).string());
}

void ProjectDirectory::publish() {
  try {
    if (!isThere_) {
      fs::permissions(stage_, static_cast<fs::perms>(permissionsOfUser()));
      return fs::rename(stage_, path_);
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(stage_)) {
      fs::rename(entry.path(), path_ / entry.path().filename());
    }
  } catch (const fs::filesystem_error& error) {
    fail(path_, error.code().message());
  }
}

}  // namespace vessant
