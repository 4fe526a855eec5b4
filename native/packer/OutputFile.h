// A file that is written beside its final name and takes that name only when it is whole.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "packer/BlockWriter.h"
#include "packer/ByteSource.h"

namespace vessant {

class OutputFile {
 public:
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

  void write(std::string_view bytes) { writer_->write(bytes); }
  /// Adds a whole source; `advance` is told of the bytes, a stretch at a time.
  void append(const ByteSource& source, const BlockWriter::Advance& advance = {}) {
    writer_->append(source, advance);
  }
  /// Writes zeros up to a position that is not behind the present one.
  void padTo(std::uint64_t position) { writer_->padTo(position); }
  /// Bytes added so far.
  [[nodiscard]] std::uint64_t position() const { return writer_->position(); }

  /// Gives the finished file its name, in place of what had it.
  void publish();

 private:
  [[nodiscard]] UniqueFd openStandardOutput() const;
  [[nodiscard]] UniqueFd open();
  [[nodiscard]] UniqueFd openPartial();
  [[noreturn]] void fail(int error) const;

  std::string name_;  // in errors
  std::string finalPath_;
  std::string partialPath_;  // empty for what is written straight
  mode_t mode_;
  std::optional<BlockWriter> writer_;
};

}  // namespace vessant
