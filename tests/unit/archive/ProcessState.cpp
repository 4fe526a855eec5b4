#include "ProcessState.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace vessant::test {

namespace fs = std::filesystem;

namespace {

constexpr uid_t kOrdinaryUser = 65534;

void require(bool done, const char* what) {
  if (!done) throw std::runtime_error(std::string("cannot change ") + what);
}

}  // namespace

ScopedUmask::ScopedUmask(mode_t mask) : before_(::umask(mask)) {}

ScopedUmask::~ScopedUmask() {
  ::umask(before_);
}

ScopedCurrentDirectory::ScopedCurrentDirectory(const std::string& directory)
    : before_(fs::current_path().string()) {
  fs::current_path(directory);
}

ScopedCurrentDirectory::~ScopedCurrentDirectory() {
  std::error_code ignored;
  fs::current_path(before_, ignored);
}

ScopedVariable::ScopedVariable(const char* name, const std::optional<std::string>& value)
    : name_(name) {
  if (const char* before = std::getenv(name)) before_ = before;
  if (value) {
    ::setenv(name, value->c_str(), 1);
  } else {
    ::unsetenv(name);
  }
}

ScopedVariable::~ScopedVariable() {
  if (before_) {
    ::setenv(name_, before_->c_str(), 1);
  } else {
    ::unsetenv(name_);
  }
}

ScopedFileSizeLimit::ScopedFileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
  require(::getrlimit(RLIMIT_FSIZE, &before_) == 0, "the file size limit");
  const rlimit limit = {bytes, before_.rlim_max};
  require(::setrlimit(RLIMIT_FSIZE, &limit) == 0, "the file size limit");
}

ScopedFileSizeLimit::~ScopedFileSizeLimit() {
  ::setrlimit(RLIMIT_FSIZE, &before_);
  std::signal(SIGXFSZ, handler_);
}

ScopedOrdinaryUser::ScopedOrdinaryUser() {
  require(::seteuid(kOrdinaryUser) == 0, "the user");
}

ScopedOrdinaryUser::~ScopedOrdinaryUser() {
  if (::seteuid(0) != 0) std::abort();
}

mode_t permissionsOf(const std::string& path) {
  struct stat status = {};
  require(::lstat(path.c_str(), &status) == 0, path.c_str());
  return status.st_mode & ALLPERMS;
}

std::size_t openDescriptors() {
  const fs::directory_iterator descriptors("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

}  // namespace vessant::test
