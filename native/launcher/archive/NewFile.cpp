#include "launcher/archive/NewFile.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/PathUtil.h"

namespace vessant {
namespace {

constexpr mode_t kFileMode = 0666;
constexpr mode_t kExecutable = S_IXUSR | S_IXGRP | S_IXOTH;

}  // namespace

NewFile::NewFile(const SString& directory, const SString& name, const UniqueFd& keep)
    : name_(name) {
  if (!directory.isEmpty()) {
    directory_.reset(::open(directory.cString(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    directoryFd_ = directory_.get();
  }
  error_ = directoryFd_ == -1 ? errno : create(keep);
}

int NewFile::create(const UniqueFd& keep) {
  int error = open();
  if (error != EEXIST) return error;
  error = clearPlace(keep);
  return error != 0 ? error : open();
}

int NewFile::open() {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  file_.reset(::openat(directoryFd_, name_.cString(), kFlags, kFileMode));
  return file_.isOpen() ? 0 : errno;
}

/// What lies in the way is removed instead of cut: whoever laid a link there, or reads the old
/// file, is none the wiser.
int NewFile::clearPlace(const UniqueFd& keep) const {
  const std::optional<FileIdentity> found = identityOf(directoryFd_, name_.cString());
  if (found && found == identityOf(keep.get())) return ETXTBSY;
  return ::unlinkat(directoryFd_, name_.cString(), 0) == 0 || errno == ENOENT ? 0 : errno;
}

void NewFile::makeExecutable() const {
  struct stat status = {};
  // Either failure shows when the program is started.
  if (::fstat(file_.get(), &status) != 0) return;
  static_cast<void>(::fchmod(file_.get(), (status.st_mode & ALLPERMS) | kExecutable));
}

int NewFile::close() {
  return file_.close() == 0 || errno == EINTR ? 0 : errno;
}

void NewFile::remove() const {
  static_cast<void>(::unlinkat(directoryFd_, name_.cString(), 0));
}

}  // namespace vessant
