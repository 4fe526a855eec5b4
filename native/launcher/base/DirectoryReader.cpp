#include "launcher/base/DirectoryReader.h"

#include <sys/types.h>

namespace vessant {
namespace {

constexpr std::size_t kBufferSize = 64 * 1024;

bool isDots(const char* name) {
  if (name[0] != '.') return false;
  return name[1] == '\0' || (name[1] == '.' && name[2] == '\0');
}

}  // namespace

DirectoryReader::DirectoryReader() : buffer_(new std::byte[kBufferSize]) {}

void DirectoryReader::start(int directory) {
  directory_ = directory;
  filled_ = 0;
  position_ = 0;
}

dirent64* DirectoryReader::next() {
  while (position_ < filled_ || refill()) {
    auto* entry = reinterpret_cast<dirent64*>(buffer_.get() + position_);
    position_ += entry->d_reclen;
    if (!isDots(entry->d_name)) return entry;
  }
  return nullptr;
}

bool DirectoryReader::refill() {
  const ssize_t count = ::getdents64(directory_, buffer_.get(), kBufferSize);
  position_ = 0;
  filled_ = count > 0 ? static_cast<std::size_t>(count) : 0;
  return count > 0;
}

}  // namespace vessant
