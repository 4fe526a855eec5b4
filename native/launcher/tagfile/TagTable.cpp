#include "launcher/tagfile/TagTable.h"

#include <cstring>

namespace vessant {
namespace {

constexpr std::size_t kFirstSlots = 16;
constexpr std::int32_t kRemoved = -1;

/// Eight bytes at a time: names are short, and there may be a million. The factor is that of
/// Fibonacci hashing, 2^64 divided by the golden ratio.
std::uint32_t hashOf(std::string_view name) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = name.size();
  while (!name.empty()) {
    std::uint64_t word = 0;
    const std::size_t count = name.size() < sizeof(word) ? name.size() : sizeof(word);
    std::memcpy(&word, name.data(), count);
    name.remove_prefix(count);
    hash = (hash ^ word) * kFactor;
    hash ^= hash >> 32;
  }
  return static_cast<std::uint32_t>(hash);
}

}  // namespace

void TagTable::addTag(Part name) {
  Tag tag;
  tag.name = name;
  tag.firstPart = static_cast<std::uint32_t>(taken_);
  tag.partCount = static_cast<std::int32_t>(parts_.size() - taken_);
  taken_ = parts_.size();
  tags_.push_back(std::move(tag));
  enter(tags_.size() - 1);
}

TagTable::Place TagTable::find(std::string_view name) const {
  if (slots_.empty()) return kNowhere;
  const std::uint32_t entry = slots_[slotOf(name, hashOf(name))].placePlusOne;
  return entry == 0 || isRemoved(entry - 1) ? kNowhere : entry - 1;
}

std::int32_t TagTable::valueCount(Place place) const {
  const Tag& tag = tags_[place];
  return tag.own == nullptr ? tag.partCount : tag.own->values.count();
}

std::string_view TagTable::value(Place place, std::int32_t index) const {
  const Tag& tag = tags_[place];
  if (tag.own != nullptr) return tag.own->values.get(index);
  if (index < 0 || index >= tag.partCount) return {};
  return partText(parts_[tag.firstPart + static_cast<std::size_t>(index)]);
}

StringDeque& TagTable::values(Place place) const {
  Tag& tag = tags_[place];
  if (tag.own != nullptr) return tag.own->values;
  auto own = std::make_unique<OwnTexts>();
  own->name = partText(tag.name);
  for (std::int32_t i = 0; i < tag.partCount; ++i) own->values.add(SString(value(place, i)));
  tag.own = std::move(own);
  return tag.own->values;
}

TagTable::Place TagTable::next(Place place) const {
  do {
    ++place;  // kNowhere is one before the first
  } while (place < tags_.size() && isRemoved(place));
  return place < tags_.size() ? place : kNowhere;
}

std::string_view TagTable::name(Place place) const {
  const Tag& tag = tags_[place];
  return tag.own == nullptr ? partText(tag.name) : tag.own->name.view();
}

TagTable::Place TagTable::findOrAdd(const SString& name) {
  const Place known = find(name);
  if (known != kNowhere) return known;
  Tag tag;
  tag.own = std::make_unique<OwnTexts>();
  tag.own->name = name;
  tags_.push_back(std::move(tag));
  enter(tags_.size() - 1);
  return tags_.size() - 1;
}

void TagTable::remove(Place place) {
  Tag& tag = tags_[place];
  tag.partCount = kRemoved;
  if (tag.own != nullptr) tag.own->values.clear();  // the name is the slot's
  --count_;
}

std::string_view TagTable::partText(Part part) const {
  return std::string_view(text_).substr(part.offset, part.length);
}

/// The slot that holds the name, or the free one where it would have to stand.
std::size_t TagTable::slotOf(std::string_view name, std::uint32_t hash) const {
  const std::size_t last = slots_.size() - 1;
  std::size_t index = hash & last;
  while (slots_[index].placePlusOne != 0) {
    const Slot& slot = slots_[index];
    if (slot.hash == hash && this->name(slot.placePlusOne - 1) == name) break;
    index = (index + 1) & last;
  }
  return index;
}

void TagTable::enter(Place place) {
  ++count_;
  if (tags_.size() * 2 > slots_.size()) growSlots();
  const std::string_view name = this->name(place);
  const std::uint32_t hash = hashOf(name);
  slots_[slotOf(name, hash)] = {hash, static_cast<std::uint32_t>(place + 1)};
}

/// At most every other slot is taken, so that a look-up ends soon. No two slots have the same name.
void TagTable::growSlots() {
  std::vector<Slot> old(slots_.empty() ? kFirstSlots : slots_.size() * 2);
  old.swap(slots_);
  const std::size_t last = slots_.size() - 1;
  for (const Slot& slot : old) {
    if (slot.placePlusOne == 0) continue;
    std::size_t index = slot.hash & last;
    while (slots_[index].placePlusOne != 0) index = (index + 1) & last;
    slots_[index] = slot;
  }
}

}  // namespace vessant
