#include "launcher/linux/OutputCollector.h"

#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vessant {
namespace {

constexpr std::size_t kChunkSize = 4096;
constexpr int kPollMilliseconds = 10;
constexpr int kNoTimeout = -1;
constexpr int kNoFd = -1;  // poll passes over it

void makeNonBlocking(int fd) {
  const int flags = ::fcntl(fd, F_GETFL);
  // Cannot fail for a pipe that is open.
  static_cast<void>(::fcntl(fd, F_SETFL, flags | O_NONBLOCK));
}

bool isWaiting(ssize_t result) {
  return result < 0 && (errno == EAGAIN || errno == EINTR);
}

}  // namespace

ssize_t readPipeChunk(int fd, SString* text, ProgressSink& progress) {
  char chunk[kChunkSize + 1] = {};
  const ssize_t result = ::read(fd, chunk, kChunkSize);
  if (result <= 0) return result;
  if (text != nullptr) text->append(chunk);
  progress.addProgressDots(1);
  return result;
}

OutputCollector::OutputCollector(int stdoutFd, SString* stdoutText, int stderrFd,
                                 SString* stderrText, ProgressSink& progress)
    : out_{stdoutFd, stdoutText}, err_{stderrFd, stderrText}, progress_(progress) {
  makeNonBlocking(stdoutFd);
  makeNonBlocking(stderrFd);
}

int OutputCollector::collect(pid_t child) {
  int status = 0;
  while (true) {
    int changed = 0;
    const pid_t result = ::waitpid(child, &changed, WNOHANG | WUNTRACED);
    if (result < 0 && errno == EINTR) continue;
    if (result < 0) break;  // the child was reaped on an earlier round
    if (result > 0) status = changed;
    if (!readBoth()) waitForOutput(kPollMilliseconds);
  }
  drain();
  return status;
}

/// Reads one chunk from each stream; false when neither had any.
bool OutputCollector::readBoth() {
  const bool fromOut = readStream(out_);
  const bool fromErr = readStream(err_);
  return fromOut || fromErr;
}

bool OutputCollector::readStream(Stream& stream) {
  if (!stream.isOpen) return false;
  const ssize_t result = readPipeChunk(stream.fd, stream.text, progress_);
  if (result > 0) return true;
  stream.isOpen = isWaiting(result);
  return false;
}

void OutputCollector::waitForOutput(int timeoutMilliseconds) {
  pollfd fds[] = {{out_.isOpen ? out_.fd : kNoFd, POLLIN, 0},
                  {err_.isOpen ? err_.fd : kNoFd, POLLIN, 0}};
  static_cast<void>(::poll(fds, 2, timeoutMilliseconds));  // an early return only reads again
}

/// The wait comes first: once both streams have ended there is nothing left to wait for.
void OutputCollector::drain() {
  while (out_.isOpen || err_.isOpen) {
    waitForOutput(kNoTimeout);
    readBoth();
  }
}

}  // namespace vessant
