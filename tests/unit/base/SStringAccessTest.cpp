// Comparing strings and reading their bytes.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

TEST(SStringCompare, TheShorterOfTwoIsLess) {
  EXPECT_EQ(SString("ab").compare("abc"), -1);
  EXPECT_EQ(SString("abc").compare("ab"), 1);
  EXPECT_EQ(SString("abc").compare("abc"), 0);
  EXPECT_EQ(SString().compare(""), 0);
  EXPECT_EQ(SString().compare("a"), -1);
  EXPECT_EQ(SString("a").compare(""), 1);
}

TEST(SStringCompare, TheFirstDifferenceDecides) {
  EXPECT_EQ(SString("abd").compare("abe"), -1);
  EXPECT_EQ(SString("abe").compare("abd"), 1);
  EXPECT_EQ(SString("abcdefg").compare("b"), -1);
  EXPECT_EQ(SString("b").compare("abcdefg"), 1);
}

TEST(SStringCompare, BytesAreUnsigned) {
  EXPECT_EQ(SString("\x80").compare("\x7f"), 1);
  EXPECT_EQ(SString("a").compare("\xff"), -1);
  EXPECT_EQ(SString("a\xe9").compare("az"), 1);
}

TEST(SStringCompare, NulBytesCount) {
  EXPECT_EQ(SString(std::string_view("a\0b", 3)).compare("a"), 1);
  EXPECT_EQ(SString(std::string_view("a\0b", 3)).compare(std::string_view("a\0c", 3)), -1);
}

TEST(SStringCompare, CaseMatters) {
  EXPECT_NE(SString("abc").compare("ABC"), 0);
  EXPECT_FALSE(SString("abc") == "Abc");
}

TEST(SStringCompare, APartWithATextOrAnotherPart) {
  const SString text("abcdef");
  EXPECT_EQ(text.compare(2, 2, "cd"), 0);
  EXPECT_EQ(text.compare(2, 2, "c"), 1);
  EXPECT_EQ(text.compare(4, 100, "ef"), 0);
  EXPECT_EQ(text.compare(6, 1, ""), 0);
  const SString other("xxcdef");
  EXPECT_EQ(text.compare(2, 2, other, 2, 2), 0);
  EXPECT_EQ(text.compare(2, SString::npos, other, 2, SString::npos), 0);
  EXPECT_EQ(text.compare(2, 1, other, 2, 2), -1);
  EXPECT_EQ(text.compare(0, 1, other, 0, 1), -1);
}

TEST(SStringCompare, EqualityHoldsBetweenAllKindsOfText) {
  const SString text("abc");
  EXPECT_TRUE(text == SString("abc"));
  EXPECT_TRUE(text == "abc");
  EXPECT_TRUE(text == std::string_view("abc"));
  EXPECT_TRUE("abc" == text);
  EXPECT_TRUE(text != "abcd");
  EXPECT_TRUE(text != SString("ab"));
}

TEST(SStringAccess, ANeverAssignedStringReadsAsAnEmptyCString) {
  const SString text;
  ASSERT_NE(text.cString(), nullptr);
  EXPECT_STREQ(text.cString(), "");
  EXPECT_EQ(text.length(), 0U);
  EXPECT_EQ(text.capacity(), 0U);
  EXPECT_TRUE(text.isEmpty());
  EXPECT_EQ(text.view(), "");
}

TEST(SStringAccess, ElementsAndLength) {
  SString text("abc");
  EXPECT_EQ(text.length(), 3U);
  EXPECT_FALSE(text.isEmpty());
  EXPECT_EQ(text.at(0), 'a');
  EXPECT_EQ(text.at(2), 'c');
  text.mutableAt(2) = 'C';
  EXPECT_EQ(text, "abC");
}

TEST(SStringAccess, CopiesOutNoMoreThanThereIsAndNoNul) {
  const SString text("abcdef");
  char buffer[8];
  std::memset(buffer, '?', sizeof(buffer));
  EXPECT_EQ(text.copy(buffer, 3), 3U);
  EXPECT_EQ(std::string_view(buffer, 4), "abc?");
  EXPECT_EQ(text.copy(buffer, 100, 4), 2U);
  EXPECT_EQ(std::string_view(buffer, 4), "efc?");
  EXPECT_EQ(text.copy(buffer, 0, 1), 0U);
  EXPECT_EQ(text.copy(buffer, 5, 6), 0U);
  EXPECT_EQ(SString().copy(buffer, 5), 0U);
  EXPECT_EQ(std::string_view(buffer, 4), "efc?");
}

}  // namespace
}  // namespace vessant::test
