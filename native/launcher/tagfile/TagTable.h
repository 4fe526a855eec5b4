// The tags of a tag file in their order, found by name.
//
// Names and values that were read stay where they stood in the text, which the table owns; a value
// becomes a text of its own when somebody asks for it. A file of a million tags so takes little
// more memory than its bytes, and no time for what nobody asks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"

namespace vessant {

class TagTable {
 public:
  /// A piece of the text.
  struct Part {
    std::size_t offset = 0;
    std::uint32_t length = 0;
  };
  /// A tag's place. It stays the same, also when tags in front of it are removed.
  using Place = std::size_t;
  static constexpr Place kNowhere = static_cast<Place>(-1);

  // Filling from a text.

  /// What is read is appended here and may be changed from there on, but not moved.
  [[nodiscard]] std::string& text() { return text_; }
  /// Makes room for so many more values, so that a long text is not copied while it grows.
  void reserveParts(std::size_t count) { parts_.reserve(parts_.size() + count); }
  /// A value of the tag that comes next.
  void addPart(Part value) { parts_.push_back(value); }
  /// Puts a tag with the values that were added since the last one behind all others. One with the
  /// same name must have been removed before.
  void addTag(Part name);
  /// Forgets the values that no tag has taken.
  void dropParts() { parts_.resize(taken_); }
  [[nodiscard]] bool hasParts() const { return parts_.size() > taken_; }

  // Looking up.

  /// Where the tag with this name is, or kNowhere.
  [[nodiscard]] Place find(std::string_view name) const;
  [[nodiscard]] std::int32_t valueCount(Place place) const;
  /// A value; empty when there is none at this index.
  [[nodiscard]] std::string_view value(Place place, std::int32_t index) const;
  /// All values, as texts of their own. Good until the tag is removed.
  [[nodiscard]] StringDeque& values(Place place) const;

  // Walking: from kNowhere on, `next` gives place after place, and then kNowhere.
  [[nodiscard]] Place next(Place place) const;
  [[nodiscard]] std::string_view name(Place place) const;
  /// How many tags there are.
  [[nodiscard]] std::int32_t count() const { return count_; }

  // Changing.

  /// The place of the tag with this name, which is made when it is missing, without a value.
  Place findOrAdd(const SString& name);
  void remove(Place place);

 private:
  /// Once somebody has asked for a tag's values they are its own texts, and its parts are out of
  /// use. A tag that no text holds has a name of its own from the start.
  struct OwnTexts {
    SString name;
    StringDeque values;
  };
  struct Tag {
    Part name;
    std::uint32_t firstPart = 0;
    std::int32_t partCount = 0;
    std::unique_ptr<OwnTexts> own;
  };

  [[nodiscard]] std::string_view partText(Part part) const;
  [[nodiscard]] bool isRemoved(Place place) const { return tags_[place].partCount < 0; }
  [[nodiscard]] std::size_t slotOf(std::string_view name, std::uint32_t hash) const;
  void enter(Place place);
  void growSlots();

  std::string text_;
  std::vector<Part> parts_;
  std::size_t taken_ = 0;          // by tags, of the parts
  mutable std::vector<Tag> tags_;  // a look-up turns parts into texts
  /// A place under the hash of its name. A removed tag keeps its slot and its name, for the next
  /// tag of that name.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t placePlusOne = 0;  // 0: free
  };
  std::vector<Slot> slots_;
  std::int32_t count_ = 0;
};

}  // namespace vessant
