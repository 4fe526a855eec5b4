// Watches what the code under test asks of malloc and realloc, and lets requests fail. A test
// program that uses this is linked with -Wl,--wrap=malloc -Wl,--wrap=realloc, so that every call in
// it passes through here; without a watch nothing changes.
#pragma once

#include <cstddef>
#include <vector>

namespace vessant::test {

/// In effect while it lives. Only one at a time.
class AllocationWatch {
 public:
  AllocationWatch();
  AllocationWatch(const AllocationWatch&) = delete;
  AllocationWatch& operator=(const AllocationWatch&) = delete;
  ~AllocationWatch();

  /// Lets the next `count` requests fail.
  void failNext(int count) { failures_ = count; }
  /// The sizes asked for since the watch began, failed requests included.
  [[nodiscard]] const std::vector<std::size_t>& sizes() const { return sizes_; }

  /// Takes note of one request; returns whether it is to fail.
  bool note(std::size_t size);

 private:
  std::vector<std::size_t> sizes_;
  int failures_ = 0;
};

}  // namespace vessant::test
