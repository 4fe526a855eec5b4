#include "packer/ArchiveReader.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <utility>

#include <archive.h>
#include <archive_entry.h>

#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::size_t kBlockSize = 1U << 16U;
/// The longest script in front of an archive.
constexpr std::size_t kLongestHead = 1U << 16U;

// From the descriptions of the formats: the end record of a zip file is 22 bytes, the last two the
// length of the comment behind it; a tar file has its magic in its first header.
constexpr std::string_view kZipEnd = "PK\x05\x06";
constexpr std::size_t kZipEndSize = 22;
constexpr std::size_t kLongestComment = 0xFFFF;
constexpr std::string_view kTarMagic = "ustar";
constexpr std::size_t kTarMagicPlace = 257;
// The first bytes of what tar files are compressed with: gzip, xz, zstd, bzip2.
constexpr std::string_view kGzip = "\x1F\x8B\x08";
constexpr std::string_view kCompressions[] = {kGzip,
                                              "\xFD"
                                              "7zXZ",
                                              "\x28\xB5\x2F\xFD", "BZh"};

bool beginsCompressed(std::string_view bytes) {
  return std::any_of(std::begin(kCompressions), std::end(kCompressions),
                     [bytes](std::string_view magic) { return bytes.starts_with(magic); });
}

bool beginsTar(std::string_view bytes) {
  return bytes.size() > kTarMagicPlace && bytes.substr(kTarMagicPlace).starts_with(kTarMagic);
}

/// A tar file at this place of a file, whose bytes from there on are given.
std::optional<ArchivePlace> tarAt(std::string_view bytes, std::uint64_t place) {
  const bool isCompressed = beginsCompressed(bytes);
  if (!isCompressed && !beginsTar(bytes)) return std::nullopt;
  return ArchivePlace{ArchiveFormat::Tar, place, isCompressed};
}

/// Whether a zip file's end record ends the file. The letters alone may stand anywhere.
bool endsAsZip(const ByteSource& file) {
  constexpr std::size_t kLongestEnd = kZipEndSize + kLongestComment;
  const std::uint64_t start = file.length() - std::min<std::uint64_t>(file.length(), kLongestEnd);
  const std::string end = file.bytesAt(start, kLongestEnd);
  for (std::size_t at = end.rfind(kZipEnd); at != std::string::npos;
       at = end.rfind(kZipEnd, at - 1)) {
    if (at + kZipEndSize <= end.size()) {
      const auto low = static_cast<unsigned char>(end[at + kZipEndSize - 2]);
      const auto high = static_cast<unsigned char>(end[at + kZipEndSize - 1]);
      if (at + kZipEndSize + (std::size_t{high} << 8) + low == end.size()) return true;
    }
    if (at == 0) break;
  }
  return false;
}

}  // namespace

std::optional<ArchivePlace> findArchive(const ByteSource& file) {
  const std::string head = file.bytesAt(0, kLongestHead + kTarMagicPlace + kTarMagic.size());
  if (const auto tar = tarAt(head, 0)) return tar;
  if (endsAsZip(file)) return ArchivePlace{ArchiveFormat::Zip, 0};
  if (!head.starts_with("#!")) return std::nullopt;
  for (std::size_t line = head.find('\n'); line != std::string::npos;
       line = head.find('\n', line)) {
    ++line;
    if (const auto tar = tarAt(std::string_view(head).substr(line), line)) return tar;
  }
  return std::nullopt;
}

void ArchiveReader::Closer::operator()(archive* handle) const {
  archive_read_free(handle);
}

ArchiveReader::ArchiveReader(ByteSource source, ArchiveFormat format, Watch watch)
    : source_(std::move(source)), watch_(std::move(watch)), handle_(archive_read_new()) {
  if (handle_ == nullptr) throw std::bad_alloc();
  open(format);
}

ArchiveReader::~ArchiveReader() = default;

void ArchiveReader::open(ArchiveFormat format) {
  archive* handle = handle_.get();
  if (format == ArchiveFormat::Zip) {
    archive_read_support_format_zip_seekable(handle);
    archive_read_set_seek_callback(handle, seek);
  } else if (format == ArchiveFormat::ZipMembers) {
    archive_read_support_format_zip_streamable(handle);
  } else if (source_.bytesAt(0, kGzip.size()) == kGzip) {
    archive_read_support_format_tar(handle);
    gzip_ = std::make_unique<GzipReader>([this] { return readBlock(); });
  } else {
    archive_read_support_filter_bzip2(handle);
    archive_read_support_filter_xz(handle);
    archive_read_support_filter_zstd(handle);
    archive_read_support_format_tar(handle);
  }
  archive_read_set_read_callback(handle, read);
  if (!gzip_) archive_read_set_skip_callback(handle, skip);
  archive_read_set_callback_data(handle, this);
  if (archive_read_open1(handle) != ARCHIVE_OK) noteFlaw();
}

std::string_view ArchiveReader::readBlock() {
  block_ = source_.bytesAt(position_, kBlockSize);
  if (watch_) watch_(position_, block_);
  position_ += block_.size();
  return block_;
}

/// An exception must not pass through the library.
long ArchiveReader::read(archive* handle, void* self, const void** buffer) {
  auto& reader = *static_cast<ArchiveReader*>(self);
  try {
    const std::string_view bytes = reader.gzip_ ? reader.gzip_->next() : reader.readBlock();
    *buffer = bytes.data();
    return static_cast<long>(bytes.size());
  } catch (const LauncherException& error) {
    archive_set_error(handle, -1, "%s", error.message().cString());
    return -1;
  }
}

/// libarchive stops at the last member; the checksum stands behind it.
void ArchiveReader::readToEnd() {
  try {
    while (gzip_ && !gzip_->next().empty()) {
    }
  } catch (const LauncherException& error) {
    flaw_ = str(error.message());
  }
}

std::int64_t ArchiveReader::skip(archive* /*handle*/, void* self, std::int64_t count) {
  auto& reader = *static_cast<ArchiveReader*>(self);
  const std::uint64_t left = reader.source_.length() - reader.position_;
  const std::uint64_t skipped = std::min(static_cast<std::uint64_t>(count), left);
  reader.position_ += skipped;
  return static_cast<std::int64_t>(skipped);
}

std::int64_t ArchiveReader::seek(archive* /*handle*/, void* self, std::int64_t offset, int whence) {
  auto& reader = *static_cast<ArchiveReader*>(self);
  const auto length = static_cast<std::int64_t>(reader.source_.length());
  std::int64_t base = 0;
  if (whence == SEEK_CUR) base = static_cast<std::int64_t>(reader.position_);
  if (whence == SEEK_END) base = length;
  const std::int64_t target = std::clamp<std::int64_t>(base + offset, 0, length);
  reader.position_ = static_cast<std::uint64_t>(target);
  return target;
}

void ArchiveReader::noteFlaw() {
  const char* reason = archive_error_string(handle_.get());
  flaw_ = reason == nullptr ? "is damaged" : reason;
}

std::optional<ArchiveMember> ArchiveReader::next() {
  if (!flaw_.empty()) return std::nullopt;
  archive_entry* entry = nullptr;
  const int status = archive_read_next_header(handle_.get(), &entry);
  if (status == ARCHIVE_EOF) {
    readToEnd();
    return std::nullopt;
  }
  if (status < ARCHIVE_WARN) {
    noteFlaw();
    return std::nullopt;
  }
  const char* name = archive_entry_pathname(entry);
  return ArchiveMember{name == nullptr ? "" : name,
                       static_cast<std::uint64_t>(archive_entry_size(entry)),
                       archive_entry_filetype(entry) == AE_IFREG};
}

std::string ArchiveReader::contents(std::size_t most) {
  std::string bytes(most, '\0');
  std::size_t done = 0;
  while (done < most) {
    const la_ssize_t count =
        archive_read_data(handle_.get(), bytes.data() + done, bytes.size() - done);
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  bytes.resize(done);
  return bytes;
}

void ArchiveReader::check() {
  const void* block = nullptr;
  std::size_t length = 0;
  la_int64_t offset = 0;
  int result = ARCHIVE_OK;
  while (result == ARCHIVE_OK) {
    result = archive_read_data_block(handle_.get(), &block, &length, &offset);
  }
  if (result != ARCHIVE_EOF) noteFlaw();
}

}  // namespace vessant
