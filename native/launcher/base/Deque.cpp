#include "launcher/base/Deque.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace vessant {

GenericDeque::~GenericDeque() {
  clear();
  std::free(entries_);
}

DequeEntry* GenericDeque::entryAt(std::int32_t index) const {
  return isValidIndex(index) ? entries_[index] : nullptr;
}

void GenericDeque::insertEntry(std::int32_t index, std::unique_ptr<DequeEntry>&& entry) {
  // Also for index == count: whoever wants the end says kAppend. Kept.
  if (index >= 0 && !isValidIndex(index)) return;
  const std::int32_t place = index < 0 ? count_ : index;
  makeRoom();  // before the entry is taken: it may throw, and the entry is the caller's till then
  DequeEntry** slot = entries_ + place;
  std::memmove(slot + 1, slot, static_cast<std::size_t>(count_ - place) * sizeof(*slot));
  *slot = entry.release();
  ++count_;
}

void GenericDeque::removeAt(std::int32_t index) {
  if (!isValidIndex(index)) return;
  DequeEntry** slot = entries_ + index;
  delete *slot;
  --count_;
  std::memmove(slot, slot + 1, static_cast<std::size_t>(count_ - index) * sizeof(*slot));
  entries_[count_] = nullptr;
}

void GenericDeque::clear() {
  for (std::int32_t i = 0; i < count_; ++i) {
    delete entries_[i];
    entries_[i] = nullptr;
  }
  count_ = 0;
}

void GenericDeque::swap(GenericDeque& other) noexcept {
  std::swap(entries_, other.entries_);
  std::swap(count_, other.count_);
  std::swap(capacity_, other.capacity_);
}

/// realloc suits the slots, which are plain pointers: it moves whole pages of a long list.
void GenericDeque::makeRoom() {
  if (capacity_ > count_) return;
  const std::int32_t capacity = capacity_ + growthStep_;
  void* slots = std::realloc(entries_, static_cast<std::size_t>(capacity) * sizeof(DequeEntry*));
  if (slots == nullptr) throw std::bad_alloc();
  entries_ = static_cast<DequeEntry**>(slots);
  capacity_ = capacity;
}

void StringDeque::insert(std::int32_t index, const SString& text) {
  insertEntry(index, std::make_unique<SStringPtrDE>(std::make_unique<SString>(text)));
}

const SString& StringDeque::get(std::int32_t index) const {
  const DequeEntry* entry = entryAt(index);
  return entry == nullptr ? SString::empty() : *static_cast<SString*>(entry->payload());
}

void StringDeque::set(std::int32_t index, const SString& text) {
  DequeEntry* entry = entryAt(index);
  if (entry != nullptr) *static_cast<SString*>(entry->payload()) = text;
}

std::int32_t StringDeque::indexOf(std::string_view text) const {
  for (std::int32_t i = 0; i < count(); ++i) {
    if (get(i) == text) return i;
  }
  return -1;
}

}  // namespace vessant
