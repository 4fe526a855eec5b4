#include "FuzzInput.h"

#include <cstdio>

namespace vessant::fuzz {

StdFile streamOf(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return nullptr;
  // A stream for reading leaves its memory alone.
  return StdFile(::fmemopen(const_cast<std::uint8_t*>(data), size, "rb"));
}

SString textOf(const std::uint8_t* data, std::size_t size) {
  return std::string_view(reinterpret_cast<const char*>(data), size);
}

SString QuietPlatform::getEnvironmentVariable(const SString& name) const {
  return name == "HOME" ? "/home/user" : "";
}

}  // namespace vessant::fuzz
