// A file that is written beside its final name and takes that name only when it is whole.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "launcher/base/Handles.h"
#include "packer/ByteSource.h"

namespace vessant {

class OutputFile {
 public:
  using Advance = std::function<void(std::uint64_t)>;

  /// The permissions of a new program and of a new data file, from which the process's mask takes.
  static constexpr mode_t kProgram = 0777;
  static constexpr mode_t kData = 0666;

  /// Begins the file that will be called `path`; `-` is standard output. A link is followed. What
  /// is no regular file, such as a device or a pipe, is written straight. All operations throw
  /// LauncherException with the path and the system's reason.
  explicit OutputFile(const std::string& path, mode_t mode = kData);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Removes a file that was not published.
  ~OutputFile();

  void write(std::string_view bytes);
  /// Copies a whole source, in the kernel where that works. `advance` is told of the bytes as they
  /// are written.
  void append(const ByteSource& source, const Advance& advance = {});
  /// Writes zeros up to a position that is not behind the present one.
  void padTo(std::uint64_t position);
  /// Bytes written so far.
  [[nodiscard]] std::uint64_t position() const { return position_; }

  /// Gives the finished file its name, in place of what had it.
  void publish();

 private:
  void open(const std::string& path);
  void flush();
  void writeFully(std::string_view bytes);
  [[nodiscard]] std::uint64_t copyInKernel(const ByteSource& source, const Advance& advance);
  [[noreturn]] void fail(int error) const;

  std::string path_;
  std::string finalPath_;
  std::string partialPath_;  // empty for what is written straight
  mode_t mode_;
  UniqueFd fd_;
  std::vector<char> buffer_;
  std::uint64_t position_ = 0;
};

}  // namespace vessant
