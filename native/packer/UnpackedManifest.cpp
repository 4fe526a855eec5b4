#include "packer/UnpackedManifest.h"

#include <filesystem>
#include <vector>

#include "packer/FileKinds.h"
#include "packer/LauncherFileWriter.h"
#include "packer/Text.h"

namespace vessant {
namespace {

bool endsWithoutLineBreak(const ByteSource& bytes) {
  return bytes.length() > 0 && bytes.bytesAt(bytes.length() - 1, 1) != "\n";
}

/// Between double quotes, with those inside doubled.
std::string inQuotes(const std::string& text) {
  std::string result = "\"";
  for (const char character : text) {
    result += character;
    if (character == '"') result += character;
  }
  return result + '"';
}

/// As one word where that is possible.
std::string asField(const std::string& text) {
  const bool isPlain = text.find_first_of(" \t\"") == std::string::npos &&
                       !text.starts_with("unpacks=") &&
                       text.find_first_not_of("0123456789") != std::string::npos;
  return isPlain ? text : inQuotes(text);
}

/// The installer's own name, where files can be called after it.
std::string stemOf(const std::string& path) {
  constexpr const char* kLongestEnding = ".manifest";
  const std::string name = std::filesystem::path(path).filename().string();
  return nameFlaw(name + kLongestEnding).empty() ? name : "installer";
}

std::string lineOf(const FileIndexEntry& entry) {
  std::string line = "  " + std::string(fileTypeName(entry.type)) + " " +
                     std::to_string(entry.fileId) + " " + asField(str(entry.fileName));
  if (entry.hasSizeInformation) {
    line += " unpacks=" + std::to_string(entry.expandedFileCount) + ":" +
            std::to_string(entry.expandedSize);
  }
  return line + "\n";
}

}  // namespace

UnpackedManifest::UnpackedManifest(const Installer& installer)
    : installer_(installer), name_(freeName(".manifest")), launcherName_(freeName(".launcher")) {
  align_ = isLaidOut(true);
  plain_ = !align_ && isLaidOut(false);
}

std::string UnpackedManifest::freeName(const std::string& ending) const {
  std::string name = stemOf(installer_.path()) + ending;
  while (installer_.find(name) != nullptr) name.insert(0, "_");
  return name;
}

std::string UnpackedManifest::text() const {
  std::string text = "OUTPUT: " + inQuotes(stemOf(installer_.path())) +
                     "\nLAUNCHER: " + inQuotes(launcherName_) +
                     "\nMODE: " + std::to_string(installer_.modeByte()) + "\n";
  if (plain_) text += "ALIGN: 0\n";
  text += "FILES:\n";
  for (const FileIndexEntry& entry : installer_.entries()) text += lineOf(entry);
  return text + "/:\n";
}

bool UnpackedManifest::isLaidOut(bool align) const {
  std::vector<PlacedPart> parts;
  for (const FileIndexEntry& entry : installer_.entries()) {
    const bool isOpen = isTextType(entry.type) && endsWithoutLineBreak(installer_.bytesOf(entry));
    parts.push_back({entry.length, isOpen});
  }
  const Layout layout = layOut(installer_.launcher().length(), parts, align);
  std::uint64_t end = installer_.launcher().length();
  bool lineBreak = false;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    constexpr std::uint32_t kLargestId = 0x7FFFFFFFU;
    const std::uint64_t start = installer_.entries()[i].offset;
    if (installer_.entries()[i].fileId > kLargestId) return false;
    if (start != layout.offsets[i] || !isGapWritten(end, start, lineBreak)) return false;
    end = start + parts[i].length;
    lineBreak = parts[i].needsLineBreak;
  }
  return layout.indexOffset == installer_.indexOffset() &&
         isGapWritten(end, layout.indexOffset, lineBreak) &&
         installer_.indexEnd() + kModeByteDistance == installer_.size();
}

/// Whether the bytes between two files are those that vspack writes there.
bool UnpackedManifest::isGapWritten(std::uint64_t start, std::uint64_t end, bool lineBreak) const {
  if (end - start > kAlignment) return false;
  std::string written(end - start, '\0');
  if (lineBreak) written.front() = '\n';
  return installer_.bytes().bytesAt(start, end - start) == written;
}

}  // namespace vessant
