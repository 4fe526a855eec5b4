#include "packer/OutputFile.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "packer/PendingWork.h"
#include "packer/Text.h"

namespace vessant {
namespace {

mode_t processMask() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return mask;
}

/// Where the links at `path` lead, so that the file is replaced, or made, and not the link. Links
/// in a circle are left for the system to refuse.
std::filesystem::path followLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;
  std::error_code none;
  for (int i = 0; i < kMostLinks && std::filesystem::is_symlink(path, none); ++i) {
    path = path.parent_path() / std::filesystem::read_symlink(path, none);
  }
  return path;
}

}  // namespace

OutputFile::OutputFile(const std::string& path, mode_t mode)
    : name_(path == kStandardStream ? "standard output" : printable(path)),
      finalPath_(followLinks(path)),
      mode_(mode) {
  writer_.emplace(path == kStandardStream ? openStandardOutput() : open(), name_);
}

UniqueFd OutputFile::openStandardOutput() const {
  UniqueFd fd(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
  if (!fd.isOpen()) fail(errno);
  return fd;
}

UniqueFd OutputFile::open() {
  struct stat status = {};
  const bool exists = ::stat(finalPath_.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) fail(errno);
  if (exists && S_ISDIR(status.st_mode)) fail(EISDIR);
  if (!exists || S_ISREG(status.st_mode)) return openPartial();
  UniqueFd fd(::open(finalPath_.c_str(), O_WRONLY | O_CLOEXEC));
  if (!fd.isOpen()) fail(errno);
  return fd;
}

UniqueFd OutputFile::openPartial() {
  partialPath_ = std::filesystem::path(finalPath_).replace_filename(".vspack.XXXXXX");
  PendingWork::remember(partialPath_.c_str());
  UniqueFd fd(::mkostemp(partialPath_.data(), O_CLOEXEC));
  if (fd.isOpen()) return fd;
  const int error = errno;
  PendingWork::forget(partialPath_.c_str());
  fail(error);
}

OutputFile::~OutputFile() {
  if (partialPath_.empty()) return;
  ::unlink(partialPath_.c_str());
  PendingWork::forget(partialPath_.c_str());
}

void OutputFile::publish() {
  writer_->flush();
  if (partialPath_.empty()) return;
  if (::fchmod(writer_->descriptor(), mode_ & ~processMask()) != 0) fail(errno);
  writer_->close();
  if (::rename(partialPath_.c_str(), finalPath_.c_str()) != 0) fail(errno);
  PendingWork::forget(partialPath_.c_str());
  partialPath_.clear();
}

void OutputFile::fail(int error) const {
  throw failure(name_ + ": " + str(systemErrorText(error)));
}

}  // namespace vessant
