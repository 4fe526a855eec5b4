// The lists of the launcher: GenericDeque, the one container under all of them, and its two typed
// faces, PtrDeque for objects and StringDeque for texts. Other code uses the faces, and names its
// own lists with one-line aliases, such as
//
//     using TagFilePtrDE = PtrDE<TagFile>;
//     using TagFilePtrDeque = PtrDeque<TagFile>;
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "launcher/base/SString.h"

namespace vessant {

/// One place in a list. The payload is untyped here: the typed entry that is derived from this
/// destroys it.
class DequeEntry {
 public:
  explicit DequeEntry(void* payload) : payload_(payload) {}
  DequeEntry(const DequeEntry&) = delete;
  DequeEntry& operator=(const DequeEntry&) = delete;
  virtual ~DequeEntry() = default;

  [[nodiscard]] void* payload() const { return payload_; }

 private:
  void* payload_;
};

/// An ordered, indexable list of owned entries; an entry owns its payload, so removing an entry or
/// destroying the list destroys the payload too. Slots 0 .. count-1 hold the entries in order; the
/// slots behind them up to the capacity are free. Indexing takes constant time, inserting and
/// removing move pointers only. The slot array grows by 30 and never shrinks while the list lives,
/// which is thrifty for the short lists that the launcher holds; for a long one the allocator moves
/// whole pages instead of copying.
class GenericDeque {
 public:
  GenericDeque() = default;
  GenericDeque(const GenericDeque&) = delete;
  GenericDeque& operator=(const GenericDeque&) = delete;
  virtual ~GenericDeque();

  [[nodiscard]] std::int32_t count() const { return count_; }
  [[nodiscard]] std::int32_t capacity() const { return capacity_; }
  [[nodiscard]] bool isEmpty() const { return count_ == 0; }
  [[nodiscard]] bool isValidIndex(std::int32_t index) const { return 0 <= index && index < count_; }
  /// The entry at `index`, or null when there is none.
  [[nodiscard]] DequeEntry* entryAt(std::int32_t index) const;

  /// Inserts before the entry at `index`, or appends when `index` is negative. An index at or
  /// behind the end inserts nothing; `entry` then stays with the caller.
  void insertEntry(std::int32_t index, std::unique_ptr<DequeEntry>&& entry);
  /// Destroys the entry at `index` with its payload and closes the gap.
  void removeAt(std::int32_t index);
  void removeLast() { removeAt(count_ - 1); }
  /// Destroys every entry. The slots are kept for the next ones.
  void clear();
  /// Exchanges entries and slots. No entry moves in memory, so references to payloads stay good.
  void swap(GenericDeque& other) noexcept;

  static constexpr std::int32_t kAppend = -1;
  static constexpr std::int32_t kGrowthStep = 30;

 private:
  void makeRoom();

  DequeEntry** entries_ = nullptr;
  std::int32_t count_ = 0;
  std::int32_t growthStep_ = kGrowthStep;  // the same in all lists, so swap leaves it
  std::int32_t capacity_ = 0;
};

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

using SStringPtrDE = PtrDE<SString>;

/// A list of texts. Unlike the lists of objects it stores private copies of what it is given, and
/// it answers an index that is out of range with the empty text.
class StringDeque : public GenericDeque {
 public:
  using Iterator = DequeIterator<const SString>;

  void add(const SString& text) { insert(kAppend, text); }
  /// Inserts as GenericDeque::insertEntry does.
  void insert(std::int32_t index, const SString& text);
  /// The text at `index`; the empty text when there is none.
  [[nodiscard]] const SString& get(std::int32_t index) const;
  [[nodiscard]] const SString& getLast() const { return get(count() - 1); }
  /// Replaces the text at `index`, if there is one.
  void set(std::int32_t index, const SString& text);
  /// The index of the first text equal to `text`, or -1.
  [[nodiscard]] std::int32_t indexOf(std::string_view text) const;

  [[nodiscard]] Iterator begin() const { return {this, 0}; }
  [[nodiscard]] Iterator end() const { return {this, count()}; }
};

/// A name and a value, such as a Java system property and what it must be.
struct StringPair {
  SString name;
  SString value;
};

using StringPairPtrDE = PtrDE<StringPair>;
using StringPairPtrDeque = PtrDeque<StringPair>;

}  // namespace vessant
