#include "launcher/base/SString.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

namespace vessant {
namespace {

using Size = SString::Size;

constexpr unsigned char kMostSharers = 254;
constexpr unsigned char kFrozen = 255;
constexpr Size kRounding = 31;          // capacities end in five one bits: 31, 63, 95, ...
constexpr std::size_t kBlockExtra = 2;  // the count byte and the final NUL

unsigned char& sharers(char* data) {
  return reinterpret_cast<unsigned char&>(data[-1]);
}

Size roundedCapacity(Size capacity) {
  const Size rounded = capacity | kRounding;
  return rounded > SString::maxSize ? capacity : rounded;
}

void freeBlock(char* data) {
  std::free(data - 1);
}

/// (Re)allocates a block, first with the rounded capacity, then, should memory be short, with the
/// exact one. `capacity` becomes what the block holds. `data` may be null.
char* allocateBlock(char* data, Size& capacity) {
  void* old = data == nullptr ? nullptr : data - 1;
  const Size rounded = roundedCapacity(capacity);
  void* block = std::realloc(old, rounded + kBlockExtra);
  if (block != nullptr) {
    capacity = rounded;
  } else {
    block = std::realloc(old, capacity + kBlockExtra);
    if (block == nullptr) throw std::bad_alloc();
  }
  char* result = static_cast<char*>(block) + 1;
  if (data == nullptr) sharers(result) = 0;
  return result;
}

bool contains(std::string_view set, char character) {
  return set.find(character) != std::string_view::npos;
}

Size asPosition(std::size_t found) {
  return found == std::string_view::npos ? SString::npos : static_cast<Size>(found);
}

Size checkedSize(std::size_t length) {
  if (length > SString::maxSize) throw LengthException();
  return static_cast<Size>(length);
}

/// The sign alone: what memcmp returns beyond it differs from one machine to the next.
int compareBytes(std::string_view left, std::string_view right) {
  const std::size_t common = std::min(left.size(), right.size());
  const int difference = common == 0 ? 0 : std::memcmp(left.data(), right.data(), common);
  if (difference != 0) return difference < 0 ? -1 : 1;
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

}  // namespace

// Construct and destroy.

SString::SString(const char* text) {
  if (text != nullptr) assign(std::string_view(text));
}

SString::SString(std::string_view text) {
  assign(text);
}

SString::SString(const SString& source) {
  share(source);
}

SString::SString(SString&& source) noexcept
    : data_(std::exchange(source.data_, nullptr)),
      length_(std::exchange(source.length_, 0)),
      capacity_(std::exchange(source.capacity_, 0)) {}

SString::SString(const SString& source, Size position, Size count) {
  assign(source, position, count);
}

SString::SString(Size count, char character) {
  assign(count, character);
}

SString::~SString() {
  release();
}

const SString& SString::empty() {
  static const SString kEmpty;
  return kEmpty;
}

// Assign.

SString& SString::operator=(const SString& source) {
  if (this != &source) share(source);
  return *this;
}

/// A swap: the source, which is about to go, takes the old block along.
SString& SString::operator=(SString&& source) noexcept {
  std::swap(data_, source.data_);
  std::swap(length_, source.length_);
  std::swap(capacity_, source.capacity_);
  return *this;
}

SString& SString::assign(std::string_view text) {
  if (aliases(text)) return *this = SString(text);  // a part of this very string
  const Size length = checkedSize(text.size());
  grow(length, true);
  if (length > 0) std::memcpy(data_, text.data(), length);
  terminate(length);
  return *this;
}

SString& SString::assign(const SString& source, Size position, Size count) {
  count = source.clip(position, count);
  if (position == 0 && count == source.length_) return *this = source;
  return assign(source.view().substr(position, count));
}

SString& SString::assign(Size count, char character) {
  grow(checkedSize(count), true);
  if (count > 0) std::memset(data_, character, count);
  terminate(count);
  return *this;
}

// Append, insert, erase, replace: all open a gap and fill it.

SString& SString::append(std::string_view text) {
  return replace(length_, 0, text);
}

SString& SString::append(const SString& source, Size position, Size count) {
  count = source.clip(position, count);
  return append(source.view().substr(position, count));
}

SString& SString::append(Size count, char character) {
  return replace(length_, 0, count, character);
}

SString& SString::insert(Size position, std::string_view text) {
  return replace(position, 0, text);
}

SString& SString::insert(Size position, Size count, char character) {
  return replace(position, 0, count, character);
}

SString& SString::erase(Size position, Size count) {
  return replace(position, count, std::string_view());
}

SString& SString::replace(Size position, Size count, std::string_view text) {
  if (aliases(text)) {
    const SString copy(text);
    return replace(position, count, copy.view());
  }
  count = clip(position, count);
  checkGrowth(text.size());
  if (count == 0 && text.empty()) return *this;
  char* gap = openGap(position, count, static_cast<Size>(text.size()));
  if (!text.empty()) std::memcpy(gap, text.data(), text.size());
  return *this;
}

SString& SString::replace(Size position, Size fromCount, Size toCount, char character) {
  fromCount = clip(position, fromCount);
  checkGrowth(toCount);
  if (fromCount == 0 && toCount == 0) return *this;
  char* gap = openGap(position, fromCount, toCount);
  if (toCount > 0) std::memset(gap, character, toCount);
  return *this;
}

void SString::resize(Size length, char padding) {
  if (length > length_) {
    append(length - length_, padding);
  } else {
    erase(length);
  }
}

void SString::reserve(Size capacity) {
  const Size length = length_;
  grow(std::max(capacity, length), false);
  if (data_ != nullptr) terminate(length);
}

// Find. The sets are a few characters long, so each byte is looked up in them directly.

Size SString::find(std::string_view text, Size position) const {
  return asPosition(view().find(text, position));
}

Size SString::find(char character, Size position) const {
  return asPosition(view().find(character, position));
}

Size SString::rfind(std::string_view text, Size position) const {
  return asPosition(view().rfind(text, position));
}

Size SString::findFirstOf(std::string_view set, Size position) const {
  for (Size i = position; i < length_; ++i) {
    if (contains(set, data_[i])) return i;
  }
  return npos;
}

Size SString::findLastOf(std::string_view set, Size position) const {
  for (Size i = length_ == 0 ? 0 : std::min(position, length_ - 1) + 1; i > 0; --i) {
    if (contains(set, data_[i - 1])) return i - 1;
  }
  return npos;
}

Size SString::findFirstNotOf(std::string_view set, Size position) const {
  for (Size i = position; i < length_; ++i) {
    if (!contains(set, data_[i])) return i;
  }
  return npos;
}

Size SString::findFirstNotOf(char character, Size position) const {
  return findFirstNotOf(std::string_view(&character, 1), position);
}

Size SString::findLastNotOf(std::string_view set, Size position) const {
  for (Size i = length_ == 0 ? 0 : std::min(position, length_ - 1) + 1; i > 0; --i) {
    if (!contains(set, data_[i - 1])) return i - 1;
  }
  return npos;
}

Size SString::findLastNotOf(char character, Size position) const {
  return findLastNotOf(std::string_view(&character, 1), position);
}

// Compare.

int SString::compare(std::string_view text) const {
  return compareBytes(view(), text);
}

int SString::compare(Size position, Size count, std::string_view text) const {
  count = clip(position, count);
  return compareBytes(view().substr(position, count), text);
}

int SString::compare(Size position, Size count, const SString& other, Size otherPosition,
                     Size otherCount) const {
  otherCount = other.clip(otherPosition, otherCount);
  return compare(position, count, other.view().substr(otherPosition, otherCount));
}

// Access.

char SString::at(Size index) const {
  if (index >= length_) throw RangeException();
  return data_[index];
}

char& SString::mutableAt(Size index) {
  if (index >= length_) throw RangeException();
  if (isShared()) split(length_);
  sharers(data_) = kFrozen;  // no later copy may see what the reference changes
  return data_[index];
}

SString SString::substr(Size position, Size count) const {
  return {*this, position, count};
}

Size SString::copy(char* buffer, Size count, Size position) const {
  count = clip(position, count);
  if (count > 0) std::memcpy(buffer, data_ + position, count);
  return count;
}

// The block.

bool SString::isShared() const {
  return data_ != nullptr && sharers(data_) != 0 && sharers(data_) != kFrozen;
}

/// Whether a change of this string would pull the text from under the change. std::less, because
/// the built-in operators order no pointers into different blocks.
bool SString::aliases(std::string_view text) const {
  if (data_ == nullptr || text.empty()) return false;
  const std::less<> before;
  return !before(text.data(), data_) && before(text.data(), data_ + capacity_ + 1);
}

void SString::release() {
  if (data_ == nullptr) return;
  if (isShared()) {
    --sharers(data_);
  } else {
    freeBlock(data_);
  }
  data_ = nullptr;
  length_ = 0;
  capacity_ = 0;
}

/// A block that is frozen or has all the sharers that its byte can count is copied instead.
void SString::share(const SString& source) {
  if (source.data_ == nullptr || sharers(source.data_) >= kMostSharers) {
    assign(source.view());
    return;
  }
  ++sharers(source.data_);  // before the release: both may own the same block
  release();
  data_ = source.data_;
  length_ = source.length_;
  capacity_ = source.capacity_;
}

void SString::grow(Size length, bool replacing) {
  if (length > maxSize) throw LengthException();
  if (isShared()) {
    if (length == 0) return release();
    return replacing ? replaceBlock(length) : split(length);
  }
  if (length == 0) {
    if (replacing) release();
    return;
  }
  // A large block is given back even for a short text, not kept for the rest of the run.
  if (replacing && (capacity_ > kRounding || capacity_ < length)) return replaceBlock(length);
  if (capacity_ >= length) return;
  data_ = allocateBlock(data_, length);
  capacity_ = length;
}

/// The new block comes first: without memory for it the string stays as it was.
void SString::replaceBlock(Size capacity) {
  char* block = allocateBlock(nullptr, capacity);
  release();
  data_ = block;
  capacity_ = capacity;
}

/// Leaves a shared block for a private copy of it.
void SString::split(Size capacity) {
  char* block = allocateBlock(nullptr, capacity);
  const Size kept = std::min(length_, capacity);
  std::memcpy(block, data_, kept);
  release();
  data_ = block;
  capacity_ = capacity;
  terminate(kept);
}

void SString::terminate(Size length) {
  length_ = length;
  if (data_ != nullptr) data_[length] = '\0';
}

char* SString::openGap(Size position, Size removed, Size added) {
  const Size length = length_;
  const Size newLength = length - removed + added;
  grow(std::max(newLength, length), false);  // never less than the tail that is about to move
  std::memmove(data_ + position + added, data_ + position + removed, length - position - removed);
  terminate(newLength);
  return data_ + position;
}

Size SString::clip(Size position, Size count) const {
  if (position > length_) throw RangeException();
  return std::min(count, length_ - position);
}

void SString::checkGrowth(std::size_t added) const {
  // As a difference, because the sum could wrap.
  if (added >= npos - length_) throw LengthException();
}

}  // namespace vessant
