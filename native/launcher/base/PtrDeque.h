// The typed front of GenericDeque: a list that owns objects of one type. Each room names its own
// lists with one-line aliases, such as
//
//     using TagFilePtrDE = PtrDE<TagFile>;
//     using TagFilePtrDeque = PtrDeque<TagFile>;
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "launcher/base/GenericDeque.h"

namespace vessant {

/// An entry that owns a `Payload`.
template <class Payload>
class PtrDE : public DequeEntry {
 public:
  explicit PtrDE(std::unique_ptr<Payload> payload) : DequeEntry(payload.release()) {}
  ~PtrDE() override { delete static_cast<Payload*>(payload()); }
};

/// Walks a list whose entries own `Payload` objects (const for a list that hands out its payloads
/// to be read only). Good until the list changes.
template <class Payload>
class DequeIterator {
 public:
  DequeIterator(const GenericDeque* list, std::int32_t index) : list_(list), index_(index) {}
  Payload& operator*() const { return *static_cast<Payload*>(list_->entryAt(index_)->payload()); }
  DequeIterator& operator++() { return ++index_, *this; }
  bool operator==(const DequeIterator& other) const { return index_ == other.index_; }

 private:
  const GenericDeque* list_;
  std::int32_t index_;
};

/// A list that owns its `Payload` objects. References into the list stay good until their own
/// entry is removed; iterators only until the list changes.
template <class Payload>
class PtrDeque : public GenericDeque {
 public:
  using Iterator = DequeIterator<Payload>;

  /// Appends; the list takes ownership.
  void add(std::unique_ptr<Payload> payload) { insert(kAppend, std::move(payload)); }
  /// Inserts as `insertEntry` does; a payload that is not inserted stays with the caller.
  void insert(std::int32_t index, std::unique_ptr<Payload>&& payload) {
    if (index >= 0 && !isValidIndex(index)) return;
    insertEntry(index, std::make_unique<PtrDE<Payload>>(std::move(payload)));
  }
  /// The payload at `index`, or null when there is none.
  [[nodiscard]] Payload* get(std::int32_t index) const {
    const DequeEntry* entry = entryAt(index);
    return entry == nullptr ? nullptr : static_cast<Payload*>(entry->payload());
  }
  /// The last payload, or null when the list is empty.
  [[nodiscard]] Payload* getLast() const { return get(count() - 1); }

  [[nodiscard]] Iterator begin() const { return {this, 0}; }
  [[nodiscard]] Iterator end() const { return {this, count()}; }
};

}  // namespace vessant
