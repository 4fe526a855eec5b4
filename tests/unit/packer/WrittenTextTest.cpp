// What vspack writes for authors: read back, it is what was meant.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/WrittenText.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

TEST(TagLines, QuoteWhatWouldBeReadDifferently) {
  EXPECT_EQ(tagValue("plain \"inner\""), "plain \"inner\"");
  EXPECT_EQ(tagValue(""), "\"\"");
  EXPECT_EQ(tagValue(" x"), "\" x\"");
  EXPECT_EQ(tagValue("x\t"), "\"x\t\"");
  EXPECT_EQ(tagValue("\"x\" y"), "\"\"\"x\"\" y\"");
  EXPECT_EQ(tagValue("/:"), "\"/:\"");
  EXPECT_EQ(tagBlock("EMPTY", {}), "");
  EXPECT_EQ(tagBlock("TWO", {"a", "b "}), "TWO:\n  a\n  \"b \"\n/:\n");
}

using testing::HasSubstr;

std::string refusal(const std::string& title) {
  return thrownMessage([&] { static_cast<void>(escapedTitle(title)); });
}

TEST(Title, AsciiStaysAsItIs) {
  EXPECT_EQ(escapedTitle(""), "");
  EXPECT_EQ(escapedTitle("It's \"5\" $ @a@ #b# %c% `d`~"), "It's \"5\" $ @a@ #b# %c% `d`~");
}

TEST(Title, OtherCharactersBecomeEscapes) {
  EXPECT_EQ(escapedTitle("Grüße"), "Gr\\u00fc\\u00dfe");
  EXPECT_EQ(escapedTitle("\xC2\x80"), "\\u0080");
  EXPECT_EQ(escapedTitle("日本"), "\\u65e5\\u672c");
  EXPECT_EQ(escapedTitle("\xEF\xBF\xBD"), "\\ufffd");
}

TEST(Title, AnEscapeThatTheAuthorWroteStays) {
  EXPECT_EQ(escapedTitle("Gr\\u00fc\\U00DFe \\u0041"), "Gr\\u00fc\\U00DFe \\u0041");
  EXPECT_THAT(refusal("a\\u0000b"), HasSubstr("must be one line without control characters"));
  EXPECT_THAT(refusal("\\ud83d\\ude00"), HasSubstr("has a character that no launcher can show"));
}

TEST(Title, AnyOtherBackslashStandsForItself) {
  EXPECT_EQ(escapedTitle("C:\\users"), "C:\\u005cusers");
  EXPECT_EQ(escapedTitle("\\u12"), "\\u005cu12");
  EXPECT_EQ(escapedTitle("\\u12 4"), "\\u005cu12 4");
  EXPECT_EQ(escapedTitle("\\u+123"), "\\u005cu+123");
  EXPECT_EQ(escapedTitle("\\u0x12"), "\\u005cu0x12");
  EXPECT_EQ(escapedTitle("\\\\"), "\\u005c\\u005c");
}

TEST(Title, WhatIsNoUtf8IsRefused) {
  const std::string flaws[] = {"\xFF",     "\x80",         "\xC3",         "a\xC3z",
                               "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF0\x80\x80\xAF",
                               "\xE6\x97"};
  for (const std::string& title : flaws) EXPECT_THAT(refusal(title), HasSubstr("is no UTF-8 text"));
}

TEST(Title, ControlCharactersAndEmojiAreRefused) {
  EXPECT_THAT(refusal("a\nb"), HasSubstr("must be one line without control characters"));
  EXPECT_THAT(refusal("\x7F"), HasSubstr("must be one line without control characters"));
  EXPECT_THAT(refusal("😀"), HasSubstr("has a character that no launcher can show"));
}

TEST(Template, FillsEachPlace) {
  EXPECT_EQ(filled("<A> and <B>, <A>", {{"A", "1"}, {"B", "2"}}), "1 and 2, 1");
}

TEST(Template, KeepsWhatIsNoPlace) {
  EXPECT_EQ(filled("", {{"A", "1"}}), "");
  EXPECT_EQ(filled("a < b <C> <", {{"A", "1"}}), "a < b <C> <");
  EXPECT_EQ(filled("cat <in >out <A>", {{"A", "1"}}), "cat <in >out 1");
  EXPECT_EQ(filled("<<A>>", {{"A", "1"}}), "<1>");
}

TEST(Template, DoesNotLookAtFillingsAgain) {
  EXPECT_EQ(filled("<A><B>", {{"A", "<B>"}, {"B", "<A>"}}), "<B><A>");
}

}  // namespace
}  // namespace vessant::test
