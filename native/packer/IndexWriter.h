// Writes what stands behind the files of an installer: the index, the mode byte and the trailer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "packer/Manifest.h"
#include "packer/OutputFile.h"

namespace vessant {

class IndexWriter {
 public:
  /// The index begins at the file's present end.
  explicit IndexWriter(OutputFile& file) : file_(file), start_(file.position()) {}

  void begin(std::size_t count);
  void add(const PackedFile& file, std::uint64_t length, std::uint64_t offset);
  void finish(std::uint8_t mode);

 private:
  void writeNumber(std::uint64_t number, int bytes);

  OutputFile& file_;
  std::uint64_t start_;
};

}  // namespace vessant
