#include "packer/PartialFile.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/SystemError.h"

namespace vessant {
namespace {

/// What an ordinary new program gets: everything that the process's mask leaves.
mode_t programPermissions() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0777 & ~mask;
}

}  // namespace

PartialFile::PartialFile(const SString& finalPath)
    : finalPath_(finalPath), partialPath_(std::string(finalPath.view()) + ".XXXXXX") {
  const int fd = ::mkostemp(partialPath_.data(), O_CLOEXEC);
  if (fd < 0) fail();
  file_.reset(::fdopen(fd, "wb"));
  if (file_ == nullptr) fail();
}

PartialFile::~PartialFile() {
  if (!published_) ::unlink(partialPath_.c_str());
}

void PartialFile::write(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) fail();
}

void PartialFile::close() {
  if (std::fclose(file_.release()) != 0) fail();
}

void PartialFile::publish() {
  if (::chmod(partialPath_.c_str(), programPermissions()) != 0 ||
      ::rename(partialPath_.c_str(), finalPath_.cString()) != 0) {
    fail();
  }
  published_ = true;
}

void PartialFile::fail() const {
  const SString reason = systemErrorText();
  throw LauncherException(finalPath_ + ": " + reason);
}

}  // namespace vessant
