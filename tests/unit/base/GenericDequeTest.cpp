// The lists that own objects.
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/Deque.h"
#include "support/AllocationWatch.h"
#include "support/FakeRun.h"
#include "unit/base/Tracked.h"

namespace vessant::test {
namespace {

using TrackedDeque = PtrDeque<Tracked>;

void addNumbers(TrackedDeque& list, int count) {
  for (int i = 0; i < count; ++i) list.add(std::make_unique<Tracked>(i));
}

std::vector<int> numbersOf(const TrackedDeque& list) {
  std::vector<int> numbers;
  for (const Tracked& tracked : list) numbers.push_back(tracked.number);
  return numbers;
}

TEST(GenericDeque, IsCreatedEmptyWithoutSlots) {
  AllocationWatch watch;
  const TrackedDeque list;
  EXPECT_EQ(list.count(), 0);
  EXPECT_EQ(list.capacity(), 0);
  EXPECT_TRUE(list.isEmpty());
  EXPECT_TRUE(watch.sizes().empty());
}

TEST(GenericDeque, AnIndexIsValidFromZeroToBelowTheCount) {
  TrackedDeque list;
  EXPECT_FALSE(list.isValidIndex(0));
  addNumbers(list, 2);
  EXPECT_FALSE(list.isValidIndex(-1));
  EXPECT_TRUE(list.isValidIndex(0));
  EXPECT_TRUE(list.isValidIndex(1));
  EXPECT_FALSE(list.isValidIndex(2));
}

TEST(GenericDeque, OutOfRangeThereIsNothing) {
  TrackedDeque list;
  EXPECT_EQ(list.getLast(), nullptr);
  EXPECT_EQ(list.get(0), nullptr);
  addNumbers(list, 2);
  EXPECT_EQ(list.get(-1), nullptr);
  EXPECT_EQ(list.get(2), nullptr);
  EXPECT_EQ(list.entryAt(-1), nullptr);
  EXPECT_EQ(list.entryAt(2), nullptr);
  EXPECT_EQ(list.getLast()->number, 1);
  EXPECT_EQ(list.entryAt(0)->payload(), list.get(0));
}

TEST(GenericDeque, InsertsBeforeTheEntryAtTheIndex) {
  TrackedDeque list;
  addNumbers(list, 3);
  list.insert(0, std::make_unique<Tracked>(10));
  list.insert(2, std::make_unique<Tracked>(11));
  list.insert(4, std::make_unique<Tracked>(12));
  EXPECT_EQ(numbersOf(list), (std::vector<int>{10, 0, 11, 1, 12, 2}));
}

TEST(GenericDeque, ANegativeIndexAppends) {
  TrackedDeque list;
  list.insert(-1, std::make_unique<Tracked>(1));
  list.insert(-1, std::make_unique<Tracked>(2));
  list.insert(-5, std::make_unique<Tracked>(3));
  EXPECT_EQ(numbersOf(list), (std::vector<int>{1, 2, 3}));
}

TEST(GenericDeque, TheCountItselfIsNoIndexToInsertAt) {
  TrackedDeque list;
  auto payload = std::make_unique<Tracked>(7);
  list.insert(0, std::move(payload));
  EXPECT_TRUE(list.isEmpty());
  EXPECT_EQ(list.capacity(), 0);
  ASSERT_NE(payload, nullptr) << "what is not inserted stays with the caller";
  addNumbers(list, 2);
  list.insert(2, std::move(payload));
  list.insert(3, std::move(payload));
  EXPECT_EQ(numbersOf(list), (std::vector<int>{0, 1}));
  EXPECT_EQ(payload->number, 7);  // NOLINT(bugprone-use-after-move): it was not taken
}

TEST(GenericDeque, AnEntryThatIsRefusedStaysWithTheCaller) {
  TrackedDeque list;
  std::unique_ptr<DequeEntry> entry =
      std::make_unique<PtrDE<Tracked>>(std::make_unique<Tracked>(7));
  list.insertEntry(0, std::move(entry));
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(Tracked::alive, 1);
  list.insertEntry(GenericDeque::kAppend, std::move(entry));
  EXPECT_EQ(entry, nullptr);
  EXPECT_EQ(list.getLast()->number, 7);
}

TEST(GenericDeque, SlotsGrowByThirtyAndKeepTheOrder) {
  TrackedDeque list;
  addNumbers(list, 1);
  EXPECT_EQ(list.capacity(), 30);
  addNumbers(list, 29);
  EXPECT_EQ(list.capacity(), 30);
  list.add(std::make_unique<Tracked>(30));
  EXPECT_EQ(list.capacity(), 60);
  ASSERT_EQ(list.count(), 31);
  EXPECT_EQ(list.get(0)->number, 0);
  for (int i = 1; i < 30; ++i) EXPECT_EQ(list.get(i)->number, i - 1);
  EXPECT_EQ(list.get(30)->number, 30);
}

TEST(GenericDeque, AsksForSlotsOncePerThirtyEntries) {
  TrackedDeque list;
  AllocationWatch watch;
  addNumbers(list, 91);
  constexpr std::size_t kStep = 30 * sizeof(void*);
  EXPECT_EQ(watch.sizes(), (std::vector<std::size_t>{kStep, 2 * kStep, 3 * kStep, 4 * kStep}));
}

TEST(GenericDeque, SlotsNeverShrink) {
  TrackedDeque list;
  addNumbers(list, 31);
  while (!list.isEmpty()) list.removeLast();
  EXPECT_EQ(list.capacity(), 60);
  addNumbers(list, 31);
  list.clear();
  EXPECT_EQ(list.count(), 0);
  EXPECT_EQ(list.capacity(), 60);
  addNumbers(list, 60);
  EXPECT_EQ(list.capacity(), 60);
}

TEST(GenericDeque, RemovingClosesTheGapAndDestroysThePayload) {
  TrackedDeque list;
  addNumbers(list, 5);
  list.removeAt(1);
  EXPECT_EQ(Tracked::alive, 4);
  EXPECT_EQ(numbersOf(list), (std::vector<int>{0, 2, 3, 4}));
  list.removeAt(0);
  list.removeLast();
  EXPECT_EQ(Tracked::alive, 2);
  EXPECT_EQ(numbersOf(list), (std::vector<int>{2, 3}));
}

TEST(GenericDeque, RemovingAtAnInvalidIndexChangesNothing) {
  TrackedDeque list;
  list.removeAt(0);
  list.removeLast();
  addNumbers(list, 2);
  list.removeAt(-1);
  list.removeAt(2);
  EXPECT_EQ(numbersOf(list), (std::vector<int>{0, 1}));
  EXPECT_EQ(Tracked::alive, 2);
}

TEST(GenericDeque, ClearingAndDestroyingDestroyEveryPayload) {
  {
    TrackedDeque list;
    addNumbers(list, 40);
    list.clear();
    EXPECT_EQ(Tracked::alive, 0);
    EXPECT_EQ(list.getLast(), nullptr);
    addNumbers(list, 40);
    EXPECT_EQ(Tracked::alive, 40);
  }
  EXPECT_EQ(Tracked::alive, 0);
}

TEST(GenericDeque, PayloadsKeepTheirPlaceInMemoryWhileTheListGrows) {
  TrackedDeque list;
  addNumbers(list, 1);
  const Tracked* first = list.get(0);
  addNumbers(list, 100);
  list.removeAt(50);
  EXPECT_EQ(list.get(0), first);
}

TEST(GenericDeque, AnEntryWithoutPayloadIsAllowed) {
  TrackedDeque list;
  list.add(nullptr);
  EXPECT_EQ(list.count(), 1);
  EXPECT_EQ(list.get(0), nullptr);
  list.clear();
}

TEST(GenericDeque, AnUntypedEntryLeavesItsPayloadAlone) {
  Tracked payload(1);
  GenericDeque list;
  list.insertEntry(GenericDeque::kAppend, std::make_unique<DequeEntry>(&payload));
  list.clear();
  EXPECT_EQ(Tracked::alive, 1);
}

TEST(StringPairDeque, HoldsNamesAndValues) {
  StringPairPtrDeque pairs;
  pairs.add(std::make_unique<StringPair>(StringPair{"a", "1"}));
  pairs.insert(0, std::make_unique<StringPair>(StringPair{"b", "2"}));
  EXPECT_EQ(pairs.get(0)->name, "b");
  EXPECT_EQ(pairs.get(0)->value, "2");
  EXPECT_EQ(pairs.getLast()->name, "a");
  EXPECT_EQ(pairs.getLast()->value, "1");
}

}  // namespace
}  // namespace vessant::test
