#include "packer/ContentCheck.h"

#include <algorithm>
#include <string>
#include <vector>

#include "packer/Manifest.h"
#include "packer/TagLoading.h"
#include "packer/Text.h"

namespace vessant {
namespace {

class ContentCheck {
 public:
  ContentCheck(const Installer& installer, const ReadWatch& watch, Findings& findings)
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
  const ReadWatch& watch_;
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
    loadTags(tags, str(entry.fileName), text);
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
  const ReadWatch inside = [this, &entry](std::uint64_t position, std::string_view read) {
    if (watch_) watch_(entry.offset + position, read);
  };
  const std::string flaw = archiveFlaw(bytes, *place, inside);
  if (!flaw.empty()) error(entry, 0, "bad-archive", flaw);
}

}  // namespace

void checkContents(const Installer& installer, const ReadWatch& watch, Findings& findings) {
  std::vector<const FileIndexEntry*> order;
  for (const FileIndexEntry& entry : installer.entries()) order.push_back(&entry);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto* a, const auto* b) { return a->offset < b->offset; });
  ContentCheck check(installer, watch, findings);
  for (const FileIndexEntry* entry : order) check.check(*entry);
}

}  // namespace vessant
