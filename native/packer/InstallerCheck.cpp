#include "packer/InstallerCheck.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "launcher/archive/LauncherFormat.h"
#include "packer/FileKinds.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// A stretch of the installer that belongs to somebody.
struct Claim {
  std::uint64_t start;
  std::uint64_t end;
  /// Null: the file index.
  const FileIndexEntry* owner;
};

std::string nameOf(const FileIndexEntry* owner) {
  return owner == nullptr ? "the file index" : quotedName(owner->fileName);
}

class StructureCheck {
 public:
  StructureCheck(const Installer& installer, Findings& findings)
      : installer_(installer), findings_(findings) {}

  void run();

 private:
  void error(const char* name, const std::string& text) {
    findings_.error(installer_.path(), 0, name, text);
  }
  void checkBounds();
  void checkOverlaps();
  [[nodiscard]] bool mayRepeatNames() const;
  void checkNames();
  void checkIds();
  void checkEnd();
  [[nodiscard]] std::vector<Claim> claims() const;

  const Installer& installer_;
  Findings& findings_;
};

void StructureCheck::run() {
  if (!installer_.isInstaller()) {
    return error("no-installer", "this is no installer: it carries no files");
  }
  if (installer_.flaw()) error(installer_.flaw()->name, installer_.flaw()->text);
  if (installer_.launcher().length() == 0) {
    error("no-launcher", "there is no launcher in front of the files");
  }
  checkBounds();
  checkOverlaps();
  checkNames();
  checkIds();
  if (!installer_.flaw()) checkEnd();
}

void StructureCheck::checkBounds() {
  for (const FileIndexEntry& entry : installer_.entries()) {
    if (installer_.isWithin(entry)) continue;
    error("file-beyond-end",
          quotedName(entry.fileName) + " would lie from " + std::to_string(entry.offset) + " to " +
              std::to_string(std::uint64_t{entry.offset} + entry.length) +
              ", but the installer has only " + std::to_string(installer_.size()) + " bytes");
  }
}

std::vector<Claim> StructureCheck::claims() const {
  std::vector<Claim> claims;
  claims.reserve(installer_.entries().size() + 1);
  for (const FileIndexEntry& entry : installer_.entries()) {
    const std::uint64_t start = entry.offset;
    if (entry.length == 0) continue;
    claims.push_back({start, start + entry.length, &entry});
  }
  claims.push_back({installer_.indexOffset(), installer_.size(), nullptr});
  const auto isInFront = [](const Claim& a, const Claim& b) { return a.start < b.start; };
  if (!std::is_sorted(claims.begin(), claims.end(), isInFront)) {  // vspack packs them in order
    std::stable_sort(claims.begin(), claims.end(), isInFront);
  }
  return claims;
}

void StructureCheck::checkOverlaps() {
  const std::vector<Claim> all = claims();
  const Claim* furthest = &all.front();
  for (std::size_t i = 1; i < all.size(); ++i) {
    if (all[i].start < furthest->end) {
      error("file-overlap", nameOf(all[i].owner) + " begins at " + std::to_string(all[i].start) +
                                ", inside of " + nameOf(furthest->owner));
    }
    if (all[i].end > furthest->end) furthest = &all[i];
  }
}

/// Told by sorted hashes, which takes a tenth of the memory of a set of thousands of names.
bool StructureCheck::mayRepeatNames() const {
  std::vector<std::size_t> hashes;
  hashes.reserve(installer_.entries().size());
  for (const FileIndexEntry& entry : installer_.entries()) {
    hashes.push_back(std::hash<std::string_view>()(entry.fileName));
  }
  std::sort(hashes.begin(), hashes.end());
  return std::adjacent_find(hashes.begin(), hashes.end()) != hashes.end();
}

void StructureCheck::checkNames() {
  for (const FileIndexEntry& entry : installer_.entries()) {
    const std::string flaw = nameFlaw(entry.fileName);
    if (flaw.empty()) continue;
    error("hostile-name", quotedName(entry.fileName) + " cannot be extracted: the name " + flaw);
  }
  if (!mayRepeatNames()) return;
  std::unordered_set<std::string_view> names;
  std::unordered_set<std::string_view> repeated;
  for (const FileIndexEntry& entry : installer_.entries()) {
    const std::string_view name = entry.fileName;
    if (!names.insert(name).second && repeated.insert(name).second) {
      error("repeated-name", "two files are called " + quotedName(name));
    }
  }
}

/// The launcher takes the first.
void StructureCheck::checkIds() {
  const auto isBehind = [](const FileIndexEntry& a, const FileIndexEntry& b) {
    return a.fileId >= b.fileId;
  };
  const std::vector<FileIndexEntry>& entries = installer_.entries();
  // Numbers that vspack gave rise from file to file.
  if (std::adjacent_find(entries.begin(), entries.end(), isBehind) == entries.end()) return;
  std::unordered_set<std::uint32_t> ids;
  std::unordered_set<std::uint32_t> repeated;
  for (const FileIndexEntry& entry : installer_.entries()) {
    if (!ids.insert(entry.fileId).second && repeated.insert(entry.fileId).second) {
      error("repeated-id", "two files have the id " + std::to_string(entry.fileId));
    }
  }
}

void StructureCheck::checkEnd() {
  const std::uint64_t end = installer_.size() - kModeByteDistance;
  if (installer_.indexEnd() == end) return;
  findings_.warning(installer_.path(), 0, "unread-bytes",
                    std::to_string(end - installer_.indexEnd()) +
                        " bytes behind the file index are read by nobody");
}

class ContentCheck {
 public:
  ContentCheck(const Installer& installer, const ArchiveReader::Watch& watch, Findings& findings)
      : installer_(installer), watch_(watch), findings_(findings) {}

  void check(const FileIndexEntry& entry);

 private:
  void error(const FileIndexEntry& entry, int line, const char* name, const std::string& text) {
    findings_.error(str(entry.fileName), line, name, text);
  }
  void checkText(const FileIndexEntry& entry);
  void checkEnd(const FileIndexEntry& entry, const std::string& text);
  void checkArchive(const FileIndexEntry& entry);

  const Installer& installer_;
  const ArchiveReader::Watch& watch_;
  Findings& findings_;
};

void ContentCheck::check(const FileIndexEntry& entry) {
  if (isTextType(entry.type)) {
    checkText(entry);
  } else if (entry.type != FileType::EmbeddedLauncher) {
    checkArchive(entry);
  }
}

void ContentCheck::checkText(const FileIndexEntry& entry) {
  if (entry.length > ByteSource::kLargestText) {
    return error(entry, 0, "text-too-large", "is too large for a text file");
  }
  const std::string text = installer_.textOf(entry);
  if (watch_) watch_(entry.offset, text);
  checkEnd(entry, text);
  TagFile tags;
  try {
    installer_.loadTags(entry, tags);
  } catch (const LauncherException& flaw) {
    error(entry, tags.lineNumber(), "syntax-error", str(flaw.message()));
  }
}

/// The launcher reads whole lines.
void ContentCheck::checkEnd(const FileIndexEntry& entry, const std::string& text) {
  if (text.empty() || text.back() == '\n') return;
  const std::uint64_t end = std::uint64_t{entry.offset} + entry.length;
  if (installer_.bytes().bytesAt(end, 1) == "\n") return;
  const int lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
  error(entry, lines, "unfinished-text",
        "the last line has no line break, so that the launcher reads on into what lies behind");
}

void ContentCheck::checkArchive(const FileIndexEntry& entry) {
  const ByteSource bytes = installer_.bytesOf(entry);
  const auto place = findArchive(bytes);
  const std::string name = str(entry.fileName);
  if (!place) {
    const bool shouldBeZip = name.ends_with(".jar") || name.ends_with(".zip");
    if (shouldBeZip) error(entry, 0, "bad-archive", "is no zip file, or is not whole");
    return;
  }
  const std::uint64_t start = entry.offset + place->offset;
  ArchiveReader reader(bytes.part(place->offset, bytes.length() - place->offset, bytes.label()),
                       place->format, [this, start](std::uint64_t position, std::string_view read) {
                         if (watch_) watch_(start + position, read);
                       });
  std::string member;
  while (const std::optional<ArchiveMember> next = reader.next()) {
    member = next->name;
    reader.check();
  }
  if (reader.flaw().empty()) return;
  const std::string reason = printable(reader.flaw());
  error(entry, 0, "bad-archive",
        member.empty() ? reason : quotedName(member) + " in it: " + reason);
}

}  // namespace

void checkStructure(const Installer& installer, Findings& findings) {
  StructureCheck(installer, findings).run();
}

void checkContents(const Installer& installer, const ArchiveReader::Watch& watch,
                   Findings& findings) {
  std::vector<const FileIndexEntry*> order;
  for (const FileIndexEntry& entry : installer.entries()) order.push_back(&entry);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto* a, const auto* b) { return a->offset < b->offset; });
  ContentCheck check(installer, watch, findings);
  for (const FileIndexEntry* entry : order) check.check(*entry);
}

}  // namespace vessant
