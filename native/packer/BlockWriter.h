// Writes a file from its start to its end with as little work for the system as its bytes allow.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "launcher/base/Handles.h"
#include "packer/ByteSource.h"

namespace vessant {

/// Gathers what it gets into blocks at multiples of their own size, each of which is written by one
/// call. All operations throw LauncherException with the file's name and the system's reason.
class BlockWriter {
 public:
  /// Is told how many bytes more were taken from a source.
  using Advance = std::function<void(std::uint64_t count)>;

  /// `name` is the file's in errors. The descriptor may be that of a pipe or a device.
  BlockWriter(UniqueFd fd, std::string name);

  void write(std::string_view bytes);
  /// Adds a whole source, which may begin anywhere in its file. Large ones share their blocks with
  /// the new file where the file system can do that, and are copied by the kernel where their pages
  /// meet those of the new file. Throws, naming the source, when it cannot be read or ends early.
  void append(const ByteSource& source, const Advance& advance = {});
  /// Adds zeros up to a position that is not behind the present one.
  void padTo(std::uint64_t position);
  /// The bytes that were added so far, written or not.
  [[nodiscard]] std::uint64_t position() const { return position_; }

  /// Writes what is still to be written.
  void flush();
  /// Good until `close`.
  [[nodiscard]] int descriptor() const { return fd_.get(); }
  /// Closes the file, which some file systems take as the time to tell of failed writes. What was
  /// not flushed is lost.
  void close();

 private:
  struct Block;
  struct FreeBlock {
    void operator()(Block* block) const;
  };

  [[nodiscard]] std::size_t room() const;
  void advance(std::size_t count);
  [[nodiscard]] std::uint64_t appendInKernel(const ByteSource& source, const Advance& advance);
  [[nodiscard]] std::uint64_t share(const ByteSource& source);
  void reserve(std::uint64_t length);
  [[nodiscard]] std::uint64_t copyInKernel(const ByteSource& source, const Advance& advance);
  [[noreturn]] void fail() const;

  UniqueFd fd_;
  std::string name_;
  /// Holds the last `waiting_` bytes in front of `position_`.
  std::unique_ptr<Block, FreeBlock> block_;
  std::size_t waiting_ = 0;
  std::uint64_t position_ = 0;
};

}  // namespace vessant
