#include "packer/Input.h"

#include <cerrno>

#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "packer/ByteSource.h"
#include "packer/Text.h"

namespace vessant {
namespace {

std::string readStandardInput() {
  constexpr std::size_t kBlock = 1U << 16U;
  std::string text;
  while (text.size() <= ByteSource::kLargestText) {
    const std::size_t end = text.size();
    text.resize(end + kBlock);
    const ssize_t count = ::read(STDIN_FILENO, text.data() + end, kBlock);
    text.resize(end + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw failure("standard input: " + str(systemErrorText()));
    if (count == 0) return text;
  }
  throw failure("standard input: is too large for a text file");
}

}  // namespace

std::string readTextInput(const std::string& path) {
  return path == kStandardStream ? readStandardInput() : ByteSource(path).text();
}

}  // namespace vessant
