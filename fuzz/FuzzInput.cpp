#include "FuzzInput.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

namespace vessant::fuzz {

StdFile streamOf(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return nullptr;
  // A stream for reading leaves its memory alone.
  return StdFile(::fmemopen(const_cast<std::uint8_t*>(data), size, "rb"));
}

SString textOf(const std::uint8_t* data, std::size_t size) {
  return std::string_view(reinterpret_cast<const char*>(data), size);
}

InputFile::InputFile(const std::uint8_t* data, std::size_t size)
    : fd_(::memfd_create("input", MFD_CLOEXEC)),
      path_("/proc/self/fd/" + std::to_string(fd_.get())) {
  require(::write(fd_.get(), data, size) == static_cast<ssize_t>(size), "no file in memory");
}

FirstLine::FirstLine(const std::uint8_t* data, std::size_t size) {
  const std::uint8_t* newline = std::find(data, data + size, '\n');
  line = textOf(data, static_cast<std::size_t>(newline - data));
  rest = newline == data + size ? newline : newline + 1;
  restSize = static_cast<std::size_t>(data + size - rest);
}

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace vessant::fuzz
