#include "packer/bundle/TarWriter.h"

#include <ctime>

#include <archive.h>
#include <archive_entry.h>

#include "packer/ByteSource.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// 2000-01-01. A tar program warns of times that are in the future, or before 1970.
constexpr std::time_t kTime = 946684800;
constexpr mode_t kProgramMode = 0755;
constexpr mode_t kDataMode = 0644;

using EntryPointer = std::unique_ptr<archive_entry, void (*)(archive_entry*)>;

unsigned fileTypeOf(RuntimeEntry::Kind kind) {
  if (kind == RuntimeEntry::Kind::Directory) return AE_IFDIR;
  return kind == RuntimeEntry::Kind::Link ? AE_IFLNK : AE_IFREG;
}

}  // namespace

TarWriter::TarWriter(Sink sink, bool compress)
    : sink_(std::move(sink)), tar_(archive_write_new(), archive_write_free) {
  check(archive_write_set_format_gnutar(tar_.get()));
  if (compress) {
    check(archive_write_add_filter_gzip(tar_.get()));
    // Without it the time of the packing stands in the file.
    check(archive_write_set_filter_option(tar_.get(), "gzip", "timestamp", nullptr));
    check(archive_write_set_filter_option(tar_.get(), "gzip", "compression-level", "6"));
  }
  check(archive_write_set_bytes_in_last_block(tar_.get(), 1));
  check(archive_write_open(tar_.get(), this, nullptr, &writeToSink, nullptr));
}

TarWriter::~TarWriter() {
  // An archive that was not finished is given up: nothing more shall reach the sink.
  givenUp_ = true;
}

void TarWriter::add(const RuntimeEntry& entry, const std::string& name) {
  addHeader(entry, name);
  if (entry.kind == RuntimeEntry::Kind::File) addBytes(entry);
}

void TarWriter::addText(const std::string& name, std::string_view text) {
  addHeader({.name = name, .size = text.size()}, name);
  write(text);
}

void TarWriter::finish() {
  check(archive_write_close(tar_.get()));
}

void TarWriter::addHeader(const RuntimeEntry& entry, const std::string& name) {
  const EntryPointer header(archive_entry_new(), archive_entry_free);
  archive_entry* fields = header.get();
  const bool isData = entry.kind == RuntimeEntry::Kind::File && !entry.isExecutable;
  archive_entry_set_pathname(fields, name.c_str());
  archive_entry_set_filetype(fields, fileTypeOf(entry.kind));
  archive_entry_set_perm(fields, isData ? kDataMode : kProgramMode);
  archive_entry_set_mtime(fields, kTime, 0);
  archive_entry_set_uid(fields, 0);
  archive_entry_set_gid(fields, 0);
  archive_entry_set_size(fields, static_cast<la_int64_t>(entry.size));
  if (entry.kind == RuntimeEntry::Kind::Link) {
    archive_entry_set_symlink(fields, entry.target.c_str());
  }
  check(archive_write_header(tar_.get(), fields));
}

void TarWriter::addBytes(const RuntimeEntry& entry) {
  const ByteSource source(entry.source);
  if (source.length() != entry.size) throw failure(entry.source + ": changes while it is read");
  source.forEachBlock([this](std::string_view block) { write(block); });
}

void TarWriter::write(std::string_view bytes) {
  if (bytes.empty()) return;
  const la_ssize_t written = archive_write_data(tar_.get(), bytes.data(), bytes.size());
  check(written < 0 ? ARCHIVE_FATAL : ARCHIVE_OK);
}

/// Called by the library, through which no exception may pass. It hears of no failure either: it
/// would not give back the memory of an archive that failed.
long TarWriter::writeToSink(archive* /*tar*/, void* self, const void* buffer, std::size_t count) {
  auto* writer = static_cast<TarWriter*>(self);
  try {
    if (!writer->givenUp_) writer->sink_({static_cast<const char*>(buffer), count});
  } catch (...) {
    writer->sinkFailure_ = std::current_exception();
    writer->givenUp_ = true;
  }
  return static_cast<long>(count);
}

void TarWriter::check(int result) {
  if (sinkFailure_) std::rethrow_exception(std::exchange(sinkFailure_, nullptr));
  if (result >= ARCHIVE_WARN) return;
  const char* reason = archive_error_string(tar_.get());
  throw failure(std::string("the archive cannot be written: ") + (reason ? reason : "no memory"));
}

}  // namespace vessant
