// What the C library and the kernel hand out, with one owner each, who gives it back: streams,
// descriptors and directory streams. None passes on to a child process.
#pragma once

#include <cstdio>
#include <memory>
#include <utility>

#include <dirent.h>

#include "launcher/base/SString.h"

namespace vessant {

struct StreamCloser {
  /// Passes over a failure to close: whoever writes flushes first, and learns of it there.
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// An owned stream; null when it could not be opened (errno tells why).
using StdFile = std::unique_ptr<std::FILE, StreamCloser>;

enum class OpenMode { Read, Write };

/// Opens a file as bytes.
[[nodiscard]] StdFile openFile(const SString& path, OpenMode mode);

struct DirCloser {
  void operator()(DIR* stream) const { ::closedir(stream); }
};

/// An owned directory stream; null when the directory could not be opened.
using DirStream = std::unique_ptr<DIR, DirCloser>;

[[nodiscard]] DirStream openDirectory(const SString& path);
/// The next entry other than "." and "..", or null at the end. Good until the next call.
[[nodiscard]] const dirent* nextEntry(const DirStream& stream);

/// An owned file descriptor.
class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    reset(other.release());
    return *this;
  }
  ~UniqueFd() { reset(); }

  /// The descriptor, or -1 when there is none.
  [[nodiscard]] int get() const { return fd_; }
  [[nodiscard]] bool isOpen() const { return fd_ >= 0; }
  /// Closes the descriptor and owns `fd` instead.
  void reset(int fd = -1);
  /// Closes the descriptor to learn whether that works: 0, or -1 with the reason in errno.
  [[nodiscard]] int close();
  /// Hands the descriptor to the caller, who closes it.
  [[nodiscard]] int release() { return std::exchange(fd_, -1); }

 private:
  int fd_ = -1;
};

}  // namespace vessant
