// The checksums that archives carry themselves: read whole, by libarchive.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "packer/ByteSource.h"

namespace vessant {

/// An archive in a file, perhaps behind a script that unpacks it.
struct ArchivePlace {
  enum class Form { Zip, Tar };

  Form form;
  /// From the start of the file.
  std::uint64_t offset;
};

/// Where a packed file has its archive: a zip file by its end, a tar file, plain or compressed, at
/// the start or behind the lines of a shell script.
[[nodiscard]] std::optional<ArchivePlace> findArchive(const ByteSource& file);

/// Is told of the bytes that were read, and where in the source they lie.
using ReadWatch = std::function<void(std::uint64_t position, std::string_view bytes)>;

/// Reads every member of the archive. Returns the first flaw, with the member's name, or the empty
/// text. Throws LauncherException when the file itself cannot be read.
[[nodiscard]] std::string archiveFlaw(const ByteSource& file, const ArchivePlace& place,
                                      const ReadWatch& watch);

}  // namespace vessant
