// A zip, jar or tar file, read entry by entry by libarchive from bytes in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

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

struct ArchiveMember {
  std::string name;
  std::uint64_t size = 0;
  bool isRegular = false;
};

class ArchiveReader {
 public:
  /// The bytes must outlive this.
  ArchiveReader(std::string_view bytes, ArchiveFormat format);
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;
  ~ArchiveReader();

  /// The next member, or nothing at the end or at a flaw.
  [[nodiscard]] std::optional<ArchiveMember> next();
  /// The first bytes of the current member; fewer when it is shorter or flawed.
  [[nodiscard]] std::string contents(std::size_t most);
  /// What is wrong with the archive; empty while nothing is.
  [[nodiscard]] const std::string& flaw() const { return flaw_; }

 private:
  struct Closer {
    void operator()(archive* handle) const;
  };

  std::unique_ptr<archive, Closer> handle_;
  std::string flaw_;
};

}  // namespace vessant
