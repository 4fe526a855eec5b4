// A stretch of an open file: a whole file on disk, or one that an installer carries.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "launcher/base/Handles.h"

namespace vessant {

class ByteSource {
 public:
  using Visitor = std::function<void(std::string_view)>;

  /// Opens the regular file at `path`. Throws LauncherException, naming the path, when there is
  /// none, when it is a directory or a special file, and when it cannot be read.
  explicit ByteSource(const std::string& path);

  /// A part of this, which shares the open file. `label` names it in errors.
  [[nodiscard]] ByteSource part(std::uint64_t offset, std::uint64_t length,
                                const std::string& label) const;

  [[nodiscard]] std::uint64_t length() const { return length_; }
  [[nodiscard]] const std::string& label() const { return label_; }
  /// The open file, and where in it this begins.
  [[nodiscard]] int descriptor() const { return fd_->get(); }
  [[nodiscard]] std::uint64_t offset() const { return offset_; }

  /// Hands the bytes out in order, in blocks of at most 256 KiB. Throws when they cannot be read
  /// or end early.
  void forEachBlock(const Visitor& visitor) const;
  /// Puts up to `count` of the bytes from `position` on into `buffer`. Returns how many came, at
  /// least one; throws when there is none, be it the end.
  [[nodiscard]] std::size_t read(std::uint64_t position, char* buffer, std::size_t count) const;
  /// Up to `count` bytes from `position` on; fewer at the end.
  [[nodiscard]] std::string bytesAt(std::uint64_t position, std::size_t count) const;
  /// All bytes. Throws when there are more than `limit`.
  [[nodiscard]] std::string text(std::uint64_t limit = kLargestText) const;

  /// No text that people write is larger: 16 MiB.
  static constexpr std::uint64_t kLargestText = 1U << 24U;

 private:
  [[nodiscard]] std::size_t readAt(std::uint64_t position, char* buffer, std::size_t count) const;

  std::shared_ptr<UniqueFd> fd_;
  std::uint64_t offset_ = 0;
  std::uint64_t length_ = 0;
  std::string label_;
};

/// The name by which standard input and standard output are called.
inline constexpr const char* kStandardStream = "-";

/// All bytes of the file at `path`, or of standard input for "-". Throws LauncherException, naming
/// the path, when they cannot be read or are more than 16 MiB.
[[nodiscard]] std::string readTextInput(const std::string& path);

}  // namespace vessant
