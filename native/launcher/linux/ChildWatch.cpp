#include "launcher/linux/ChildWatch.h"

#include <cerrno>
#include <climits>
#include <ctime>
#include <new>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/SignalWait.h"
#include "launcher/linux/ProcessTree.h"

namespace vessant {
namespace {

constexpr std::size_t kChunkSize = 4096;
/// Where the kernel cannot tell the end of a child (before 5.3), it is looked for this often.
constexpr int kPollMilliseconds = 10;
constexpr int kNoTimeout = -1;
constexpr int kNoFd = -1;         // poll passes over it
constexpr long kPidfdOpen = 434;  // the same on every architecture
constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::int64_t kNanosecondsPerMillisecond = 1000000;

std::int64_t nowMilliseconds() {
  timespec time = {};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * kMillisecondsPerSecond + time.tv_nsec / kNanosecondsPerMillisecond;
}

void makeNonBlocking(int fd) {
  const int flags = ::fcntl(fd, F_GETFL);
  // Cannot fail for a pipe that is open.
  static_cast<void>(::fcntl(fd, F_SETFL, flags | O_NONBLOCK));
}

/// A text makes room for no more than it is asked for. Without more, a long output would be moved
/// for every chunk of it.
void makeRoom(SString& text, std::size_t added) {
  const std::size_t needed = text.length() + added;
  const std::size_t roomy = needed + needed / 2;
  if (needed <= text.capacity() || roomy > SString::maxSize) return;
  try {
    text.reserve(static_cast<SString::Size>(roomy));
  } catch (const std::bad_alloc&) {
    return;  // there may be enough for the chunk itself
  }
}

bool isWaiting(ssize_t result) {
  return result < 0 && (errno == EAGAIN || errno == EINTR);
}

/// The group has all that did not leave it; who left it is found below the child while that lives.
void killAll(pid_t child) {
  const std::vector<pid_t> others = descendantsOf(child);
  // Whoever has ended meanwhile is not found, and need not be.
  static_cast<void>(::kill(-child, SIGKILL));
  for (const pid_t other : others) static_cast<void>(::kill(other, SIGKILL));
}

}  // namespace

ssize_t readPipeChunk(int fd, SString* text, ProgressSink& progress) {
  char chunk[kChunkSize + 1];
  const ssize_t result = ::read(fd, chunk, kChunkSize);
  if (result <= 0) return result;
  chunk[result] = '\0';
  if (text != nullptr) {
    makeRoom(*text, static_cast<std::size_t>(result));
    text->append(chunk);
  }
  progress.addProgressDots(1);
  return result;
}

ChildWatch::ChildWatch(pid_t child, const ChildCommand& command, SignalRelay& relay,
                       ProgressSink& progress)
    : child_(child),
      limits_(command.limits),
      relay_(relay),
      progress_(progress),
      end_(static_cast<int>(::syscall(kPidfdOpen, child, 0))),
      out_{.text = command.stdoutText},
      err_{.text = command.stderrText},
      deadline_(limits_.seconds == 0
                    ? INT64_MAX
                    : nowMilliseconds() + limits_.seconds * kMillisecondsPerSecond) {
  relay_.setShell(child);
}

void ChildWatch::collectFrom(int stdoutFd, int stderrFd) {
  makeNonBlocking(stdoutFd);
  makeNonBlocking(stderrFd);
  out_.fd = stdoutFd;
  err_.fd = stderrFd;
  out_.isOpen = err_.isOpen = true;
}

/// The state of the child is asked for before its output is read: what it wrote last is there then.
ChildResult ChildWatch::run() {
  while (!isDone()) {
    relay_.handle();
    reap();
    const bool hasRead = readBoth();
    const ChildEnd limit = brokenLimit(hasRead);
    if (limit != ChildEnd::Exited) return endBeyond(limit);
    if (!hasRead && !isDone()) wait();
  }
  relay_.shellEnded(status_);
  return {.exitCode = WEXITSTATUS(status_)};
}

void ChildWatch::reap() {
  int status = 0;
  if (!hasEnded_) {
    const pid_t result = ::waitpid(child_, &status, WNOHANG);
    if (result < 0 && errno != EINTR) {
      throw LauncherException("Error waiting for child process: " + systemErrorText());
    }
    if (result > 0) noteEnd(status);
  }
  // Those that the launcher inherited from whoever became the launcher, or adopted as the first
  // process of its machine. The child may end in between.
  pid_t other = 0;
  while ((other = ::waitpid(-1, &status, WNOHANG)) > 0) {
    if (other == child_) noteEnd(status);
  }
}

void ChildWatch::noteEnd(int status) {
  hasEnded_ = true;
  status_ = status;
  relay_.setShell(-1);  // its number may be another process's from now on
}

/// Reads one chunk from each stream; false when neither had any.
bool ChildWatch::readBoth() {
  const bool fromOut = readStream(out_);
  const bool fromErr = readStream(err_);
  return fromOut || fromErr;
}

bool ChildWatch::readStream(Stream& stream) {
  if (!stream.isOpen) return false;
  const ssize_t result = readPipeChunk(stream.fd, stream.text, progress_);
  if (result > 0) {
    bytes_ += static_cast<std::uint64_t>(result);
    return true;
  }
  stream.isOpen = isWaiting(result);
  return false;
}

void ChildWatch::wait() {
  pollfd fds[] = {{out_.isOpen ? out_.fd : kNoFd, POLLIN, 0},
                  {err_.isOpen ? err_.fd : kNoFd, POLLIN, 0},
                  {hasEnded_ ? kNoFd : end_.get(), POLLIN, 0}};
  const int milliseconds = waitMilliseconds();
  const timespec timeout = {milliseconds / kMillisecondsPerSecond,
                            milliseconds % kMillisecondsPerSecond * kNanosecondsPerMillisecond};
  const BlockedSignals blocked;
  if (relay_.isPending()) return;
  // An early return only looks again.
  static_cast<void>(
      ::ppoll(fds, 3, milliseconds == kNoTimeout ? nullptr : &timeout, &blocked.previous()));
}

int ChildWatch::waitMilliseconds() const {
  const std::int64_t left = deadline_ - nowMilliseconds();
  if (!hasEnded_ && !end_.isOpen()) return kPollMilliseconds;
  if (left > INT_MAX) return kNoTimeout;
  return left < 0 ? 0 : static_cast<int>(left);
}

/// A launcher that was stopped for a while comes too late to tell how long the child took: one that
/// has ended by then is not reproached with the time.
ChildEnd ChildWatch::brokenLimit(bool hasRead) const {
  if (limits_.outputBytes != 0 && bytes_ > limits_.outputBytes) return ChildEnd::OutputLimit;
  if (hasEnded_ && (hasRead || isDone())) return ChildEnd::Exited;
  return nowMilliseconds() >= deadline_ ? ChildEnd::TimeLimit : ChildEnd::Exited;
}

ChildResult ChildWatch::endBeyond(ChildEnd limit) {
  killAll(child_);
  while (!hasEnded_) {
    reap();
    if (!hasEnded_) wait();
  }
  return {.exitCode = 0, .end = limit};
}

}  // namespace vessant
