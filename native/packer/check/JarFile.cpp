#include "packer/check/JarFile.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string_view>

#include "packer/ArchiveReader.h"
#include "packer/Text.h"
#include "packer/jvm/JvmFileText.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

constexpr const char* kManifestName = "META-INF/MANIFEST.MF";
constexpr std::size_t kLongestManifest = 1U << 20U;

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && editDistance(a, b) == 0;
}

// The central directory's layout, from the ZIP file format specification (APPNOTE.TXT). All numbers
// are little-endian.
constexpr std::string_view kDirectoryEnd = "PK\x05\x06";
constexpr std::size_t kDirectoryEndSize = 22;
constexpr std::size_t kLongestComment = 0xFFFF;
constexpr std::string_view kDirectoryEntry = "PK\x01\x02";
constexpr std::size_t kDirectoryEntrySize = 46;
constexpr std::uint64_t kMostEntries = 0xFFFF;
/// Larger than any that people make: it is read into memory.
constexpr std::uint64_t kLargestDirectory = 1U << 26U;

std::uint64_t numberAt(std::string_view bytes, std::size_t position, int size) {
  std::uint64_t number = 0;
  for (int i = size - 1; i >= 0; --i) {
    number =
        number << 8U | static_cast<unsigned char>(bytes[position + static_cast<std::size_t>(i)]);
  }
  return number;
}

struct DirectoryEntry {
  std::string name;
  std::uint64_t offset;
};

using Directory = std::vector<DirectoryEntry>;

/// The entries of a directory; nothing when they do not fill it.
std::optional<Directory> readEntries(std::string_view directory, std::uint64_t count) {
  Directory entries;
  for (std::uint64_t i = 0; i < count; ++i) {
    if (directory.size() < kDirectoryEntrySize) return std::nullopt;
    if (!directory.starts_with(kDirectoryEntry)) return std::nullopt;
    const std::size_t nameSize = numberAt(directory, 28, 2);
    const std::size_t size =
        kDirectoryEntrySize + nameSize + numberAt(directory, 30, 2) + numberAt(directory, 32, 2);
    if (directory.size() < size) return std::nullopt;
    entries.push_back(
        {std::string(directory.substr(kDirectoryEntrySize, nameSize)), numberAt(directory, 42, 4)});
    directory.remove_prefix(size);
  }
  return entries;
}

/// The directory of an ordinary zip file, in time that no member adds to. Nothing for other files:
/// those with something in front, with more entries than fit, and those that are no zip files.
std::optional<Directory> readDirectory(const ByteSource& file) {
  const std::uint64_t tailStart =
      file.length() - std::min<std::uint64_t>(file.length(), kLongestComment + kDirectoryEndSize);
  const std::string tail = file.bytesAt(tailStart, kLongestComment + kDirectoryEndSize);
  const std::size_t end = tail.rfind(kDirectoryEnd);
  if (end == std::string::npos || tail.size() - end < kDirectoryEndSize) return std::nullopt;
  const std::uint64_t count = numberAt(tail, end + 10, 2);
  const std::uint64_t size = numberAt(tail, end + 12, 4);
  const std::uint64_t start = numberAt(tail, end + 16, 4);
  if (start + size != tailStart + end || count == kMostEntries) return std::nullopt;
  if (size > kLargestDirectory) return std::nullopt;
  return readEntries(file.bytesAt(start, size), count);
}

void readManifest(JarFile& jar, const std::string& manifest) {
  jar.mainClass = manifestAttribute(manifest, "Main-Class");
  jar.classPath = manifestAttribute(manifest, "Class-Path");
}

/// libarchive reads every form there is, and says what is wrong with the others.
void readUnusual(JarFile& jar, const ByteSource& bytes) {
  ArchiveReader reader(bytes, ArchiveFormat::Zip);
  while (const std::optional<ArchiveMember> member = reader.next()) {
    if (member->name == kManifestName) readManifest(jar, reader.contents(kLongestManifest));
    jar.names.push_back(member->name);
  }
  jar.flaw = reader.flaw();
}

constexpr std::string_view kAlphanumeric =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

// The class file format: four bytes that every class begins with, then the version.
constexpr std::string_view kClassMagic = "\xCA\xFE\xBA\xBE";
constexpr std::size_t kMajorVersion = 6;
constexpr std::size_t kClassHead = 8;
/// Java 1 has 45, each later one one more.
constexpr int kMajorOfJava0 = 44;

bool isClassCharacter(char character) {
  constexpr std::string_view kMarks = "_$.";
  return kAlphanumeric.find(character) != std::string_view::npos ||
         kMarks.find(character) != std::string_view::npos ||
         static_cast<unsigned char>(character) >= 0x80;
}

void checkClassName(const std::string& name) {
  if (name.find('/') != std::string::npos) {
    throw failure(quotedName(name) + ": a class is named with dots, not with slashes");
  }
  if (std::all_of(name.begin(), name.end(), isClassCharacter)) return;
  throw failure(quotedName(name) + " is no name of a class");
}

/// What the jar's manifest wants beside the jar would not travel with it.
void checkClassPath(const std::string& path, const std::string& classPath) {
  std::istringstream entries(classPath);
  for (std::string entry; entries >> entry;) {
    if (!fs::exists(fs::path(path).parent_path() / entry)) continue;
    throw failure(path + ": its Class-Path needs " + quotedName(entry) +
                  ", which would not travel with it: make one jar of both");
  }
}

std::string readMember(const ByteSource& jar, const std::string& name) {
  ArchiveReader reader(jar, ArchiveFormat::Zip);
  while (const std::optional<ArchiveMember> member = reader.next()) {
    if (member->name == name) return reader.contents(kClassHead);
  }
  return "";
}

std::string fileOfClass(std::string name) {
  std::replace(name.begin(), name.end(), '.', '/');
  return name + ".class";
}

std::string trimmed(const std::string& text) {
  constexpr const char* kBlanks = " \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// The names of its classes, with dots.
std::vector<std::string> classesOf(const JarFile& jar) {
  constexpr std::string_view kEnd = ".class";
  std::vector<std::string> classes;
  for (const std::string& name : jar.names) {
    if (!name.ends_with(kEnd)) continue;
    classes.push_back(name.substr(0, name.size() - kEnd.size()));
    std::replace(classes.back().begin(), classes.back().end(), '/', '.');
  }
  return classes;
}

std::string chooseMain(const std::string& path, const JarFile& jar, const std::string& chosen) {
  std::string name = trimmed(chosen.empty() ? jar.mainClass : chosen);
  if (name.empty()) {
    throw failure(path + ": its manifest names no Main-Class; name the class to start with --main");
  }
  checkClassName(name);
  if (!jar.holdsClass(name)) {
    throw failure(path + ": has no class " + quotedName(name) + suggestion(name, classesOf(jar)));
  }
  return name;
}

}  // namespace

bool JarFile::holdsClass(const std::string& className) const {
  std::string path = className;
  std::replace(path.begin(), path.end(), '.', '/');
  return std::find(names.begin(), names.end(), path + ".class") != names.end();
}

JarFile readJarFile(const ByteSource& bytes) {
  JarFile jar;
  const std::optional<Directory> directory = readDirectory(bytes);
  if (!directory) {
    readUnusual(jar, bytes);
    return jar;
  }
  jar.names.reserve(directory->size());
  for (const DirectoryEntry& entry : *directory) {
    jar.names.emplace_back(entry.name);
    if (entry.name != kManifestName || entry.offset >= bytes.length()) continue;
    ArchiveReader reader(bytes.part(entry.offset, bytes.length() - entry.offset, bytes.label()),
                         ArchiveFormat::ZipMembers);
    if (reader.next()) readManifest(jar, reader.contents(kLongestManifest));
  }
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

ApplicationJar readApplicationJar(const std::string& path, const std::string& chosenMain) {
  const ByteSource bytes(path);
  const JarFile jar = readJarFile(bytes);
  if (!jar.isZip()) throw failure(path + ": is no jar: " + jar.flaw);
  ApplicationJar application{
      .path = path, .mainClass = chooseMain(path, jar, chosenMain), .startsByItself = false};
  application.startsByItself = application.mainClass == trimmed(jar.mainClass);
  checkClassPath(path, jar.classPath);
  application.feature = featureOfClass(readMember(bytes, fileOfClass(application.mainClass)));
  if (application.feature != 0) return application;
  throw failure(path + ": " + quotedName(application.mainClass) + " is no class file");
}

int featureOfClass(const std::string& bytes) {
  if (bytes.size() < kClassHead || !bytes.starts_with(kClassMagic)) return 0;
  const int major = static_cast<unsigned char>(bytes[kMajorVersion]) << 8 |
                    static_cast<unsigned char>(bytes[kMajorVersion + 1]);
  return std::max(major - kMajorOfJava0, JavaRange::kOldest);
}

}  // namespace vessant
