// Trimming, endings, quotes and the classes of characters.
#include <string_view>

#include <gtest/gtest.h>

#include "launcher/base/TextUtil.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

using namespace std::string_view_literals;

TEST(Trim, TakesWhitespaceOffBothEnds) {
  const std::pair<std::string_view, std::string_view> table[] = {{"", ""},
                                                                 {"abc", "abc"},
                                                                 {" abc", "abc"},
                                                                 {"abc ", "abc"},
                                                                 {" \t\n\rabc\r\n\t ", "abc"},
                                                                 {" a b ", "a b"},
                                                                 {" \t\r\n", ""},
                                                                 {"\va\f", "\va\f"},
                                                                 {"\0 "sv, "\0"sv},
                                                                 {"\xa0x\xa0", "\xa0x\xa0"}};
  for (const auto& [text, expected] : table) {
    SString trimmedText(text);
    trim(trimmedText);
    EXPECT_EQ(trimmedText, expected);
    EXPECT_EQ(trimmed(SString(text)), expected);
  }
}

TEST(Trim, TakesTheCharactersOfAnotherSetOff) {
  EXPECT_EQ(trimmed("xyabcyx", "xy"), "abc");
  EXPECT_EQ(trimmed(" abc ", "x"), " abc ");
  EXPECT_EQ(trimmed(" abc ", ""), " abc ");
  EXPECT_EQ(trimmed("xxx", "x"), "");
}

TEST(Trim, LeavesOtherOwnersOfTheTextAlone) {
  const SString source("  abc  ");
  SString copy(source);
  trim(copy);
  EXPECT_EQ(copy, "abc");
  EXPECT_EQ(source, "  abc  ");
}

TEST(EndsWith, TellsWhereTheSuffixStarts) {
  const SString text("setup.cp1");
  EXPECT_EQ(endsWith(text, ".cp1"), 5U);
  EXPECT_EQ(endsWith(text, "setup.cp1"), 0U);
  EXPECT_EQ(endsWith(text, ""), 9U);
  EXPECT_EQ(endsWith(text, ".cp"), SString::npos);
  EXPECT_EQ(endsWith(text, ".CP1"), SString::npos);
  EXPECT_EQ(endsWith(text, "/setup.cp1"), SString::npos);
  EXPECT_EQ(endsWith("aXaX", "X"), 3U);
  EXPECT_EQ(endsWith("", ""), 0U);
  EXPECT_EQ(endsWith("", "x"), SString::npos);
}

TEST(Characters, FourOfThemAreWhitespace) {
  for (int code = 0; code < 256; ++code) {
    const bool expected = code == 9 || code == 10 || code == 13 || code == 32;
    EXPECT_EQ(isSpaceChar(static_cast<char>(code)), expected) << code;
  }
  EXPECT_EQ(kWhitespace, " \t\n\r");
}

TEST(Characters, SixOfThemAreWhitespaceForWords) {
  for (int code = 0; code < 256; ++code) {
    const bool expected = (9 <= code && code <= 13) || code == 32;
    EXPECT_EQ(isWideSpaceChar(static_cast<char>(code)), expected) << code;
  }
}

TEST(Quotes, OneAtEachEndIsTakenOffIndependently) {
  const std::pair<const char*, const char*> table[] = {{"", ""},
                                                       {"abc", "abc"},
                                                       {"\"abc\"", "abc"},
                                                       {"\"abc", "abc"},
                                                       {"abc\"", "abc"},
                                                       {"\"", ""},
                                                       {"\"\"", ""},
                                                       {"\"\"\"\"", "\"\""},
                                                       {"a\"b", "a\"b"},
                                                       {"\"a\"b", "a\"b"},
                                                       {" \"abc\" ", " \"abc\" "}};
  for (const auto& [text, expected] : table) {
    EXPECT_EQ(withoutOuterQuotes(text), expected) << text;
  }
}

TEST(Quotes, QuotedTextStandsBetweenThem) {
  EXPECT_EQ(quoted("a b"), "\"a b\"");
  EXPECT_EQ(quoted(""), "\"\"");
  EXPECT_EQ(quoted("a\"b"), "\"a\"b\"");
}

}  // namespace
}  // namespace vessant::test
