#include "unit/driver/ProcessScope.h"

#include <array>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

namespace vessant::test {
namespace {

void require(bool done, const char* what) {
  if (!done) throw std::runtime_error(what);
}

/// Puts `file` in place of a standard descriptor and returns a copy of what was there.
int replaceDescriptor(int standard, std::FILE* file) {
  const int before = ::fcntl(standard, F_DUPFD_CLOEXEC, 10);
  require(before >= 0 && ::dup2(::fileno(file), standard) == standard, "cannot replace a stream");
  return before;
}

void putBack(int standard, int before) {
  ::dup2(before, standard);
  ::close(before);
}

/// What an earlier test left in the buffer or found at the end must not be there for this one.
void forgetInput() {
  std::fflush(stdin);
  std::clearerr(stdin);
}

}  // namespace

ScopedFile fileWith(const std::string& text) {
  ScopedFile file(std::tmpfile());
  require(file != nullptr, "cannot make a temporary file");
  require(std::fwrite(text.data(), 1, text.size(), file.get()) == text.size(), "cannot write");
  std::rewind(file.get());
  return file;
}

std::string contentOf(std::FILE* file) {
  std::fflush(file);
  std::string text;
  std::array<char, 4096> chunk;
  ssize_t count = 0;
  while ((count = ::pread(::fileno(file), chunk.data(), chunk.size(),
                          static_cast<off_t>(text.size()))) > 0) {
    text.append(chunk.data(), static_cast<std::size_t>(count));
  }
  return text;
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
  require(before_ >= 0 && ::chdir(path.c_str()) == 0, "cannot change the directory");
}

ScopedDirectory::~ScopedDirectory() {
  static_cast<void>(!::fchdir(before_));
  ::close(before_);
}

StdoutCapture::StdoutCapture() : file_(fileWith()) {
  std::fflush(stdout);
  before_ = replaceDescriptor(STDOUT_FILENO, file_.get());
}

StdoutCapture::~StdoutCapture() {
  std::fflush(stdout);
  putBack(STDOUT_FILENO, before_);
}

std::string StdoutCapture::text() const {
  std::fflush(stdout);
  return contentOf(file_.get());
}

ScopedInput::ScopedInput(const std::string& text) : file_(fileWith(text)) {
  forgetInput();
  std::fflush(file_.get());
  before_ = replaceDescriptor(STDIN_FILENO, file_.get());
}

ScopedInput::~ScopedInput() {
  forgetInput();
  putBack(STDIN_FILENO, before_);
}

}  // namespace vessant::test
