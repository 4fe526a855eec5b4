// Lists of texts, and of pairs of texts.
#pragma once

#include <cstdint>
#include <string_view>

#include "launcher/base/PtrDeque.h"
#include "launcher/base/SString.h"

namespace vessant {

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
