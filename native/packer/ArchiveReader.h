// A zip, jar or tar file, wherever it lies: found behind a script, read member by member.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "packer/ByteSource.h"
#include "packer/GzipReader.h"

struct archive;
struct archive_entry;

namespace vessant {

enum class ArchiveFormat {
  /// By its central directory: what stands in front of it does not matter.
  Zip,
  /// Member by member from the first byte on, without the central directory.
  ZipMembers,
  /// Plain or compressed.
  Tar,
};

/// An archive in a file.
struct ArchivePlace {
  ArchiveFormat format;
  /// From the start of the file.
  std::uint64_t offset;
  /// A tar file behind gzip, xz, zstd or bzip2.
  bool isCompressed = false;
};

/// Where a file has its archive, by its first and last bytes: a zip file by its end, a tar file at
/// the start or behind the lines of a shell script of at most 64 KiB. Nothing when it has none.
/// Throws LauncherException, naming the file, when it cannot be read.
[[nodiscard]] std::optional<ArchivePlace> findArchive(const ByteSource& file);

struct ArchiveMember {
  std::string name;
  /// In bytes, unpacked, as the archive says.
  std::uint64_t size = 0;
  bool isRegular = false;
};

/// Reads with libarchive, block by block: memory does not grow with the archive.
class ArchiveReader {
 public:
  /// Is told of the bytes that were read, and where in the source they lie.
  using Watch = std::function<void(std::uint64_t position, std::string_view bytes)>;

  /// The archive begins at the source's first byte. Throws LauncherException, naming the source,
  /// when that cannot be read; what cannot be read later is a flaw.
  ArchiveReader(ByteSource source, ArchiveFormat format, Watch watch = {});
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;
  ~ArchiveReader();

  /// The next member, or nothing at the end or at a flaw. At the end a tar file's gzip has been
  /// held against its checksum.
  [[nodiscard]] std::optional<ArchiveMember> next();
  /// The first bytes of the current member; fewer when it is shorter or flawed.
  [[nodiscard]] std::string contents(std::size_t most);
  /// Reads what is left of the current member and holds it against its checksum, if it has one.
  void check();
  /// What is wrong with the archive; empty while nothing is.
  [[nodiscard]] const std::string& flaw() const { return flaw_; }

 private:
  struct Closer {
    void operator()(archive* handle) const;
  };

  // What libarchive calls, with this object as `self`.
  static long read(archive* handle, void* self, const void** buffer);
  static std::int64_t skip(archive* handle, void* self, std::int64_t count);
  static std::int64_t seek(archive* handle, void* self, std::int64_t offset, int whence);

  void open(ArchiveFormat format);
  [[nodiscard]] std::string_view readBlock();
  void readToEnd();
  void noteFlaw();

  ByteSource source_;
  Watch watch_;
  std::uint64_t position_ = 0;
  std::string block_;
  std::string flaw_;
  /// Null for what is not compressed with gzip.
  std::unique_ptr<GzipReader> gzip_;
  std::unique_ptr<archive, Closer> handle_;
};

}  // namespace vessant
