#include "packer/MappedBytes.h"

#include <sys/mman.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "packer/Text.h"

namespace vessant {

/// A mapping begins at a page; the stretch may begin behind that. An empty one needs no mapping.
MappedBytes::MappedBytes(const ByteSource& source) {
  if (source.length() == 0) return;
  const std::uint64_t page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
  const std::uint64_t skipped = source.offset() % page;
  length_ = static_cast<std::size_t>(source.length() + skipped);
  start_ = ::mmap(nullptr, length_, PROT_READ, MAP_PRIVATE, source.descriptor(),
                  static_cast<off_t>(source.offset() - skipped));
  if (start_ == MAP_FAILED) {
    start_ = nullptr;
    throw failure(printable(source.label()) + ": " + str(systemErrorText()));
  }
  bytes_ = {static_cast<const char*>(start_) + skipped, static_cast<std::size_t>(source.length())};
}

MappedBytes::~MappedBytes() {
  if (start_ != nullptr) ::munmap(start_, length_);
}

}  // namespace vessant
