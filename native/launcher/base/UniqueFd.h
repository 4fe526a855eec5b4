// A file descriptor with one owner, which closes it.
#pragma once

#include <utility>

#include <unistd.h>

namespace vessant {

class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    reset(std::exchange(other.fd_, -1));
    return *this;
  }
  ~UniqueFd() { reset(); }

  /// The descriptor, or -1 when there is none.
  [[nodiscard]] int get() const { return fd_; }
  [[nodiscard]] bool isOpen() const { return fd_ >= 0; }
  void reset(int fd = -1) {
    if (fd_ >= 0) ::close(fd_);  // nothing can be done about a failure
    fd_ = fd;
  }
  /// Closes the descriptor to learn whether that works: 0, or -1 with the reason in errno.
  [[nodiscard]] int close() { return ::close(std::exchange(fd_, -1)); }

 private:
  int fd_ = -1;
};

}  // namespace vessant
