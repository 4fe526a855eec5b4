#include "launcher/driver/output/StandardStreams.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <unistd.h>

#include "launcher/base/SignalWait.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr int kNoByte = -1;

/// A pipe that has room at all takes this many bytes without blocking.
constexpr std::size_t kChunkSize = PIPE_BUF;

/// Whether the call failed in a way that may be over at the next try.
bool mayBeRepeated(ssize_t result) {
  return result < 0 && (errno == EINTR || errno == EAGAIN);
}

bool isSpace(int byte) {
  return byte != kNoByte && isWideSpaceChar(static_cast<char>(byte));
}

}  // namespace

void OutputStream::write(std::string_view text) {
  while (!text.empty() && isWritable()) {
    const ssize_t written = ::write(fd_, text.data(), std::min(text.size(), kChunkSize));
    if (mayBeRepeated(written)) continue;
    if (written < 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// The first look saves the care that a wait takes with signals, for each of many dots.
bool OutputStream::isWritable() const {
  pollfd stream = {fd_, POLLOUT, 0};
  return ::poll(&stream, 1, 0) > 0 || waitUntilReady(fd_, POLLOUT, cancelFlag_);
}

SString InputStream::readWord(std::size_t most) {
  SString word;
  int byte = readByte();
  while (isSpace(byte)) byte = readByte();
  while (byte != kNoByte && !isSpace(byte)) {
    word += static_cast<char>(byte);
    byte = word.length() < most ? readByte() : kNoByte;
  }
  return cancelFlag_.isInterrupted() ? SString() : word;
}

/// One byte at a time, so that nothing is taken from the input that a child may want to read.
int InputStream::readByte() {
  while (waitUntilReady(fd_, POLLIN, cancelFlag_)) {
    unsigned char byte = 0;
    const ssize_t count = ::read(fd_, &byte, 1);
    if (count > 0) return byte;
    if (!mayBeRepeated(count)) break;
  }
  return kNoByte;
}

}  // namespace vessant
