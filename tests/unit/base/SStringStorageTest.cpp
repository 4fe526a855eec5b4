// How much room a string takes, when it moves, and what happens when memory is short.
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/AllocationWatch.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

using Sizes = std::vector<std::size_t>;

constexpr std::size_t kExtra = 2;  // the count of owners and the NUL

SString repeated(SString::Size count) {
  return {count, 'x'};
}

TEST(SStringStorage, ANewStringHasNoBlock) {
  AllocationWatch watch;
  const SString text;
  EXPECT_EQ(text.capacity(), 0U);
  EXPECT_EQ(SString("").capacity(), 0U);
  EXPECT_EQ(SString(0, 'x').capacity(), 0U);
  EXPECT_TRUE(watch.sizes().empty());
}

TEST(SStringStorage, CapacitiesEndInFiveOneBits) {
  const std::pair<SString::Size, SString::Size> table[] = {
      {1, 31}, {31, 31}, {32, 63}, {63, 63}, {64, 95}, {95, 95}, {96, 127}, {1000, 1023}};
  for (const auto& [length, capacity] : table) {
    EXPECT_EQ(repeated(length).capacity(), capacity) << length;
    SString grown("x");
    grown.append(length - 1, 'x');
    EXPECT_EQ(grown.capacity(), capacity) << length;
    SString reserved;
    reserved.reserve(length);
    EXPECT_EQ(reserved.capacity(), capacity) << length;
  }
}

TEST(SStringStorage, ABlockHoldsItsCapacityAndTwoBytes) {
  AllocationWatch watch;
  const SString text("text");
  EXPECT_EQ(watch.sizes(), Sizes{31 + kExtra});
}

TEST(SStringStorage, AppendingCharactersMovesOncePer32) {
  AllocationWatch watch;
  SString text;
  for (int i = 0; i < 96; ++i) text += 'x';
  EXPECT_EQ(watch.sizes(), (Sizes{31 + kExtra, 63 + kExtra, 95 + kExtra, 127 + kExtra}));
  EXPECT_EQ(text, repeated(96));
}

TEST(SStringStorage, AShortAssignmentGivesALargeBlockBack) {
  SString text;
  text.reserve(100);
  ASSERT_GE(text.capacity(), 100U);
  text = "x";
  EXPECT_EQ(text.capacity(), 31U);
  EXPECT_EQ(text, "x");
}

TEST(SStringStorage, AnAssignmentKeepsASmallBlockThatIsLargeEnough) {
  SString text("a");
  const char* block = text.cString();
  AllocationWatch watch;
  text = std::string_view("0123456789012345678901234567890");
  EXPECT_EQ(text.cString(), block);
  EXPECT_EQ(text.length(), 31U);
  text.assign(3, 'y');
  EXPECT_EQ(text, "yyy");
  EXPECT_TRUE(watch.sizes().empty());
}

TEST(SStringStorage, AnAssignmentTakesAFreshBlockWhenTheOldOneIsTooSmall) {
  SString text("a");
  text = repeated(40).view();
  EXPECT_EQ(text.capacity(), 63U);
  EXPECT_EQ(text, repeated(40));
}

TEST(SStringStorage, AssigningNothingFreesTheBlock) {
  SString text("abc");
  text = "";
  EXPECT_EQ(text.capacity(), 0U);
  text = "abc";
  text.assign(0, 'x');
  EXPECT_EQ(text.capacity(), 0U);
  EXPECT_STREQ(text.cString(), "");
}

TEST(SStringStorage, AssigningNothingDropsAShareWithoutTakingABlock) {
  const SString source("abc");
  SString copy(source);
  AllocationWatch watch;
  copy = "";
  EXPECT_EQ(copy.capacity(), 0U);
  EXPECT_TRUE(watch.sizes().empty());
  EXPECT_EQ(source, "abc");
}

TEST(SStringStorage, ErasingAllKeepsTheBlock) {
  SString text(repeated(40).view());
  const char* block = text.cString();
  text.erase();
  EXPECT_EQ(text.capacity(), 63U);
  EXPECT_EQ(text.cString(), block);
  EXPECT_TRUE(text.isEmpty());
  EXPECT_EQ(*block, '\0');
}

TEST(SStringStorage, ShrinkingAndGrowingWithinTheCapacityStaysInPlace) {
  SString text(repeated(40).view());
  AllocationWatch watch;
  text.resize(3);
  text.append("abc").insert(1, "--").replace(0, 2, "1234").erase(2, 1).resize(63);
  EXPECT_TRUE(watch.sizes().empty());
  EXPECT_EQ(text.capacity(), 63U);
}

TEST(SStringStorage, ReservingLessThanThereIsDoesNothing) {
  SString text("abc");
  AllocationWatch watch;
  text.reserve(31);
  text.reserve(0);
  EXPECT_TRUE(watch.sizes().empty());
  EXPECT_EQ(text, "abc");
}

TEST(SStringStorage, ReservingKeepsTheText) {
  SString text("abc");
  text.reserve(500);
  EXPECT_EQ(text.capacity(), 511U);
  EXPECT_EQ(text, "abc");
  SString shared(text);
  shared.reserve(1);
  EXPECT_EQ(shared, "abc");
  SString empty;
  empty.reserve(5);
  EXPECT_EQ(empty, "");
}

TEST(SStringStorage, ASplitTakesABlockOfTheRoundedLength) {
  SString source("abc");
  source.reserve(500);
  SString copy(source);
  copy.mutableAt(0) = 'A';
  EXPECT_EQ(copy.capacity(), 31U);
  SString grown(source);
  grown.append(40, 'x');
  EXPECT_EQ(grown.capacity(), 63U);
}

TEST(SStringStorage, TheByteBehindTheLastIsAlwaysNul) {
  SString text("abcdef");
  text.erase(3);
  EXPECT_STREQ(text.cString(), "abc");
  text.replace(0, 2, "x");
  EXPECT_STREQ(text.cString(), "xc");
  text.insert(1, 2, '-');
  EXPECT_STREQ(text.cString(), "x--c");
  text.mutableAt(3) = 'd';
  EXPECT_STREQ(text.cString(), "x--d");
  text.resize(2);
  EXPECT_STREQ(text.cString(), "x-");
}

// Memory that is short.

TEST(SStringShortMemory, TriesAgainWithExactlyWhatIsNeeded) {
  AllocationWatch watch;
  watch.failNext(1);
  const SString text(repeated(100));
  EXPECT_EQ(watch.sizes(), (Sizes{127 + kExtra, 100 + kExtra}));
  EXPECT_EQ(text.capacity(), 100U);
  EXPECT_EQ(text, repeated(100));
}

TEST(SStringShortMemory, TriesAgainWhenABlockGrowsAndKeepsTheText) {
  SString text("abc");
  AllocationWatch watch;
  watch.failNext(1);
  text.append(47, 'x');
  EXPECT_EQ(watch.sizes(), (Sizes{63 + kExtra, 50 + kExtra}));
  EXPECT_EQ(text.capacity(), 50U);
  EXPECT_EQ(text.length(), 50U);
  EXPECT_EQ(text.view().substr(0, 4), "abcx");
}

TEST(SStringShortMemory, TriesAgainWhenASharedBlockSplits) {
  const SString source("abc");
  SString copy(source);
  AllocationWatch watch;
  watch.failNext(1);
  copy += 'd';
  EXPECT_EQ(watch.sizes(), (Sizes{31 + kExtra, 4 + kExtra}));
  EXPECT_EQ(copy.capacity(), 4U);
  EXPECT_EQ(copy, "abcd");
  EXPECT_EQ(source, "abc");
}

TEST(SStringShortMemory, AShortAssignmentReplacesABlockOfAnOddCapacityToo) {
  AllocationWatch watch;
  watch.failNext(1);
  SString text(repeated(100));
  ASSERT_EQ(text.capacity(), 100U);
  text = "x";
  EXPECT_EQ(text.capacity(), 31U);
}

TEST(SStringShortMemory, GivesUpAfterTheSecondFailureAndChangesNothing) {
  SString text("abc");
  AllocationWatch watch;
  watch.failNext(2);
  EXPECT_THROW(text.append(50, 'x'), std::bad_alloc);
  EXPECT_EQ(watch.sizes().size(), 2U);
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(text.capacity(), 31U);
  watch.failNext(2);
  EXPECT_THROW(text = repeated(50).view(), std::bad_alloc);
  EXPECT_EQ(text, "abc");
}

TEST(SStringShortMemory, AtTheUpperEndTheCapacityIsNotRounded) {
  AllocationWatch watch;
  watch.failNext(4);
  SString text;
  constexpr SString::Size kNearlyAll = 0xFFFFFFE0U;
  EXPECT_THROW(text.reserve(kNearlyAll), std::bad_alloc);
  EXPECT_EQ(watch.sizes().front(), kNearlyAll + kExtra);
  constexpr SString::Size kBelow = 0xFFFFFFC0U;
  EXPECT_THROW(text.reserve(kBelow), std::bad_alloc);
  EXPECT_EQ(watch.sizes()[2], (kBelow | 31U) + kExtra);
  EXPECT_EQ(watch.sizes()[3], kBelow + kExtra);
}

}  // namespace
}  // namespace vessant::test
