// Taking arguments off a text.
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

constexpr SString::Size npos = SString::npos;

struct Taken {
  std::string argument;
  SString::Size position;
  bool operator==(const Taken&) const = default;
};

void PrintTo(const Taken& taken, std::ostream* out) {
  *out << '"' << taken.argument << "\" and " << taken.position;
}

Taken take(const SString& text, SString::Size position, ArgumentForm form) {
  SString result("left from before");
  nextArgument(result, text, position, form);
  return {str(result), position};
}

Taken takePlain(const SString& text, SString::Size position = 0) {
  return take(text, position, ArgumentForm::Plain);
}

Taken takeQuoted(const SString& text, SString::Size position = 0) {
  return take(text, position, ArgumentForm::Quoted);
}

TEST(PlainArgument, EndsAtWhitespaceAndLeavesThePositionOnIt) {
  EXPECT_EQ(takePlain("abc def"), (Taken{"abc", 3}));
  EXPECT_EQ(takePlain("abc\tdef"), (Taken{"abc", 3}));
  EXPECT_EQ(takePlain("abc\rdef"), (Taken{"abc", 3}));
  EXPECT_EQ(takePlain("abc\ndef"), (Taken{"abc", 3}));
  EXPECT_EQ(takePlain("abc def ghi", 4), (Taken{"def", 7}));
}

TEST(PlainArgument, IsEmptyWhenThePositionIsOnWhitespace) {
  EXPECT_EQ(takePlain("abc def", 3), (Taken{"", 3}));
  EXPECT_EQ(takePlain(" abc"), (Taken{"", 0}));
}

TEST(PlainArgument, IsTheWholeTextWhenNoWhitespaceFollows) {
  EXPECT_EQ(takePlain("abc"), (Taken{"abc", npos}));
  EXPECT_EQ(takePlain("abc def", 4), (Taken{"abc def", npos}));
  EXPECT_EQ(takePlain("abc", 100), (Taken{"abc", npos}));
  EXPECT_EQ(takePlain("abc", npos), (Taken{"abc", npos}));
  EXPECT_EQ(takePlain(""), (Taken{"", npos}));
}

TEST(PlainArgument, HoldsQuotesAndOtherWhiteSpaceAsTheyAre) {
  EXPECT_EQ(takePlain("\"a\"\vb\f c"), (Taken{"\"a\"\vb\f", 6}));
}

TEST(QuotedArgument, EndsAtTheClosingQuote) {
  EXPECT_EQ(takeQuoted("abc\" def"), (Taken{"abc", 4}));
  EXPECT_EQ(takeQuoted("x \"abc\" def", 3), (Taken{"abc", 7}));
  EXPECT_EQ(takeQuoted("\" abc"), (Taken{"", 1}));
  EXPECT_EQ(takeQuoted("a b\tc\n\" "), (Taken{"a b\tc\n", 7}));
}

TEST(QuotedArgument, AtTheEndOfTheTextThePositionIsNone) {
  EXPECT_EQ(takeQuoted("abc\""), (Taken{"abc", npos}));
  EXPECT_EQ(takeQuoted("\""), (Taken{"", npos}));
}

TEST(QuotedArgument, ADoubledQuoteStandsForOne) {
  EXPECT_EQ(takeQuoted("ab\"\"c\"d"), (Taken{"ab\"c", 6}));
  EXPECT_EQ(takeQuoted("\"\"\"\"a\" "), (Taken{"\"\"a", 6}));
  EXPECT_EQ(takeQuoted("\"\"\""), (Taken{"\"", npos}));
  EXPECT_EQ(takeQuoted("a\"\"\" b"), (Taken{"a\"", 4}));
  EXPECT_EQ(takeQuoted("a\"\"b\"\"c\""), (Taken{"a\"b\"c", npos}));
}

std::string quotedError(const SString& text, SString::Size position) {
  try {
    takeQuoted(text, position);
  } catch (const LauncherException& exception) {
    return str(exception.message());
  }
  return "(no exception)";
}

TEST(QuotedArgument, WithoutAClosingQuoteTheErrorNamesThePosition) {
  const std::string text = "Expected double quote to end argument near ";
  EXPECT_EQ(quotedError("abc", 0), text + "0");
  EXPECT_EQ(quotedError("x \"abc", 3), text + "3");
  EXPECT_EQ(quotedError("", 0), text + "0");
  EXPECT_EQ(quotedError("abc", 3), text + "3");
  EXPECT_EQ(quotedError("abc\"\"def", 0), text + "5") << "behind the doubled quote";
}

TEST(QuotedArgument, NoPositionIsShownAsMinusOne) {
  EXPECT_EQ(quotedError("abc\"", npos), "Expected double quote to end argument near -1");
}

TEST(QuotedArgument, ADoubledQuoteAtTheVeryEndClosesNothing) {
  const std::string expected = "Expected double quote to end argument near -1";
  EXPECT_EQ(quotedError("abc\"\"", 0), expected);
  EXPECT_EQ(quotedError("\"\"", 0), expected);
  EXPECT_EQ(quotedError("a\"\"b\"\"", 0), expected);
}

TEST(QuotedArgument, SeveralAreTakenOneAfterTheOther) {
  const SString text("\"a b\" \"c\"");
  SString::Size position = 1;
  SString argument;
  nextArgument(argument, text, position, ArgumentForm::Quoted);
  EXPECT_EQ(argument, "a b");
  EXPECT_EQ(position, 5U);
  position += 2;
  nextArgument(argument, text, position, ArgumentForm::Quoted);
  EXPECT_EQ(argument, "c");
  EXPECT_EQ(position, npos);
}

Taken takeWord(const SString& text, SString::Size position = 0) {
  SString result("left from before");
  nextWord(result, text, position);
  return {str(result), position};
}

TEST(Word, EndsAtAnyOfSixWhitespaceCharacters) {
  for (const char* text : {"ab cd", "ab\tcd", "ab\ncd", "ab\rcd", "ab\vcd", "ab\fcd"}) {
    EXPECT_EQ(takeWord(text), (Taken{"ab", 3})) << text;
    EXPECT_EQ(takeWord(text, 2), (Taken{"cd", 6})) << text;
  }
}

TEST(Word, SkipsWhitespaceInFrontOfIt) {
  EXPECT_EQ(takeWord(" \t\v\f\r\n ab  "), (Taken{"ab", 10}));
}

TEST(Word, IsEmptyWhenNoneIsLeft) {
  EXPECT_EQ(takeWord("").argument, "");
  EXPECT_EQ(takeWord("   ").argument, "");
  EXPECT_EQ(takeWord("abc", 3).argument, "");
  EXPECT_EQ(takeWord("abc", 100).argument, "");
  EXPECT_EQ(takeWord("abc", npos).argument, "");
}

TEST(Word, HighBytesBelongToIt) {
  EXPECT_EQ(takeWord("\xa0\x85 b"), (Taken{"\xa0\x85", 3}));
}

TEST(Word, AllWordsOfATextComeInOrder) {
  const SString text("  FIND_JVM  a\tb ");
  std::vector<std::string> words;
  SString::Size position = 0;
  SString word;
  for (nextWord(word, text, position); !word.isEmpty(); nextWord(word, text, position)) {
    words.push_back(str(word));
  }
  EXPECT_EQ(words, (std::vector<std::string>{"FIND_JVM", "a", "b"}));
}

}  // namespace
}  // namespace vessant::test
