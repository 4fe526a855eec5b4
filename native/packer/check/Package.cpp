#include "packer/check/Package.h"

#include <algorithm>

#include "packer/check/NumberCheck.h"

namespace vessant {

const PackageFile* Package::first(FileType type) const {
  for (const PackageFile& file : files) {
    if (file.type == type) return &file;
  }
  return nullptr;
}

const PackageFile* Package::withId(std::int64_t id) const {
  for (const PackageFile& file : files) {
    if (file.id == id) return &file;
  }
  return nullptr;
}

std::vector<const PackageFile*> Package::all(FileType type) const {
  std::vector<const PackageFile*> found;
  for (const PackageFile& file : files) {
    if (file.type == type) found.push_back(&file);
  }
  return found;
}

const PackageFile* Package::applicationArchive() const {
  const std::vector<const PackageFile*> archives = all(FileType::ApplicationArchive);
  return archives.empty() ? nullptr : archives.back();
}

bool uses(const Package& package, Verb verb) {
  return std::any_of(package.statements.begin(), package.statements.end(),
                     [verb](const Statement& statement) { return statement.verb == verb; });
}

std::optional<std::string> idArgument(const Statement& statement) {
  const bool isVerify = statement.verb == Verb::Verify;
  const bool isFirst = statement.verb == Verb::ILaunch || statement.verb == Verb::ExecuteLauncher;
  if (!isVerify && !isFirst) return std::nullopt;
  const std::string id = statement.argument(isVerify ? 2 : 0);
  if (id.empty()) return std::nullopt;
  return id;
}

/// A computed id may be that of any file.
bool isLaunchedById(const Package& package, const PackageFile& file) {
  return std::any_of(package.statements.begin(), package.statements.end(),
                     [&file](const Statement& statement) {
                       const std::optional<std::string> id = idArgument(statement);
                       if (statement.verb != Verb::ILaunch || !id) return false;
                       return wholeNumber(*id).value_or(file.id) == file.id;
                     });
}

}  // namespace vessant
