// SString, the launcher's one text type.
//
// A byte string with value semantics. Bytes are bytes: no character set is assumed and comparison
// is by unsigned value. Copies share one block until one of them changes (copy on write), so
// passing and returning by value is cheap. The count of sharers is one byte without locks: a string
// belongs to one thread.
//
// Positions and counts are unsigned 32-bit numbers. A count is clipped to what is there, so `npos`
// as a count means "to the end"; every search answers `npos` when it finds nothing. A position past
// the end throws RangeException; a result longer than `maxSize` throws LengthException and changes
// nothing.
//
// Wherever a text is taken as std::string_view, a C string, a (pointer, count) pair in braces and
// another SString all fit. A null C string is the empty text where one is constructed or assigned.
// A view may point into the string that is being changed.
#pragma once

#include <cstdint>
#include <string_view>

namespace vessant {

/// A position outside a string.
class RangeException {};

/// A string that would grow beyond SString::maxSize.
class LengthException {};

class SString {
 public:
  using Size = std::uint32_t;
  static constexpr Size npos = 0xFFFFFFFFU;
  static constexpr Size maxSize = 0xFFFFFFFDU;

  // Construct and destroy.
  SString() = default;
  SString(const char* text);       // NOLINT(google-explicit-constructor): texts are literals
  SString(std::string_view text);  // NOLINT(google-explicit-constructor)
  SString(const SString& source);
  SString(SString&& source) noexcept;
  SString(const SString& source, Size position, Size count);
  SString(Size count, char character);
  virtual ~SString();

  /// A process-wide empty string, for look-ups that answer with a reference.
  static const SString& empty();

  // Assign.
  SString& operator=(const SString& source);
  SString& operator=(SString&& source) noexcept;
  SString& operator=(std::string_view text) { return assign(text); }
  SString& operator=(const char* text) { return assign(text == nullptr ? "" : text); }
  SString& assign(std::string_view text);
  SString& assign(const SString& source, Size position, Size count);
  SString& assign(Size count, char character);

  // Append.
  SString& append(std::string_view text);
  SString& append(const SString& source, Size position, Size count);
  SString& append(Size count, char character);
  SString& operator+=(std::string_view text) { return append(text); }
  SString& operator+=(char character) { return append(1, character); }

  // Insert, erase, replace.
  SString& insert(Size position, std::string_view text);
  SString& insert(Size position, Size count, char character);
  SString& erase(Size position = 0, Size count = npos);
  SString& replace(Size position, Size count, std::string_view text);
  SString& replace(Size position, Size fromCount, Size toCount, char character);

  /// Grows with `padding` or drops the tail, to exactly `length` bytes.
  void resize(Size length, char padding = '\0');
  /// Makes room for at least `capacity` bytes.
  void reserve(Size capacity);

  // Find. A start position beyond the end finds nothing, but the backward searches start at the
  // last place that fits.
  [[nodiscard]] Size find(std::string_view text, Size position = 0) const;
  [[nodiscard]] Size find(char character, Size position = 0) const;
  [[nodiscard]] Size rfind(std::string_view text, Size position = npos) const;
  [[nodiscard]] Size findFirstOf(std::string_view set, Size position = 0) const;
  [[nodiscard]] Size findLastOf(std::string_view set, Size position = npos) const;
  [[nodiscard]] Size findFirstNotOf(std::string_view set, Size position = 0) const;
  [[nodiscard]] Size findFirstNotOf(char character, Size position = 0) const;
  [[nodiscard]] Size findLastNotOf(std::string_view set, Size position = npos) const;
  [[nodiscard]] Size findLastNotOf(char character, Size position = npos) const;

  // Compare. -1 when this text comes before the other, 0 when they are equal, else 1.
  [[nodiscard]] int compare(std::string_view text) const;
  [[nodiscard]] int compare(Size position, Size count, std::string_view text) const;
  [[nodiscard]] int compare(Size position, Size count, const SString& other, Size otherPosition,
                            Size otherCount) const;

  // Access.
  [[nodiscard]] Size length() const { return length_; }
  [[nodiscard]] Size capacity() const { return capacity_; }
  [[nodiscard]] bool isEmpty() const { return length_ == 0; }
  /// The bytes, followed by a NUL; never null. Valid until the string changes.
  [[nodiscard]] const char* cString() const { return data_ == nullptr ? "" : data_; }
  [[nodiscard]] std::string_view view() const { return {cString(), length_}; }
  operator std::string_view() const { return view(); }  // NOLINT(google-explicit-constructor)
  /// The byte at `index`, which must be below the length.
  [[nodiscard]] char at(Size index) const;
  /// A reference into the block. The string stops sharing its block for good, because the
  /// reference could change the bytes at any later time.
  [[nodiscard]] char& mutableAt(Size index);
  [[nodiscard]] SString substr(Size position, Size count = npos) const;
  /// Copies up to `count` bytes from `position` to `buffer` (no NUL); returns how many.
  Size copy(char* buffer, Size count, Size position = 0) const;

  friend bool operator==(const SString& a, const SString& b) { return a.view() == b.view(); }
  friend bool operator==(const SString& a, std::string_view b) { return a.view() == b; }
  friend bool operator==(const SString& a, const char* b) { return a.view() == b; }
  friend SString operator+(SString a, std::string_view b) { return a.append(b), a; }

 private:
  //   block: [ sharers | byte 0 | byte 1 | ... | byte capacity-1 | NUL ]
  //                      ^ data_
  // sharers: 0 one owner; 1..254 that many owners besides this one; 255 frozen, never shared.
  [[nodiscard]] bool isShared() const;
  /// Whether `text` lies in this string's own block.
  [[nodiscard]] bool aliases(std::string_view text) const;
  /// Gives up this owner's share of the block; the last owner frees it.
  void release();
  void share(const SString& source);
  /// Makes room for `length` bytes. `replacing`: the old bytes are not needed any more.
  void grow(Size length, bool replacing);
  void replaceBlock(Size capacity);
  void split(Size capacity);
  void terminate(Size length);
  /// Opens a gap of `added` bytes over the `removed` ones at `position`; returns its start.
  char* openGap(Size position, Size removed, Size added);
  [[nodiscard]] Size clip(Size position, Size count) const;
  void checkGrowth(std::size_t added) const;

  char* data_ = nullptr;
  Size length_ = 0;
  Size capacity_ = 0;
};

static_assert(sizeof(SString) == sizeof(void*) * 2 + 2 * sizeof(SString::Size),
              "two pointers and two counts: lists hold many of these");

}  // namespace vessant
