#include "launcher/base/BinaryReader.h"

#include "launcher/base/Exceptions.h"

namespace vessant {
namespace {

std::uint32_t readBigEndian(std::FILE* stream, int size, const char* message) {
  unsigned char bytes[4] = {};
  if (readBytes(stream, bytes, size) < size) throw LauncherException(message);
  std::uint32_t value = 0;
  for (int i = 0; i < size; ++i) value = value << 8 | bytes[i];
  return value;
}

}  // namespace

int readBytes(std::FILE* stream, unsigned char* buffer, int count) {
  int stored = 0;
  while (stored < count && std::feof(stream) == 0 && std::ferror(stream) == 0) {
    buffer[stored] = static_cast<unsigned char>(std::getc(stream));
    ++stored;
  }
  return stored;
}

std::uint32_t readInt32(std::FILE* stream, const char* message) {
  return readBigEndian(stream, 4, message);
}

std::int16_t readInt16(std::FILE* stream, const char* message) {
  return static_cast<std::int16_t>(readBigEndian(stream, 2, message));
}

}  // namespace vessant
