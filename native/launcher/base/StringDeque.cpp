#include "launcher/base/StringDeque.h"

#include <memory>

namespace vessant {

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
