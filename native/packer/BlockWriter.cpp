#include "packer/BlockWriter.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "packer/Text.h"

namespace vessant {
namespace {

/// The system keeps the bytes of a file in pieces that grow with the writes, as far as these fill
/// them whole; larger blocks no longer fit into the processor's cache.
constexpr std::size_t kBlockSize = 1U << 17U;
/// What the kernel moves from file to file at a time, for which the same holds.
constexpr std::uint64_t kKernelBlockSize = 1U << 16U;
/// The most that one call copies: after each, the user is told.
constexpr std::uint64_t kLargestStep = 1U << 24U;
/// Of memory, and a multiple of the blocks of every file system that can share them.
constexpr std::uint64_t kPageSize = 4096;
/// Below, reserving room costs more than it saves.
constexpr std::uint64_t kLeastReserved = 1U << 20U;

}  // namespace

struct alignas(kPageSize) BlockWriter::Block {
  char bytes[kBlockSize];
};

void BlockWriter::FreeBlock::operator()(Block* block) const {
  delete block;
}

BlockWriter::BlockWriter(UniqueFd fd, std::string name)
    : fd_(std::move(fd)), name_(std::move(name)), block_(new Block) {}

/// What waits lies in the block of the file that `position_` is in, so that both have the same
/// room.
std::size_t BlockWriter::room() const {
  return kBlockSize - position_ % kBlockSize;
}

void BlockWriter::advance(std::size_t count) {
  waiting_ += count;
  position_ += count;
  if (position_ % kBlockSize == 0) flush();
}

void BlockWriter::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t count = bytes.copy(block_->bytes + waiting_, room());
    advance(count);
    bytes.remove_prefix(count);
  }
}

void BlockWriter::padTo(std::uint64_t position) {
  while (position_ < position) {
    const std::size_t count = std::min<std::uint64_t>(room(), position - position_);
    std::fill_n(block_->bytes + waiting_, count, '\0');
    advance(count);
  }
}

void BlockWriter::append(const ByteSource& source, const Advance& advance) {
  std::uint64_t done = appendInKernel(source, advance);
  while (done < source.length()) {
    const std::size_t count = source.read(done, block_->bytes + waiting_, room());
    this->advance(count);
    if (advance) advance(count);
    done += count;
  }
}

/// Returns how many bytes could be added without having them here. What then goes wrong with the
/// rest is told by those who read and write it.
std::uint64_t BlockWriter::appendInKernel(const ByteSource& source, const Advance& advance) {
  if (source.length() < kKernelBlockSize) return 0;
  const bool pagesMeet = source.offset() % kPageSize == position_ % kPageSize;
  flush();
  std::uint64_t done = pagesMeet ? share(source) : 0;
  if (done > 0 && advance) advance(done);
  reserve(source.length() - done);
  if (pagesMeet) {
    done += copyInKernel(source.part(done, source.length() - done, source.label()), advance);
  }
  return done;
}

/// Standard output may begin anywhere in its file.
std::uint64_t BlockWriter::share(const ByteSource& source) {
  const off_t place = ::lseek(fd_.get(), 0, SEEK_CUR);
  file_clone_range range = {};
  range.src_fd = source.descriptor();
  range.src_offset = source.offset();
  range.src_length = source.length() / kPageSize * kPageSize;
  range.dest_offset = static_cast<std::uint64_t>(place);
  if (place < 0 || ::ioctl(fd_.get(), FICLONERANGE, &range) != 0) return 0;
  if (::lseek(fd_.get(), place + static_cast<off_t>(range.src_length), SEEK_SET) < 0) fail();
  position_ += range.src_length;
  return range.src_length;
}

/// Has the file system find the room in one go. Where it cannot, the write that has no room fails.
void BlockWriter::reserve(std::uint64_t length) {
  const off_t place = length < kLeastReserved ? -1 : ::lseek(fd_.get(), 0, SEEK_CUR);
  if (place < 0) return;
  static_cast<void>(::fallocate(fd_.get(), FALLOC_FL_KEEP_SIZE, place, static_cast<off_t>(length)));
}

std::uint64_t BlockWriter::copyInKernel(const ByteSource& source, const Advance& advance) {
  auto from = static_cast<off_t>(source.offset());
  std::uint64_t copied = 0;
  while (copied < source.length()) {
    const std::uint64_t step = kLargestStep - position_ % kKernelBlockSize;
    const ssize_t count = ::copy_file_range(source.descriptor(), &from, fd_.get(), nullptr,
                                            std::min(source.length() - copied, step), 0);
    if (count <= 0) break;
    copied += static_cast<std::uint64_t>(count);
    position_ += static_cast<std::uint64_t>(count);
    if (advance) advance(static_cast<std::uint64_t>(count));
  }
  return copied;
}

void BlockWriter::flush() {
  std::string_view bytes(block_->bytes, std::exchange(waiting_, 0));
  while (!bytes.empty()) {
    const ssize_t count = ::write(fd_.get(), bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) fail();
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void BlockWriter::close() {
  if (fd_.close() != 0) fail();
}

void BlockWriter::fail() const {
  throw failure(name_ + ": " + str(systemErrorText()));
}

}  // namespace vessant
