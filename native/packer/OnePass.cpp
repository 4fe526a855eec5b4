#include "packer/OnePass.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace vessant {

OnePass::OnePass(const Installer& installer)
    : installer_(installer),
      order_(installer.entries().size()),
      fileSums_(installer.entries().size()) {
  std::iota(order_.begin(), order_.end(), 0);
  std::stable_sort(order_.begin(), order_.end(), [&installer](std::size_t a, std::size_t b) {
    const FileIndexEntry& first = installer.entries()[a];
    const FileIndexEntry& second = installer.entries()[b];
    return std::pair(first.offset, first.length) < std::pair(second.offset, second.length);
  });
}

void OnePass::offer(std::uint64_t position, std::string_view bytes) {
  constexpr std::uint64_t kLittle = 1U << 18U;
  if (position + bytes.size() <= position_ || position > position_ + kLittle) return;
  readTo(position);
  bytes.remove_prefix(position_ - position);
  add(bytes);
}

void OnePass::readTo(std::uint64_t position) {
  if (position <= position_) return;
  const ByteSource& file = installer_.bytes();
  file.part(position_, position - position_, file.label()).forEachBlock([this](auto block) {
    add(block);
  });
}

/// Gives each stretch of the bytes to the file whose it is.
void OnePass::add(std::string_view bytes) {
  whole_.add(bytes);
  const std::uint64_t end = position_ + bytes.size();
  while (current_ < order_.size()) {
    const FileIndexEntry& entry = installer_.entries()[order_[current_]];
    const std::uint64_t fileEnd = std::uint64_t{entry.offset} + entry.length;
    const std::uint64_t from = std::max<std::uint64_t>(entry.offset, position_);
    const std::uint64_t to = std::min(fileEnd, end);
    if (from < to) currentSum_.add(bytes.substr(from - position_, to - from));
    if (fileEnd > end) break;
    fileSums_[order_[current_++]] = std::exchange(currentSum_, Sha256()).finish();
  }
  position_ = end;
}

std::string OnePass::wholeSum() {
  readTo(installer_.size());
  add("");  // for files of no length at the very end
  return whole_.finish();
}

}  // namespace vessant
