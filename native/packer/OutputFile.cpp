#include "packer/OutputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "packer/PendingFiles.h"
#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::size_t kBufferSize = 1U << 16U;
constexpr const char* kStandardOutput = "-";

mode_t processMask() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return mask;
}

/// Where the links at `path` lead, so that the file is replaced and not the link.
std::string followLinks(const std::string& path) {
  std::error_code error;
  const std::filesystem::path target = std::filesystem::weakly_canonical(path, error);
  return error ? path : target.string();
}

bool isLink(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_symlink(path, error);
}

}  // namespace

OutputFile::OutputFile(const std::string& path, mode_t mode)
    : path_(path), finalPath_(isLink(path) ? followLinks(path) : path), mode_(mode) {
  open(path);
  if (!fd_.isOpen()) {
    const int error = errno;
    PendingFiles::forget(partialPath_.c_str());
    fail(error);
  }
}

void OutputFile::open(const std::string& path) {
  struct stat status = {};
  if (path == kStandardOutput) {
    fd_.reset(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
    return;
  }
  const bool exists = ::stat(finalPath_.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) fail(EISDIR);
  if (exists && !S_ISREG(status.st_mode)) {
    fd_.reset(::open(finalPath_.c_str(), O_WRONLY | O_CLOEXEC));
    return;
  }
  partialPath_ = std::filesystem::path(finalPath_).replace_filename(".vspack.XXXXXX");
  PendingFiles::remember(partialPath_.c_str());
  fd_.reset(::mkostemp(partialPath_.data(), O_CLOEXEC));
}

OutputFile::~OutputFile() {
  if (partialPath_.empty()) return;
  ::unlink(partialPath_.c_str());
  PendingFiles::forget(partialPath_.c_str());
}

void OutputFile::write(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > kBufferSize) flush();
  if (bytes.size() >= kBufferSize) {
    writeFully(bytes);
  } else {
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
  }
  position_ += bytes.size();
}

void OutputFile::append(const ByteSource& source, const Advance& advance) {
  flush();
  const std::uint64_t copied = copyInKernel(source, advance);
  const ByteSource rest = source.part(copied, source.length() - copied, source.label());
  rest.forEachBlock([this, &advance](std::string_view block) {
    write(block);
    if (advance) advance(block.size());
  });
}

/// Returns how many bytes the kernel could copy. What then goes wrong in reading or writing the
/// rest is told by those who do it.
std::uint64_t OutputFile::copyInKernel(const ByteSource& source, const Advance& advance) {
  constexpr std::uint64_t kStep = 1U << 24U;
  auto from = static_cast<off_t>(source.offset());
  std::uint64_t copied = 0;
  while (copied < source.length()) {
    const std::uint64_t wanted = std::min(source.length() - copied, kStep);
    const ssize_t count =
        ::copy_file_range(source.descriptor(), &from, fd_.get(), nullptr, wanted, 0);
    if (count <= 0) break;
    copied += static_cast<std::uint64_t>(count);
    if (advance) advance(static_cast<std::uint64_t>(count));
  }
  position_ += copied;
  return copied;
}

void OutputFile::padTo(std::uint64_t position) {
  static constexpr char kZeros[4096] = {};
  while (position_ < position) {
    write({kZeros, std::min<std::uint64_t>(sizeof(kZeros), position - position_)});
  }
}

void OutputFile::publish() {
  flush();
  if (partialPath_.empty()) return;
  if (::fchmod(fd_.get(), mode_ & ~processMask()) != 0) fail(errno);
  if (fd_.close() != 0) fail(errno);
  if (::rename(partialPath_.c_str(), finalPath_.c_str()) != 0) fail(errno);
  PendingFiles::forget(partialPath_.c_str());
  partialPath_.clear();
}

void OutputFile::flush() {
  writeFully({buffer_.data(), buffer_.size()});
  buffer_.clear();
}

void OutputFile::writeFully(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(fd_.get(), bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) fail(errno);
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void OutputFile::fail(int error) const {
  const std::string name = path_ == kStandardOutput ? "standard output" : printable(path_);
  throw failure(name + ": " + str(systemErrorText(error)));
}

}  // namespace vessant
