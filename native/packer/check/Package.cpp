#include "packer/check/Package.h"

#include <algorithm>
#include <utility>

#include "launcher/base/PathUtil.h"
#include "packer/Text.h"
#include "packer/check/Statement.h"

namespace vessant {
namespace {

int lineOf(const TagText& text, const char* tag) {
  const TextTag* found = text.find(tag);
  return found == nullptr ? 0 : found->line;
}

std::string directoryOfPath(const std::string& path) {
  return str(directoryOf(sstr(path)));
}

/// A file that cannot be opened was reported when the manifest was read.
std::optional<ByteSource> openIfReadable(const std::string& path) {
  try {
    return ByteSource(path);
  } catch (const LauncherException&) {
    return std::nullopt;
  }
}

/// The launcher reads whole lines: a last one without its end goes on in what lies behind it.
void checkEnding(const Installer& installer, const FileIndexEntry& entry, Findings& findings) {
  if (!isTagFileType(entry) || entry.length == 0) return;
  const std::string end =
      installer.bytes().bytesAt(std::uint64_t{entry.offset} + entry.length - 1, 2);
  if (end.find('\n') != std::string::npos) return;
  findings.error(str(entry.fileName), 0, "unfinished-text",
                 "the last line has no end, so the launcher reads on in the file behind it: pack "
                 "it with a line feed at its end");
}

}  // namespace

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

/// The id stands in another place for each command.
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

Package packageOf(const Manifest& manifest) {
  const TagText& text = manifest.text;
  Package package;
  package.label = text.file();
  package.line = lineOf(text, "FILES");
  package.directory = directoryOfPath(text.file());
  package.mode = manifest.mode;
  package.launcher = ByteSource(str(manifest.launcher));
  package.launcherLine = lineOf(text, "LAUNCHER");
  package.isComplete = manifest.files.size() == text.valuesOf("FILES").size();
  for (const PackedFile& file : manifest.files) {
    const std::optional<ByteSource> bytes = openIfReadable(str(file.path));
    if (!bytes) {
      package.isComplete = false;
      continue;
    }
    package.files.push_back({file.type, file.id, str(file.name), str(file.path), file.line, *bytes,
                             file.unpacks ? file.unpacks->bytes : 0});
  }
  return package;
}

Package packageOf(const Installer& installer, Findings& findings) {
  Package package;
  package.label = installer.path();
  package.directory = directoryOfPath(installer.path());
  package.mode = installer.modeByte();
  package.launcher = installer.launcher();
  package.files.reserve(installer.entries().size());
  for (const FileIndexEntry& entry : installer.entries()) {
    if (!installer.isWithin(entry)) {
      package.isComplete = false;
      continue;
    }
    checkEnding(installer, entry, findings);
    std::string name = str(entry.fileName);
    package.files.push_back({entry.type, entry.fileId, name, std::move(name), 0,
                             installer.bytesOf(entry), entry.expandedSize});
  }
  return package;
}

}  // namespace vessant
