#include "support/StandardStreams.h"

#include <array>
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

OutputCapture::OutputCapture(int descriptor) : file_(fileWith()), descriptor_(descriptor) {
  std::fflush(nullptr);
  before_ = replaceDescriptor(descriptor_, file_.get());
}

OutputCapture::~OutputCapture() {
  std::fflush(nullptr);
  putBack(descriptor_, before_);
}

std::string OutputCapture::text() const {
  std::fflush(nullptr);
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
