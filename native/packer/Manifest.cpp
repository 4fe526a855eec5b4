#include "packer/Manifest.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "launcher/base/PathUtil.h"
#include "packer/ByteSource.h"
#include "packer/FileKinds.h"
#include "packer/Text.h"
#include "packer/check/Statement.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kLargestMode = 255;
constexpr const char* kManifestEnding = ".manifest";

class ManifestReader {
 public:
  ManifestReader(const std::string& path, const SearchPath& searchPath, Findings& findings)
      : searchPath_(searchPath), findings_(findings) {
    manifest_.path = path;
  }

  Manifest read();

 private:
  void error(int line, const char* name, const std::string& text) {
    findings_.error(manifest_.path, line, name, text);
  }
  [[nodiscard]] SString besideManifest(const SString& path) const;
  [[nodiscard]] SString resolve(const SString& path) const;
  void readMode();
  void readFile(const TextValue& value);
  void checkName(const PackedFile& file);
  void checkFile(const PackedFile& file);
  [[nodiscard]] std::string nearestFile(const std::string& path) const;
  void checkIds();
  void numberTheRest();

  const SearchPath& searchPath_;
  Findings& findings_;
  Manifest manifest_;
  std::set<std::size_t> unnumbered_;
  std::map<std::string, int> lineOfName_;
};

Manifest ManifestReader::read() {
  manifest_.text =
      readTagText(manifest_.path, readTextInput(manifest_.path), TextKind::Manifest, findings_);
  if (!manifest_.text.isReadable()) return manifest_;
  const SString output = sstr(manifest_.text.textOf("OUTPUT"));
  const SString launcher = sstr(manifest_.text.textOf("LAUNCHER"));
  if (!output.isEmpty()) manifest_.output = besideManifest(output);
  if (!launcher.isEmpty()) manifest_.launcher = resolve(launcher);
  manifest_.align = manifest_.text.textOf("ALIGN") != "0";
  readMode();
  if (manifest_.text.find("FILES") == nullptr) error(1, "no-files", "there is no FILES tag");
  for (const TextValue& value : manifest_.text.valuesOf("FILES")) readFile(value);
  checkIds();
  numberTheRest();
  return manifest_;
}

SString ManifestReader::besideManifest(const SString& path) const {
  if (path.view().starts_with(kPathSeparator)) return path;
  return joinPath(directoryOf(sstr(manifest_.path)), path);
}

SString ManifestReader::resolve(const SString& path) const {
  SString nearest = besideManifest(path);
  if (fileExists(nearest) || path.view().starts_with(kPathSeparator)) return nearest;
  for (const SString& directory : searchPath_) {
    SString candidate = joinPath(directory, path);
    if (fileExists(candidate)) return candidate;
  }
  return nearest;
}

void ManifestReader::readMode() {
  const TextValue* value = manifest_.text.value("MODE");
  if (value == nullptr) return;
  const std::optional<std::int64_t> mode = wholeNumber(value->text);
  if (!mode || *mode < 0 || *mode > kLargestMode) {
    return error(value->line, "bad-mode",
                 "MODE must be a number from 0 to 255, not " + quotedName(value->text));
  }
  manifest_.mode = static_cast<std::uint8_t>(*mode);
}

void ManifestReader::readFile(const TextValue& value) {
  try {
    const ManifestLine line = readManifestLine(value.text);
    const SString path = resolve(sstr(line.path));
    const SString name = line.name.empty() ? fileNameOf(sstr(line.path)) : sstr(line.name);
    PackedFile file{line.type, line.id.value_or(0), path, name, value.line, line.unpacks};
    checkName(file);
    checkFile(file);
    if (!line.id) unnumbered_.insert(manifest_.files.size());
    manifest_.files.push_back(std::move(file));
  } catch (const ManifestMistake& mistake) {
    error(value.line, mistake.name, mistake.text);
  }
}

void ManifestReader::checkName(const PackedFile& file) {
  const std::string flaw = nameFlaw(file.name);
  if (!flaw.empty()) {
    throw ManifestMistake{
        "bad-name", quotedName(file.name) + " cannot be the name of a packed file: it " + flaw};
  }
  const auto [first, isNew] = lineOfName_.emplace(str(file.name), file.line);
  if (isNew) return;
  throw ManifestMistake{"repeated-name",
                        "two files are called " + quotedName(file.name) + ", the first in line " +
                            std::to_string(first->second) + "; give one another name"};
}

/// Whether the file is there and can be read. One that is not keeps its place and number.
void ManifestReader::checkFile(const PackedFile& file) {
  const std::string path = str(file.path);
  if (!fileExists(file.path)) {
    return error(file.line, "missing-file",
                 "there is no file " + quotedName(path) + nearestFile(path));
  }
  try {
    static_cast<void>(ByteSource(path));
  } catch (const LauncherException& reason) {
    error(file.line, "unreadable-file", str(reason.message()));
  }
}

/// The file in the same directory that may have been meant.
std::string ManifestReader::nearestFile(const std::string& path) const {
  const fs::path directory = fs::path(path).parent_path();
  std::error_code unknown;
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory.empty() ? "." : directory, unknown)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return suggestion(fs::path(path).filename().string(), names);
}

void ManifestReader::checkIds() {
  std::map<std::uint32_t, int> lineOfId;
  for (std::size_t i = 0; i < manifest_.files.size(); ++i) {
    if (unnumbered_.contains(i)) continue;
    const PackedFile& file = manifest_.files[i];
    const auto [first, isNew] = lineOfId.emplace(file.id, file.line);
    if (isNew) continue;
    error(file.line, "repeated-id",
          "id " + std::to_string(file.id) + " is used twice, first in line " +
              std::to_string(first->second));
  }
}

void ManifestReader::numberTheRest() {
  std::set<std::uint32_t> taken;
  for (std::size_t i = 0; i < manifest_.files.size(); ++i) {
    if (!unnumbered_.contains(i)) taken.insert(manifest_.files[i].id);
  }
  std::uint32_t next = 1;
  for (const std::size_t i : unnumbered_) {
    while (taken.contains(next)) ++next;
    manifest_.files[i].id = next++;
  }
}

}  // namespace

std::string manifestAt(const std::string& path) {
  std::error_code unknown;
  if (path == kStandardStream || !fs::is_directory(path, unknown)) return path;
  std::vector<std::string> found;
  for (const auto& entry : fs::directory_iterator(path, unknown)) {
    if (entry.path().extension() == kManifestEnding) found.push_back(entry.path().string());
  }
  if (unknown) throw failure(printable(path) + ": " + unknown.message());
  if (found.size() == 1) return found.front();
  if (found.empty()) throw failure(printable(path) + ": there is no file *.manifest in it");
  std::sort(found.begin(), found.end());
  throw failure(printable(path) + ": name one of the manifests in it, " + printable(found[0]) +
                " or " + printable(found[1]));
}

Manifest readManifest(const std::string& path, const SearchPath& searchPath, Findings& findings) {
  return ManifestReader(path, searchPath, findings).read();
}

}  // namespace vessant
