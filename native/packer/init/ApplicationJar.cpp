#include "packer/init/ApplicationJar.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string_view>

#include "packer/ArchiveReader.h"
#include "packer/ByteSource.h"
#include "packer/MappedBytes.h"
#include "packer/Text.h"
#include "packer/check/JarFile.h"
#include "packer/jvm/JavaRange.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

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
  const MappedBytes mapped(jar);
  ArchiveReader reader(mapped.bytes(), ArchiveFormat::Zip);
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

std::string chooseMain(const std::string& path, const JarFile& jar, const std::string& chosen) {
  std::string name = trimmed(chosen.empty() ? jar.mainClass : chosen);
  if (name.empty()) {
    throw failure(path + ": its manifest names no Main-Class; name the class to start with --main");
  }
  checkClassName(name);
  if (!jar.holdsClass(name)) throw failure(path + ": has no class " + quotedName(name));
  return name;
}

}  // namespace

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

std::string safeFileName(const std::string& name) {
  constexpr std::string_view kMarks = "._-";
  std::string safe;
  for (const char character : name) {
    const bool isSafe = kAlphanumeric.find(character) != std::string_view::npos ||
                        kMarks.find(character) != std::string_view::npos;
    if (isSafe || !safe.ends_with('-')) safe += isSafe ? character : '-';
  }
  const std::size_t first = safe.find_first_not_of("-.");
  if (first == std::string::npos) return "";
  return safe.substr(first, safe.find_last_not_of("-.") + 1 - first);
}

}  // namespace vessant
