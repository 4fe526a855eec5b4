// The bytes of a stretch of a file, mapped: only what is looked at is read.
#pragma once

#include <cstddef>
#include <string_view>

#include "packer/ByteSource.h"

namespace vessant {

class MappedBytes {
 public:
  /// Throws LauncherException, naming the source, when it cannot be mapped.
  explicit MappedBytes(const ByteSource& source);
  MappedBytes(const MappedBytes&) = delete;
  MappedBytes& operator=(const MappedBytes&) = delete;
  ~MappedBytes();

  /// Good as long as this lives.
  [[nodiscard]] std::string_view bytes() const { return bytes_; }

 private:
  void* start_ = nullptr;
  std::size_t length_ = 0;
  std::string_view bytes_;
};

}  // namespace vessant
