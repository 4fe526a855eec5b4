#include "packer/ByteSource.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::size_t kBlockSize = 1U << 18U;

[[noreturn]] void fail(const std::string& label, std::string_view reason) {
  throw failure(printable(label) + ": " + std::string(reason));
}

std::string readStandardInput() {
  constexpr std::size_t kBlock = 1U << 16U;
  std::string text;
  while (text.size() <= ByteSource::kLargestText) {
    const std::size_t end = text.size();
    text.resize(end + kBlock);
    const ssize_t count = ::read(STDIN_FILENO, text.data() + end, kBlock);
    text.resize(end + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw failure("standard input: " + str(systemErrorText()));
    if (count == 0) return text;
  }
  throw failure("standard input: is too large for a text file");
}

}  // namespace

// Opened without waiting, so that a pipe without a writer is refused and not waited for.
ByteSource::ByteSource(const std::string& path)
    : fd_(std::make_shared<UniqueFd>(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))),
      label_(path) {
  struct stat status = {};
  if (!fd_->isOpen() || ::fstat(fd_->get(), &status) != 0) fail(label_, systemErrorText());
  if (S_ISDIR(status.st_mode)) fail(label_, systemErrorText(EISDIR));
  if (!S_ISREG(status.st_mode)) fail(label_, "is no regular file");
  length_ = static_cast<std::uint64_t>(status.st_size);
}

ByteSource ByteSource::part(std::uint64_t offset, std::uint64_t length,
                            const std::string& label) const {
  ByteSource part = *this;
  part.offset_ = offset_ + offset;
  part.length_ = length;
  part.label_ = label;
  return part;
}

void ByteSource::forEachBlock(const Visitor& visitor) const {
  std::vector<char> block(std::min<std::uint64_t>(kBlockSize, length_));
  for (std::uint64_t position = 0; position < length_;) {
    const std::size_t count = read(position, block.data(), block.size());
    visitor({block.data(), count});
    position += count;
  }
}

std::size_t ByteSource::read(std::uint64_t position, char* buffer, std::size_t count) const {
  const std::size_t read = readAt(position, buffer, count);
  if (read == 0) fail(label_, "ends early");
  return read;
}

std::string ByteSource::bytesAt(std::uint64_t position, std::size_t count) const {
  std::string bytes(position < length_ ? std::min<std::uint64_t>(count, length_ - position) : 0,
                    '\0');
  std::size_t done = 0;
  while (done < bytes.size()) {
    const std::size_t read = readAt(position + done, bytes.data() + done, bytes.size() - done);
    if (read == 0) break;
    done += read;
  }
  bytes.resize(done);
  return bytes;
}

std::string ByteSource::text(std::uint64_t limit) const {
  if (length_ > limit) fail(label_, "is too large for a text file");
  return bytesAt(0, length_);
}

/// Reads what one call gives, never beyond the end of this stretch.
std::size_t ByteSource::readAt(std::uint64_t position, char* buffer, std::size_t count) const {
  const std::size_t wanted = std::min<std::uint64_t>(count, length_ - position);
  const auto place = static_cast<off_t>(offset_ + position);
  ssize_t read = 0;
  do {
    read = ::pread(descriptor(), buffer, wanted, place);
  } while (read < 0 && errno == EINTR);
  if (read < 0) fail(label_, systemErrorText());
  return static_cast<std::size_t>(read);
}

std::string readTextInput(const std::string& path) {
  return path == kStandardStream ? readStandardInput() : ByteSource(path).text();
}

}  // namespace vessant
