#include "packer/Installer.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/Handles.h"
#include "packer/Session.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// Type, id, length, offset, name length and flag: an entry without a name.
constexpr std::uint64_t kSmallestEntry = 16;
constexpr std::size_t kCountSize = 4;

std::uint32_t numberAt(const std::string& bytes, std::size_t position) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number = number << 8U | static_cast<unsigned char>(bytes.at(position + i));
  }
  return number;
}

std::string entryText(std::size_t number) {
  return "entry " + std::to_string(number) + " of the file index: ";
}

}  // namespace

Installer::Installer(const std::string& path) : file_(path) {
  readTrailer();
  if (isInstaller_) readIndex();
}

void Installer::requireIndex() const {
  if (!isInstaller_) throw failure(printable(path()) + ": is no installer: it carries no files");
  if (flaw_) throw failure(printable(path()) + ": " + flaw_->text);
}

void Installer::readTrailer() {
  if (size() < kModeByteDistance) return;
  const std::string end = file_.bytesAt(size() - kModeByteDistance, kModeByteDistance);
  if (end.size() < kModeByteDistance) return;
  modeByte_ = static_cast<unsigned char>(end.front());
  indexOffset_ = numberAt(end, 1);
  isInstaller_ = numberAt(end, 5) == kIdentification;
}

/// The bounds are known before the first entry is read: what the count promises must fit between
/// the index's start and the mode byte.
void Installer::readIndex() {
  const std::uint64_t end = size() - kModeByteDistance;
  if (indexOffset_ + kCountSize > end) {
    flaw_ = {"index-offset", "the file index would begin at " + std::to_string(indexOffset_) +
                                 ", beyond the end of the file"};
    return;
  }
  const std::string index =
      file_.bytesAt(indexOffset_, std::min<std::uint64_t>(end - indexOffset_, kLargestIndex));
  if (index.size() < kCountSize) throw failure(printable(path()) + ": ends early");
  const std::uint32_t count = numberAt(index, 0);
  if (count > kMostFiles || count * kSmallestEntry > index.size() - kCountSize) {
    flaw_ = {"file-count", "the file index promises " + std::to_string(count) +
                               " files, for which it has no room"};
    return;
  }
  indexEnd_ = indexOffset_ + kCountSize;
  if (count == 0) return;
  std::string entries = index.substr(kCountSize);
  const StdFile stream(::fmemopen(entries.data(), entries.size(), "rb"));
  if (stream == nullptr) throw failure(printable(path()) + ": the index cannot be read");
  readEntries(stream.get(), count);
}

/// With the launcher's own reader, over a copy that ends in front of the mode byte.
void Installer::readEntries(std::FILE* stream, std::uint32_t count) {
  const std::uint64_t start = indexEnd_;
  entries_.reserve(count);
  for (std::uint32_t i = 1; i <= count; ++i) {
    FileIndexEntry entry;
    try {
      readFileIndexEntry(entry, stream);
    } catch (const LauncherException& error) {
      const char* name = std::feof(stream) != 0 ? "cut-index" : "file-type";
      flaw_ = {name, entryText(i) + str(error.message())};
      return;
    }
    if (std::feof(stream) != 0) {
      flaw_ = {"cut-index", entryText(i) + "it ends in the middle"};
      return;
    }
    indexEnd_ = start + static_cast<std::uint64_t>(std::ftell(stream));
    entries_.push_back(std::move(entry));
  }
}

const FileIndexEntry* Installer::find(const std::string& name) const {
  const auto isNamed = [&name](const FileIndexEntry& e) { return str(e.fileName) == name; };
  auto found = std::find_if(entries_.begin(), entries_.end(), isNamed);
  if (found == entries_.end()) {
    found = std::find_if(entries_.begin(), entries_.end(), [&name](const FileIndexEntry& e) {
      return std::to_string(e.fileId) == name;
    });
  }
  return found == entries_.end() ? nullptr : &*found;
}

ByteSource Installer::launcher() const {
  std::uint64_t end = isInstaller_ ? std::min<std::uint64_t>(indexOffset_, size()) : size();
  for (const FileIndexEntry& entry : entries_) end = std::min<std::uint64_t>(end, entry.offset);
  return file_.part(0, end, path());
}

bool Installer::isWithin(const FileIndexEntry& entry) const {
  return std::uint64_t{entry.offset} + entry.length <= size();
}

ByteSource Installer::bytesOf(const FileIndexEntry& entry) const {
  if (!isWithin(entry)) {
    throw failure(printable(path()) + ": " + quotedName(entry.fileName) +
                  " lies beyond the end of the file");
  }
  return file_.part(entry.offset, entry.length, path() + ": " + str(entry.fileName));
}

std::string Installer::textOf(const FileIndexEntry& entry) const {
  return bytesOf(entry).text();
}

const FileIndexEntry& Installer::require(const std::string& name) const {
  const FileIndexEntry* entry = find(name);
  if (entry != nullptr) return *entry;
  std::vector<std::string> names;
  for (const FileIndexEntry& other : entries_) names.push_back(str(other.fileName));
  throw failure(printable(path()) + ": carries no file " + quotedName(name) +
                suggestion(name, names));
}

void Installer::loadTags(const FileIndexEntry& entry, TagFile& tags) const {
  std::string text = textOf(entry);
  if (text.empty()) return;
  const StdFile stream(::fmemopen(text.data(), text.size(), "rb"));
  if (stream == nullptr) throw failure(printable(path()) + ": a text cannot be read");
  NoLog log;
  tags.load(stream.get(), entry.fileName, 0, entry.length, log);
}

}  // namespace vessant
