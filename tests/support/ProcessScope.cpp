#include "support/ProcessScope.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kOrdinaryUser = 65534;

void require(bool done, const char* what) {
  if (!done) throw std::runtime_error(std::string("cannot change ") + what);
}

}  // namespace

ScopedEnvironment::ScopedEnvironment(const std::string& name,
                                     const std::optional<std::string>& value) {
  if (value) {
    set(name, *value);
  } else {
    unset(name);
  }
}

ScopedEnvironment::~ScopedEnvironment() {
  for (const auto& [name, value] : before_) {
    if (value) {
      ::setenv(name.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name.c_str());
    }
  }
}

void ScopedEnvironment::set(const std::string& name, const std::string& value) {
  keep(name);
  ::setenv(name.c_str(), value.c_str(), 1);
}

void ScopedEnvironment::unset(const std::string& name) {
  keep(name);
  ::unsetenv(name.c_str());
}

void ScopedEnvironment::keep(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  before_.emplace(name, value == nullptr ? std::nullopt : std::optional<std::string>(value));
}

ScopedDirectory::ScopedDirectory(const std::string& path)
    : before_(::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  require(before_ >= 0 && ::chdir(path.c_str()) == 0, "the directory");
}

ScopedDirectory::~ScopedDirectory() {
  static_cast<void>(!::fchdir(before_));
  ::close(before_);
}

ScopedUmask::ScopedUmask(mode_t mask) : before_(::umask(mask)) {}

ScopedUmask::~ScopedUmask() {
  ::umask(before_);
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

std::size_t openDescriptors() {
  const fs::directory_iterator descriptors("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

}  // namespace vessant::test
