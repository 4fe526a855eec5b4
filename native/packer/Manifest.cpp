#include "packer/Manifest.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "launcher/base/ArgumentReader.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {
namespace {

constexpr std::size_t kLongestName = std::numeric_limits<std::int16_t>::max();
constexpr std::int32_t kLargestMode = 255;
/// The file that an installer writes next to its files when it is asked to extract them.
constexpr std::string_view kReservedName = "input.tag";

// In the order of the type numbers.
constexpr const char* kTypeNames[] = {
    "instructions",  "jvm",          "launch-script", "archive",
    "jvm-installer", "verification", "application",   "launcher",
};

std::optional<FileType> typeNamed(const SString& name) {
  for (int type = 0; type <= kLastFileType; ++type) {
    if (name == kTypeNames[type]) return static_cast<FileType>(type);
  }
  return std::nullopt;
}

/// Reads one word or one quoted text off a line; empty when none is left.
SString nextField(const SString& line, SString::Size& position) {
  const SString::Size start = line.findFirstNotOf(kWhitespace, position);
  if (start == SString::npos) {
    position = line.length();
    return "";
  }
  SString field;
  position = start;
  if (line.at(start) != '"') {
    nextWord(field, line, position);
    return field;
  }
  ++position;
  nextArgument(field, line, position, ArgumentForm::Quoted);
  position = std::min(position, line.length());
  return field;
}

class ManifestReader {
 public:
  ManifestReader(const SString& path, const SearchPath& searchPath, LogSink& log)
      : path_(path), searchPath_(searchPath), tags_(path, log) {}

  Manifest read();

 private:
  [[noreturn]] void fail(const SString& reason) const;
  [[nodiscard]] SString resolve(const SString& path) const;
  [[nodiscard]] std::uint8_t readMode() const;
  [[nodiscard]] PackedFile readFileLine(const SString& line) const;
  [[nodiscard]] std::uint32_t readId(const SString& text) const;
  void checkName(const SString& name) const;
  void checkUnique(const Manifest& manifest, const PackedFile& file) const;

  const SString& path_;
  const SearchPath& searchPath_;
  TagFile tags_;
  std::int32_t line_ = 0;  // of FILES; 0 elsewhere
};

Manifest ManifestReader::read() {
  Manifest manifest;
  const SString output = tags_.getValue("OUTPUT");
  const SString launcher = tags_.getValue("LAUNCHER");
  if (!output.isEmpty()) manifest.output = joinPath(directoryOf(path_), output);
  if (output.view().starts_with(kPathSeparator)) manifest.output = output;
  if (!launcher.isEmpty()) manifest.launcher = resolve(launcher);
  manifest.mode = readMode();
  const StringDeque* lines = tags_.findValues("FILES");
  if (lines == nullptr) fail("there is no FILES tag");
  for (const SString& line : *lines) {
    ++line_;
    const PackedFile file = readFileLine(line);
    checkUnique(manifest, file);
    manifest.files.push_back(file);
  }
  return manifest;
}

void ManifestReader::fail(const SString& reason) const {
  const SString place = line_ == 0 ? SString() : ": FILES line " + longToString(line_);
  throw LauncherException(path_ + place + ": " + reason);
}

SString ManifestReader::resolve(const SString& path) const {
  if (path.view().starts_with(kPathSeparator)) return path;
  SString besideManifest = joinPath(directoryOf(path_), path);
  if (fileExists(besideManifest)) return besideManifest;
  for (const SString& directory : searchPath_) {
    SString candidate = joinPath(directory, path);
    if (fileExists(candidate)) return candidate;
  }
  return besideManifest;
}

std::uint8_t ManifestReader::readMode() const {
  const SString text = tags_.getValue("MODE");
  std::int32_t mode = 0;
  if (!text.isEmpty() && (!stringToLong(text, mode) || mode < 0 || mode > kLargestMode)) {
    fail("MODE must be a number from 0 to 255, not " + quoted(text));
  }
  return static_cast<std::uint8_t>(mode);
}

PackedFile ManifestReader::readFileLine(const SString& line) const {
  SString::Size position = 0;
  const SString kind = nextField(line, position);
  const std::optional<FileType> type = typeNamed(kind);
  if (!type) fail("unknown kind of file " + quoted(kind));
  const std::uint32_t id = readId(nextField(line, position));
  const SString path = nextField(line, position);
  if (path.isEmpty()) fail("a path must follow the id");
  const SString ownName = nextField(line, position);
  if (!nextField(line, position).isEmpty()) fail("there is more than kind, id, path and name");
  const SString name = ownName.isEmpty() ? fileNameOf(path) : ownName;
  checkName(name);
  const SString resolved = resolve(path);
  if (!fileExists(resolved)) fail("there is no file " + quoted(resolved));
  if (isDirectory(resolved)) fail(quoted(resolved) + " is a directory");
  return {*type, id, resolved, name};
}

/// Scripts read ids as signed numbers, so those above their range could not be named.
std::uint32_t ManifestReader::readId(const SString& text) const {
  std::int32_t id = 0;
  const bool isNumber = !text.isEmpty() && text.findFirstNotOf("0123456789") == SString::npos;
  if (!isNumber || !stringToLong(text, id) || longToString(id) != text) {
    fail("the id must be a number from 0 to 2147483647, not " + quoted(text));
  }
  return static_cast<std::uint32_t>(id);
}

void ManifestReader::checkName(const SString& name) const {
  const bool isUsable = !name.isEmpty() && name != "." && name != ".." &&
                        name.find('/') == SString::npos && name.find('\n') == SString::npos &&
                        name.length() <= kLongestName && name != kReservedName;
  if (!isUsable) fail(quoted(name) + " cannot be the name of a packed file");
}

void ManifestReader::checkUnique(const Manifest& manifest, const PackedFile& file) const {
  for (const PackedFile& other : manifest.files) {
    if (other.id == file.id) fail("id " + longToString(file.id) + " is used twice");
    if (other.name == file.name) {
      fail("two files are called " + quoted(file.name) + "; give one another name");
    }
  }
}

}  // namespace

const char* fileTypeName(FileType type) {
  return kTypeNames[static_cast<int>(type)];
}

Manifest readManifest(const SString& path, const SearchPath& searchPath, LogSink& log) {
  return ManifestReader(path, searchPath, log).read();
}

}  // namespace vessant
