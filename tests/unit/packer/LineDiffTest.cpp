// Unified diffs, as diff -u would show them.

#include <random>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/LineDiff.h"

namespace vessant::test {
namespace {

std::string diff(const std::string& before, const std::string& after) {
  return unifiedDiff({"a", "b"}, before, after);
}

std::string numbers(int from, int to) {
  std::string text;
  for (int i = from; i <= to; ++i) text += std::to_string(i) + "\n";
  return text;
}

TEST(LineDiff, IsEmptyForEqualTexts) {
  EXPECT_EQ(diff("", ""), "");
  EXPECT_EQ(diff("a\nb", "a\nb"), "");
}

TEST(LineDiff, ShowsChangesWithThreeLinesAround) {
  EXPECT_EQ(diff(numbers(1, 9), numbers(1, 4) + "x\n" + numbers(6, 9)),
            "--- a\n+++ b\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+x\n 6\n 7\n 8\n");
}

TEST(LineDiff, ShowsTextsThatBeginOrEnd) {
  EXPECT_EQ(diff("", "x\ny\n"), "--- a\n+++ b\n@@ -0,0 +1,2 @@\n+x\n+y\n");
  EXPECT_EQ(diff("x\n", ""), "--- a\n+++ b\n@@ -1 +0,0 @@\n-x\n");
}

TEST(LineDiff, JoinsChangesThatAreNear) {
  const std::string before = numbers(1, 20);
  const std::string near = numbers(1, 4) + "x\n" + numbers(6, 11) + "y\n" + numbers(13, 20);
  const std::string far = numbers(1, 4) + "x\n" + numbers(6, 12) + "y\n" + numbers(14, 20);
  EXPECT_THAT(diff(before, near), testing::HasSubstr("@@ -2,14 +2,14 @@"));
  EXPECT_THAT(diff(before, far), testing::HasSubstr("@@ -10,7 +10,7 @@"));
}

TEST(LineDiff, MarksALastLineWithoutItsEnd) {
  EXPECT_EQ(diff("a\n", "a"), "--- a\n+++ b\n@@ -1 +1 @@\n-a\n+a\n\\ No newline at end of file\n");
}

TEST(LineDiff, ReplacesWhatDiffersTooMuch) {
  const std::string before = numbers(1, 5000);
  const std::string after = numbers(10001, 15000);
  const std::string text = diff(before, after);
  EXPECT_THAT(text, testing::HasSubstr("@@ -1,5000 +1,5000 @@\n-1\n-2\n"));
}

/// What patch does: takes over the lines between the hunks, and from them all but the removed ones.
std::string patched(const std::string& before, const std::string& diff) {
  std::istringstream old(before);
  std::istringstream hunks(diff);
  std::string result;
  std::string line;
  int position = 1;
  while (std::getline(hunks, line)) {
    if (line.starts_with("---") || line.starts_with("+++")) continue;
    if (line.starts_with("@@ -")) {
      const std::string range = line.substr(4, line.find(' ', 4) - 4);
      const bool isEmpty = range.ends_with(",0");
      const int start = std::stoi(range) + (isEmpty ? 1 : 0);
      for (std::string same; position < start; ++position) {
        std::getline(old, same);
        result += same + "\n";
      }
      continue;
    }
    std::string ignored;
    if (line[0] != '+') {
      std::getline(old, ignored);
      EXPECT_EQ(ignored, line.substr(1));
      ++position;
    }
    if (line[0] != '-') result += line.substr(1) + "\n";
  }
  for (std::string same; std::getline(old, same);) result += same + "\n";
  return result;
}

TEST(LineDiff, MakesOneTextOfTheOther) {
  std::mt19937 random(5);  // NOLINT: the same texts every time
  for (int round = 0; round < 300; ++round) {
    std::string before;
    std::string after;
    for (std::size_t i = random() % 40; i > 0; --i) before += std::to_string(random() % 4) + "\n";
    for (std::size_t i = random() % 40; i > 0; --i) after += std::to_string(random() % 4) + "\n";
    EXPECT_EQ(patched(before, diff(before, after)), after);
  }
}

}  // namespace
}  // namespace vessant::test
