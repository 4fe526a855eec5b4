#include "packer/IndexWriter.h"

namespace vessant {

void IndexWriter::begin(std::size_t count) {
  writeNumber(count, 4);
}

void IndexWriter::add(const PackedFile& file, std::uint64_t length, std::uint64_t offset) {
  writeNumber(static_cast<std::uint64_t>(file.type), 1);
  writeNumber(file.id, 4);
  writeNumber(length, 4);
  writeNumber(offset, 4);
  writeNumber(file.name.length(), 2);
  file_.write(file.name);
  writeNumber(file.unpacks ? kHasSizeInformation : 0, 1);
  if (!file.unpacks) return;
  writeNumber(file.unpacks->files, 4);
  writeNumber(file.unpacks->bytes, 4);
}

void IndexWriter::finish(std::uint8_t mode) {
  writeNumber(mode, 1);
  writeNumber(start_, 4);
  writeNumber(kIdentification, 4);
}

/// Most significant byte first.
void IndexWriter::writeNumber(std::uint64_t number, int bytes) {
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
    const char byte = static_cast<char>(number >> static_cast<unsigned>(shift));
    file_.write({&byte, 1});
  }
}

}  // namespace vessant
