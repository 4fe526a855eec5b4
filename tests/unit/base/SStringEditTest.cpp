// What the changing operations of a string do to its text.
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

using namespace std::string_view_literals;

TEST(SStringConstruct, FromEveryKindOfText) {
  EXPECT_EQ(SString(), "");
  EXPECT_EQ(SString("abc"), "abc");
  EXPECT_EQ(SString("a\0b"sv), "a\0b"sv);
  EXPECT_EQ(SString(std::string_view("abcdef", 3)), "abc");
  EXPECT_EQ(SString(3, 'x'), "xxx");
  const SString source("abcdef");
  EXPECT_EQ(SString(source), "abcdef");
  EXPECT_EQ(SString(source, 1, 3), "bcd");
  EXPECT_EQ(SString(source, 4, SString::npos), "ef");
  EXPECT_EQ(SString(source, 6, 1), "");
}

TEST(SStringConstruct, FromANullPointerIsEmpty) {
  const char* nothing = nullptr;
  EXPECT_EQ(SString(nothing), "");
}

TEST(SStringAssign, OfANullPointerIsEmpty) {
  const char* nothing = nullptr;
  SString text("before");
  text = nothing;
  EXPECT_EQ(text, "");
}

TEST(SStringConstruct, TheProcessWideEmptyStringIsAlwaysTheSame) {
  EXPECT_TRUE(SString::empty().isEmpty());
  EXPECT_EQ(&SString::empty(), &SString::empty());
}

TEST(SStringAssign, EveryKindOfText) {
  const SString source("abcdef");
  SString text("before");
  EXPECT_EQ(text = "abc", "abc");
  EXPECT_EQ(text = "a\0b"sv, "a\0b"sv);
  EXPECT_EQ(text = source, "abcdef");
  EXPECT_EQ(text.assign({"xyz", 2}), "xy");
  EXPECT_EQ(text.assign(source, 2, 2), "cd");
  EXPECT_EQ(text.assign(source, 6, 2), "");
  EXPECT_EQ(text.assign(4, 'z'), "zzzz");
  EXPECT_EQ(text = SString("moved"), "moved");
}

TEST(SStringAssign, APartOfItself) {
  SString text("abcdef");
  EXPECT_EQ(text.assign(text, 2, 3), "cde");
  EXPECT_EQ(text.assign(text.view().substr(1)), "de");
  EXPECT_EQ(text.assign(text.view()), "de");
}

TEST(SStringAppend, EveryKindOfText) {
  const SString source("abcdef");
  SString text;
  EXPECT_EQ(text.append("x"), "x");
  EXPECT_EQ(text.append({"yz", 1}), "xy");
  EXPECT_EQ(text.append(source), "xyabcdef");
  text = "x";
  EXPECT_EQ(text.append(source, 4, SString::npos), "xef");
  EXPECT_EQ(text.append(source, 6, 3), "xef");
  EXPECT_EQ(text.append(2, '.'), "xef..");
  EXPECT_EQ(text += '!', "xef..!");
  EXPECT_EQ(text += "?", "xef..!?");
  EXPECT_EQ(text + "+" + source, "xef..!?+abcdef");
  EXPECT_EQ(text, "xef..!?");
}

TEST(SStringAppend, ItselfAndAPartOfItself) {
  SString text("abc");
  EXPECT_EQ(text.append(text), "abcabc");
  EXPECT_EQ(text.append(text, 4, 2), "abcabcbc");
  text.append(text.view());
  text.append(text.view());
  EXPECT_EQ(text, "abcabcbcabcabcbcabcabcbcabcabcbc");
}

TEST(SStringInsert, TextAndCharactersAtEveryPosition) {
  SString text("abc");
  EXPECT_EQ(text.insert(0, "<"), "<abc");
  EXPECT_EQ(text.insert(4, ">"), "<abc>");
  EXPECT_EQ(text.insert(2, 3, '-'), "<a---bc>");
  EXPECT_EQ(text.insert(0, ""), "<a---bc>");
  SString empty;
  EXPECT_EQ(empty.insert(0, "abc"), "abc");
}

TEST(SStringInsert, ItselfIntoItself) {
  SString text("abcd");
  EXPECT_EQ(text.insert(2, text), "ababcdcd");
  EXPECT_EQ(text.insert(1, text.view().substr(6)), "acdbabcdcd");
}

TEST(SStringErase, CountsAreClippedToTheEnd) {
  const SString source("abcdef");
  EXPECT_EQ(SString(source).erase(1, 2), "adef");
  EXPECT_EQ(SString(source).erase(4, 100), "abcd");
  EXPECT_EQ(SString(source).erase(4), "abcd");
  EXPECT_EQ(SString(source).erase(0, 1), "bcdef");
  EXPECT_EQ(SString(source).erase(), "");
}

TEST(SStringErase, AtTheEndErasesNothingAndBehindItThrows) {
  SString text("abc");
  EXPECT_EQ(text.erase(3, 1), "abc");
  EXPECT_THROW(text.erase(4, 1), RangeException);
  EXPECT_EQ(text, "abc");
}

TEST(SStringReplace, ByTextsOfEveryLength) {
  const SString source("abcdef");
  EXPECT_EQ(SString(source).replace(1, 2, "xy"), "axydef");
  EXPECT_EQ(SString(source).replace(1, 2, "x"), "axdef");
  EXPECT_EQ(SString(source).replace(1, 2, "vwxyz"), "avwxyzdef");
  EXPECT_EQ(SString(source).replace(1, 2, ""), "adef");
  EXPECT_EQ(SString(source).replace(4, 100, "x"), "abcdx");
  EXPECT_EQ(SString(source).replace(6, 1, "x"), "abcdefx");
  EXPECT_EQ(SString(source).replace(0, SString::npos, "x"), "x");
}

TEST(SStringReplace, ByARepeatedCharacter) {
  const SString source("abcdef");
  EXPECT_EQ(SString(source).replace(1, 2, 3, '-'), "a---def");
  EXPECT_EQ(SString(source).replace(1, 3, 1, '-'), "a-ef");
  EXPECT_EQ(SString(source).replace(1, 3, 0, '-'), "aef");
  EXPECT_EQ(SString(source).replace(6, 3, 2, '-'), "abcdef--");
}

TEST(SStringReplace, ByAPartOfItself) {
  SString text("abcdef");
  EXPECT_EQ(text.replace(0, 3, text), "abcdefdef");
  EXPECT_EQ(text.replace(1, 7, text.view().substr(7)), "aeff");
}

TEST(SStringResize, PadsOrDropsTheTail) {
  SString text("abc");
  text.resize(5, '.');
  EXPECT_EQ(text, "abc..");
  text.resize(2);
  EXPECT_EQ(text, "ab");
  text.resize(4);
  EXPECT_EQ(text, "ab\0\0"sv);
  text.resize(0);
  EXPECT_EQ(text, "");
}

TEST(SStringMove, LeavesAUsableSourceBehind) {
  SString source("abc");
  SString target(std::move(source));
  source = "again";
  target = std::move(source);
  source = "and again";
  EXPECT_EQ(target, "again");
  EXPECT_EQ(source, "and again");
}

TEST(SStringBytes, EveryByteValueIsKept) {
  SString text;
  for (int byte = 0; byte < 256; ++byte) text += static_cast<char>(byte);
  ASSERT_EQ(text.length(), 256U);
  for (SString::Size i = 0; i < 256; ++i) EXPECT_EQ(static_cast<unsigned char>(text.at(i)), i);
}

}  // namespace
}  // namespace vessant::test
