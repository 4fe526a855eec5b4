// Copies share one block of bytes until one of them changes.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

constexpr std::size_t kMostOwners = 255;

bool shareBlock(const SString& a, const SString& b) {
  return a.capacity() > 0 && a.cString() == b.cString();
}

TEST(SStringSharing, ACopySharesTheBlockOfItsSource) {
  const SString source("text");
  const SString copy(source);
  EXPECT_TRUE(shareBlock(source, copy));
  EXPECT_EQ(copy.length(), 4U);
  EXPECT_EQ(copy.capacity(), source.capacity());
}

TEST(SStringSharing, AnAssignedStringGivesUpItsOwnBlockAndShares) {
  const SString source("text");
  SString target("something that was here before, longer than the text that comes");
  target = source;
  EXPECT_TRUE(shareBlock(source, target));
  EXPECT_EQ(target, "text");
  EXPECT_EQ(target.capacity(), source.capacity());
}

TEST(SStringSharing, TheWholeAsASubstringIsShared) {
  const SString source("text");
  EXPECT_TRUE(shareBlock(source, SString(source, 0, SString::npos)));
  EXPECT_TRUE(shareBlock(source, source.substr(0, 4)));
  SString target;
  target.assign(source, 0, 100);
  EXPECT_TRUE(shareBlock(source, target));
}

TEST(SStringSharing, APartIsCopied) {
  const SString source("text");
  EXPECT_FALSE(shareBlock(source, source.substr(0, 3)));
  EXPECT_EQ(source.substr(1), "ext");
}

TEST(SStringSharing, AnEmptyStringWithABlockIsSharedToo) {
  SString source("text");
  source.erase();
  const SString copy(source);
  EXPECT_TRUE(shareBlock(source, copy));
  EXPECT_TRUE(copy.isEmpty());
}

TEST(SStringSharing, ACopyOfAStringWithoutStorageHasNone) {
  const SString source;
  SString copy(source);
  EXPECT_EQ(copy.capacity(), 0U);
  copy = SString("text");
  copy = source;
  EXPECT_EQ(copy.capacity(), 0U);
  EXPECT_TRUE(copy.isEmpty());
}

TEST(SStringSharing, OfThreeHundredCopiesTheFirst254Share) {
  const SString source("the text that all of them read");
  const std::vector<SString> copies(300, source);
  for (std::size_t i = 0; i < copies.size(); ++i) {
    EXPECT_EQ(shareBlock(source, copies[i]), i < kMostOwners - 1) << i;
    EXPECT_EQ(copies[i], source) << i;
  }
}

TEST(SStringSharing, ACopyOfAnyOwnerOfAFullBlockIsPrivate) {
  const SString source("text");
  const std::vector<SString> copies(kMostOwners - 1, source);
  const SString ofACopy(copies.back());
  EXPECT_FALSE(shareBlock(source, ofACopy));
  EXPECT_EQ(ofACopy, "text");
  SString assigned("before");
  assigned = copies.front();
  EXPECT_FALSE(shareBlock(source, assigned));
  EXPECT_EQ(assigned, "text");
}

TEST(SStringSharing, AnOwnerThatGoesMakesRoomForAnother) {
  const SString source("text");
  std::vector<SString> copies(kMostOwners - 1, source);
  copies.pop_back();
  const SString next(source);
  EXPECT_TRUE(shareBlock(source, next));
  EXPECT_FALSE(shareBlock(source, SString(source)));
}

TEST(SStringSharing, AssigningBetweenOwnersOfAFullBlockKeepsTheText) {
  const SString source("text");
  std::vector<SString> copies(kMostOwners - 1, source);
  copies.front() = copies.back();
  EXPECT_EQ(copies.front(), "text");
  EXPECT_EQ(source, "text");
}

TEST(SStringSharing, AssigningBetweenTwoOwnersKeepsThemSharing) {
  SString source("text");
  SString copy(source);
  copy = source;
  EXPECT_TRUE(shareBlock(source, copy));
  SString& same = source;
  source = same;
  EXPECT_TRUE(shareBlock(source, copy));
  EXPECT_EQ(source, "text");
}

TEST(SStringSharing, TheBlockOutlivesItsFirstOwner) {
  std::optional<SString> source("text");
  const SString copy(*source);
  source.reset();
  EXPECT_EQ(copy, "text");
}

TEST(SStringSharing, AMovedStringTakesTheBlockAlong) {
  SString source("text");
  const char* block = source.cString();
  const SString target(std::move(source));
  EXPECT_EQ(target.cString(), block);
  EXPECT_EQ(target, "text");
}

// Every kind of change leaves the other owners as they are.
struct Change {
  const char* name;
  void (*apply)(SString&);
  const char* expected;
};

void PrintTo(const Change& change, std::ostream* out) {
  *out << change.name;
}

class SStringChange : public testing::TestWithParam<Change> {};

TEST_P(SStringChange, SplitsASharedBlockAndLeavesTheOtherOwnersAlone) {
  const SString source("abc");
  const SString bystander(source);
  SString changed(source);
  GetParam().apply(changed);
  EXPECT_FALSE(shareBlock(source, changed));
  EXPECT_EQ(changed, GetParam().expected);
  EXPECT_EQ(source, "abc");
  EXPECT_TRUE(shareBlock(source, bystander));
}

TEST_P(SStringChange, FreesTheBlockForItsLastOwner) {
  SString last("abc");
  {
    SString changed(last);
    GetParam().apply(changed);
  }
  const char* block = last.cString();
  last.append("d");
  EXPECT_EQ(last.cString(), block) << "a block with one owner is changed in place";
}

INSTANTIATE_TEST_SUITE_P(
    Changes, SStringChange,
    testing::Values(Change{"assign text", [](SString& s) { s = "new"; }, "new"},
                    Change{"assign nothing", [](SString& s) { s = ""; }, ""},
                    Change{"assign a character", [](SString& s) { s.assign(2, 'x'); }, "xx"},
                    Change{"append text", [](SString& s) { s.append("d"); }, "abcd"},
                    Change{"append a character", [](SString& s) { s += 'd'; }, "abcd"},
                    Change{"insert", [](SString& s) { s.insert(1, "-"); }, "a-bc"},
                    Change{"erase", [](SString& s) { s.erase(1, 1); }, "ac"},
                    Change{"erase all", [](SString& s) { s.erase(); }, ""},
                    Change{"replace", [](SString& s) { s.replace(0, 2, "xyz"); }, "xyzc"},
                    Change{"grow", [](SString& s) { s.resize(5, '.'); }, "abc.."},
                    Change{"shrink", [](SString& s) { s.resize(1); }, "a"},
                    Change{"reserve", [](SString& s) { s.reserve(64); }, "abc"},
                    Change{"access", [](SString& s) { s.mutableAt(1) = 'B'; }, "aBc"}));

TEST(SStringSharing, AChangeOfNothingKeepsTheShare) {
  const SString source("abc");
  SString copy(source);
  copy.append("");
  copy.append(0, 'x');
  copy.insert(1, "");
  copy.insert(1, 0, 'x');
  copy.erase(3, 1);
  copy.erase(1, 0);
  copy.replace(1, 0, "");
  copy.resize(3);
  EXPECT_TRUE(shareBlock(source, copy));
}

// A reference into the block may change it at any later time: the block is frozen.

TEST(SStringFrozen, CopiesAfterAMutableAccessHaveTheirOwnBlocks) {
  SString source("abc");
  char& middle = source.mutableAt(1);
  const SString copy(source);
  SString assigned;
  assigned = source;
  middle = 'X';
  EXPECT_EQ(source, "aXc");
  EXPECT_EQ(copy, "abc");
  EXPECT_EQ(assigned, "abc");
  EXPECT_FALSE(shareBlock(source, copy));
}

TEST(SStringFrozen, CopiesOfTheCopiesShareAgain) {
  SString source("abc");
  source.mutableAt(0) = 'A';
  const SString copy(source);
  EXPECT_TRUE(shareBlock(copy, SString(copy)));
}

TEST(SStringFrozen, AShortAssignmentKeepsTheFrozenBlock) {
  SString source("abc");
  source.mutableAt(0) = 'A';
  const char* block = source.cString();
  source = "new";
  EXPECT_EQ(source.cString(), block);
  EXPECT_FALSE(shareBlock(source, SString(source)));
}

TEST(SStringFrozen, AFrozenBlockStaysFrozenWhenItGrows) {
  SString source("abc");
  source.mutableAt(0) = 'A';
  source.append(100, 'x');
  EXPECT_FALSE(shareBlock(source, SString(source)));
}

TEST(SStringFrozen, AMoveTakesTheFrozenBlockAlong) {
  SString source("abc");
  source.mutableAt(0) = 'A';
  const SString target(std::move(source));
  EXPECT_EQ(target, "Abc");
  EXPECT_FALSE(shareBlock(target, SString(target)));
}

TEST(SStringFrozen, ASecondAccessChangesInPlace) {
  SString source("abc");
  source.mutableAt(0) = 'A';
  const char* block = source.cString();
  source.mutableAt(1) = 'B';
  EXPECT_EQ(source.cString(), block);
  EXPECT_EQ(source, "ABc");
}

}  // namespace
}  // namespace vessant::test
