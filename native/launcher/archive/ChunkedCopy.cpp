#include "launcher/archive/ChunkedCopy.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vessant {
namespace {

/// One step of the progress display.
constexpr std::uint64_t kChunkSize = 0xEFFF;
/// What is read and written at a time. A power of two, so that every write but the last fills whole
/// pages of the target: chunks of an odd size would touch each page at their borders twice.
constexpr std::uint64_t kBlockSize = 1U << 20;
/// Below, reserving room costs more than it saves.
constexpr std::uint64_t kLeastReserved = 4 * kBlockSize;
/// Every file system that can share blocks has blocks of this size or a divisor of it.
constexpr std::uint64_t kSharedBlock = 4096;

/// Counts the chunks that the copied bytes make up.
class ChunkSteps {
 public:
  ChunkSteps(std::uint64_t length, const RunServices& services)
      : length_(length), services_(services) {}

  /// Shows every chunk that is whole with the first `copied` bytes. Returns false when the run is
  /// cancelled; then no chunk behind `shown()` counts.
  bool advance(std::uint64_t copied) {
    while (shown_ < length_ && copied >= std::min(shown_ + kChunkSize, length_)) {
      shown_ = std::min(shown_ + kChunkSize, length_);
      services_.progress.addProgressDots(1);
      if (services_.cancelFlag.isSet()) return false;
    }
    return true;
  }
  /// The chunk at which the copy ends early is shown, too.
  void endEarly() { services_.progress.addProgressDots(1); }
  [[nodiscard]] std::uint64_t shown() const { return shown_; }

 private:
  std::uint64_t length_;
  const RunServices& services_;
  std::uint64_t shown_ = 0;
};

/// Bytes at the start of a page. A source that lies at an odd offset is copied at half the speed
/// into a buffer that is not.
struct FreeBlock {
  void operator()(char* bytes) const { ::operator delete[](bytes, kPage); }
  static constexpr std::align_val_t kPage{4096};
};
using Block = std::unique_ptr<char[], FreeBlock>;

Block newBlock(std::size_t size) {
  return Block(static_cast<char*>(::operator new[](size, FreeBlock::kPage)));
}

/// Writes a block behind `copied`, which grows by what was written. Returns 0 or the error number.
int writeBlock(int target, const char* bytes, std::uint64_t count, std::uint64_t& copied) {
  while (count > 0) {
    const ssize_t written = ::write(target, bytes, count);
    if (written < 0 && errno == EINTR)
      continue;  // the flag that a signal sets is read at the chunk
    if (written <= 0) return written < 0 ? errno : EIO;
    bytes += written;
    count -= static_cast<std::uint64_t>(written);
    copied += static_cast<std::uint64_t>(written);
  }
  return 0;
}

std::uint64_t readBlock(int source, char* bytes, std::uint64_t count, std::uint64_t offset) {
  std::uint64_t filled = 0;
  while (filled < count) {
    const ssize_t read =
        ::pread(source, bytes + filled, count - filled, static_cast<off_t>(offset + filled));
    if (read < 0 && errno == EINTR) continue;
    if (read <= 0) break;
    filled += static_cast<std::uint64_t>(read);
  }
  return filled;
}

/// Lets both files share the blocks of the stretch where their file system can do that and the
/// stretch lies on block borders. Returns how many bytes the target has by this, often none: every
/// failure means only that they are to be copied.
std::uint64_t shareBlocks(int source, std::uint64_t offset, std::uint64_t length, int target) {
  const std::uint64_t shared = length / kSharedBlock * kSharedBlock;
  if (shared == 0 || offset % kSharedBlock != 0) return 0;
  file_clone_range range = {};
  range.src_fd = source;
  range.src_offset = offset;
  range.src_length = shared;
  if (::ioctl(target, FICLONERANGE, &range) != 0) return 0;
  return ::lseek(target, static_cast<off_t>(shared), SEEK_SET) >= 0 ? shared : 0;
}

/// Has the file system lay out the file in one go. The size is kept and a failure passed over: a
/// full disk is to fail at the chunk that does not fit, not here. No more is reserved than the
/// source has, whatever its index says.
void reserveRoom(int source, std::uint64_t offset, std::uint64_t length, int target) {
  struct stat status = {};
  if (length < kLeastReserved || ::fstat(source, &status) != 0) return;
  if (static_cast<std::uint64_t>(status.st_size) < offset + length) return;
  static_cast<void>(::fallocate(target, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(length)));
}

}  // namespace

CopyEnd copyStretch(int source, std::uint64_t offset, std::uint64_t length, int target,
                    const RunServices& services) {
  if (services.cancelFlag.isSet()) return {};
  CopyEnd end;
  ChunkSteps steps(length, services);
  end.copied = shareBlocks(source, offset, length, target);
  reserveRoom(source, offset, length - end.copied, target);
  const Block block = newBlock(std::min(kBlockSize, length));
  while (steps.advance(end.copied)) {
    if (end.copied == length) return end;
    const std::uint64_t wanted = std::min(kBlockSize, length - end.copied);
    const std::uint64_t read = readBlock(source, block.get(), wanted, offset + end.copied);
    end.error = writeBlock(target, block.get(), read, end.copied);
    if (end.error == 0 && read == wanted) continue;
    if (steps.advance(end.copied)) steps.endEarly();
    return end;
  }
  // Cancelled in the middle of a block. A failure leaves more than the whole chunks, which nobody
  // uses.
  static_cast<void>(::ftruncate(target, static_cast<off_t>(steps.shown())));
  end.copied = steps.shown();
  return end;
}

}  // namespace vessant
