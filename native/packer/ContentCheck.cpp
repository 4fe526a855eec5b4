#include "packer/ContentCheck.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <archive.h>
#include <archive_entry.h>

#include "packer/Manifest.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// An archive in a file, perhaps behind a script that unpacks it.
struct ArchivePlace {
  enum class Form { Zip, Tar };

  Form form;
  /// From the start of the file.
  std::uint64_t offset;
};

constexpr std::size_t kBlockSize = 1U << 16U;
/// The longest script in front of an archive.
constexpr std::size_t kLongestHead = 1U << 16U;
constexpr std::string_view kZipEnd = "PK\x05\x06";
constexpr std::string_view kTarMagic = "ustar";
constexpr std::size_t kTarMagicPlace = 257;
/// The first bytes of what tar files are compressed with: gzip, xz, zstd, bzip2.
constexpr std::string_view kCompressions[] = {"\x1F\x8B\x08",
                                              "\xFD"
                                              "7zXZ",
                                              "\x28\xB5\x2F\xFD", "BZh"};

bool beginsTar(std::string_view bytes) {
  if (bytes.size() > kTarMagicPlace && bytes.substr(kTarMagicPlace).starts_with(kTarMagic)) {
    return true;
  }
  return std::any_of(std::begin(kCompressions), std::end(kCompressions),
                     [bytes](std::string_view magic) { return bytes.starts_with(magic); });
}

/// Whether a zip file's end record ends the file. The letters alone may stand anywhere.
bool endsAsZip(const ByteSource& file) {
  constexpr std::size_t kRecord = 22;
  constexpr std::size_t kLongestEnd = kRecord + 0xFFFF;
  const std::uint64_t start = file.length() - std::min<std::uint64_t>(file.length(), kLongestEnd);
  const std::string end = file.bytesAt(start, kLongestEnd);
  for (std::size_t at = end.rfind(kZipEnd); at != std::string::npos;
       at = end.rfind(kZipEnd, at - 1)) {
    if (at + kRecord <= end.size()) {
      const auto low = static_cast<unsigned char>(end[at + kRecord - 2]);
      const auto high = static_cast<unsigned char>(end[at + kRecord - 1]);
      if (at + kRecord + (std::size_t{high} << 8) + low == end.size()) return true;
    }
    if (at == 0) break;
  }
  return false;
}

/// What libarchive's calls need of a run.
class Reading {
 public:
  Reading(const ByteSource& file, std::uint64_t start, const ReadWatch& watch)
      : file_(file), start_(start), position_(start), watch_(watch) {}

  [[nodiscard]] std::string run(ArchivePlace::Form form);

 private:
  struct Closer {
    void operator()(archive* handle) const { archive_read_free(handle); }
  };

  static la_ssize_t read(archive* handle, void* self, const void** buffer);
  static la_int64_t skip(archive* handle, void* self, la_int64_t count);
  static la_int64_t seek(archive* handle, void* self, la_int64_t offset, int whence);
  void open(ArchivePlace::Form form);
  [[nodiscard]] std::string flawOf(const std::string& member) const;
  [[nodiscard]] std::string readMembers();
  [[nodiscard]] bool readMember();

  const ByteSource& file_;
  std::uint64_t start_;
  std::uint64_t position_;
  const ReadWatch& watch_;
  std::string block_;
  std::unique_ptr<archive, Closer> handle_;
};

/// An exception must not pass through the library.
la_ssize_t Reading::read(archive* handle, void* self, const void** buffer) {
  auto& reading = *static_cast<Reading*>(self);
  try {
    reading.block_ = reading.file_.bytesAt(reading.position_, kBlockSize);
    if (reading.watch_) reading.watch_(reading.position_, reading.block_);
  } catch (const LauncherException& error) {
    archive_set_error(handle, -1, "%s", error.message().cString());
    return -1;
  }
  reading.position_ += reading.block_.size();
  *buffer = reading.block_.data();
  return static_cast<la_ssize_t>(reading.block_.size());
}

la_int64_t Reading::skip(archive* /*handle*/, void* self, la_int64_t count) {
  auto& reading = *static_cast<Reading*>(self);
  const std::uint64_t left = reading.file_.length() - reading.position_;
  const std::uint64_t skipped = std::min(static_cast<std::uint64_t>(count), left);
  reading.position_ += skipped;
  return static_cast<la_int64_t>(skipped);
}

la_int64_t Reading::seek(archive* /*handle*/, void* self, la_int64_t offset, int whence) {
  auto& reading = *static_cast<Reading*>(self);
  const auto length = static_cast<la_int64_t>(reading.file_.length() - reading.start_);
  la_int64_t base = 0;
  if (whence == SEEK_CUR) base = static_cast<la_int64_t>(reading.position_ - reading.start_);
  if (whence == SEEK_END) base = length;
  const la_int64_t target = std::clamp<la_int64_t>(base + offset, 0, length);
  reading.position_ = reading.start_ + static_cast<std::uint64_t>(target);
  return target;
}

void Reading::open(ArchivePlace::Form form) {
  handle_.reset(archive_read_new());
  archive* handle = handle_.get();
  if (handle == nullptr) throw std::bad_alloc();
  if (form == ArchivePlace::Form::Zip) {
    archive_read_support_format_zip_seekable(handle);
  } else {
    archive_read_support_filter_gzip(handle);
    archive_read_support_filter_bzip2(handle);
    archive_read_support_filter_xz(handle);
    archive_read_support_filter_zstd(handle);
    archive_read_support_format_tar(handle);
  }
  archive_read_set_read_callback(handle, read);
  archive_read_set_skip_callback(handle, skip);
  if (form == ArchivePlace::Form::Zip) archive_read_set_seek_callback(handle, seek);
  archive_read_set_callback_data(handle, this);
}

std::string Reading::flawOf(const std::string& member) const {
  const char* text = archive_error_string(handle_.get());
  const std::string reason = printable(text == nullptr ? "is damaged" : text);
  return member.empty() ? reason : quotedName(member) + " in it: " + reason;
}

std::string Reading::run(ArchivePlace::Form form) {
  open(form);
  if (archive_read_open1(handle_.get()) != ARCHIVE_OK) return flawOf("");
  return readMembers();
}

std::string Reading::readMembers() {
  std::string name;
  while (true) {
    archive_entry* member = nullptr;
    const int result = archive_read_next_header(handle_.get(), &member);
    if (result == ARCHIVE_EOF) return "";
    if (result < ARCHIVE_WARN) return flawOf(name);
    const char* path = archive_entry_pathname(member);
    name = path == nullptr ? "" : path;
    if (!readMember()) return flawOf(name);
  }
}

bool Reading::readMember() {
  const void* block = nullptr;
  std::size_t length = 0;
  la_int64_t offset = 0;
  int result = ARCHIVE_OK;
  while (result == ARCHIVE_OK) {
    result = archive_read_data_block(handle_.get(), &block, &length, &offset);
  }
  return result == ARCHIVE_EOF;
}

/// Where a packed file has its archive: a zip file by its end, a tar file, plain or compressed, at
/// the start or behind the lines of a shell script.
std::optional<ArchivePlace> findArchive(const ByteSource& file) {
  const std::string head = file.bytesAt(0, kLongestHead + kTarMagicPlace + kTarMagic.size());
  if (beginsTar(head)) return ArchivePlace{ArchivePlace::Form::Tar, 0};
  if (endsAsZip(file)) return ArchivePlace{ArchivePlace::Form::Zip, 0};
  if (!head.starts_with("#!")) return std::nullopt;
  for (std::size_t line = head.find('\n'); line != std::string::npos;
       line = head.find('\n', line)) {
    ++line;
    const bool isTar = beginsTar(std::string_view(head).substr(line));
    if (isTar) return ArchivePlace{ArchivePlace::Form::Tar, line};
  }
  return std::nullopt;
}

/// Reads every member of the archive. Returns the first flaw, with the member's name, or the empty
/// text.
std::string archiveFlaw(const ByteSource& file, const ArchivePlace& place, const ReadWatch& watch) {
  return Reading(file, place.offset, watch).run(place.form);
}

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
