// GenericDeque, the one container under every list of the launcher.
//
// An ordered, indexable list of owned entries; an entry owns its payload, so removing an entry or
// destroying the list destroys the payload too. Slots 0 .. count-1 hold the entries in order; the
// slots behind them up to the capacity are free. Indexing takes constant time, inserting and
// removing move pointers only. The slot array grows by 30 and never shrinks while the list lives,
// which is thrifty for the short lists that the launcher holds; for a long one the allocator moves
// whole pages instead of copying.
//
// The typed lists of PtrDeque.h and StringDeque.h are what other code uses.
#pragma once

#include <cstdint>
#include <memory>

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

}  // namespace vessant
