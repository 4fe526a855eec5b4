#include "packer/ArchiveReader.h"

#include <archive.h>
#include <archive_entry.h>

namespace vessant {

void ArchiveReader::Closer::operator()(archive* handle) const {
  archive_read_free(handle);
}

ArchiveReader::ArchiveReader(std::string_view bytes, ArchiveFormat format)
    : handle_(archive_read_new()) {
  if (format == ArchiveFormat::Zip) {
    archive_read_support_format_zip_seekable(handle_.get());
  } else if (format == ArchiveFormat::ZipMembers) {
    archive_read_support_format_zip_streamable(handle_.get());
  } else {
    archive_read_support_format_tar(handle_.get());
    archive_read_support_filter_all(handle_.get());
  }
  // libarchive takes the bytes as writable for historical reasons; it only reads them.
  if (archive_read_open_memory(handle_.get(), bytes.data(), bytes.size()) == ARCHIVE_OK) return;
  const char* reason = archive_error_string(handle_.get());
  flaw_ = reason == nullptr ? "cannot be read" : reason;
}

ArchiveReader::~ArchiveReader() = default;

std::optional<ArchiveMember> ArchiveReader::next() {
  if (!flaw_.empty()) return std::nullopt;
  archive_entry* entry = nullptr;
  const int status = archive_read_next_header(handle_.get(), &entry);
  if (status == ARCHIVE_EOF) return std::nullopt;
  if (status < ARCHIVE_WARN) {
    const char* reason = archive_error_string(handle_.get());
    flaw_ = reason == nullptr ? "cannot be read" : reason;
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

}  // namespace vessant
