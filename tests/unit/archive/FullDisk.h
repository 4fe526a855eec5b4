// A disk that is full after so many bytes. The test program is linked so that every call of write
// in it passes through here; without one nothing changes.
#pragma once

#include <cstddef>

namespace vessant::test {

/// In effect while it lives. Only one at a time.
class FullDisk {
 public:
  /// `room` bytes can still be written, to whatever file.
  explicit FullDisk(std::size_t room);
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk();

  /// How many of `count` bytes still fit; they are taken off the room.
  std::size_t take(std::size_t count);

 private:
  std::size_t room_;
};

}  // namespace vessant::test
