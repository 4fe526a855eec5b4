// Lines from a stream and from a text: one set of expectations for both readers.
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/Readers.h"
#include "support/FakeRun.h"
#include "unit/base/StreamOf.h"

namespace vessant::test {
namespace {

using namespace std::string_view_literals;
using Lines = std::vector<std::string>;

/// All lines up to the one with which the input ends.
Lines linesOfStream(std::string_view bytes) {
  const StreamOf stream(bytes);
  Lines lines;
  bool more = true;
  while (more) {
    SString line;
    more = readLine(stream.get(), line);
    lines.push_back(str(line));
  }
  return lines;
}

Lines linesOfText(std::string_view bytes) {
  const SString text(bytes);
  Lines lines;
  SString::Size position = 0;
  bool more = true;
  while (more) {
    SString line;
    more = readLine(text, position, line);
    lines.push_back(str(line));
  }
  return lines;
}

struct LineCase {
  const char* name;
  std::string_view bytes;
  Lines lines;
};

void PrintTo(const LineCase& lineCase, std::ostream* out) {
  *out << lineCase.name;
}

class LineReader : public testing::TestWithParam<LineCase> {};

TEST_P(LineReader, ReadsTheLinesOfAStream) {
  EXPECT_EQ(linesOfStream(GetParam().bytes), GetParam().lines);
}

TEST_P(LineReader, ReadsTheLinesOfAText) {
  EXPECT_EQ(linesOfText(GetParam().bytes), GetParam().lines);
}

// A final newline is followed by an empty line, with which the input ends.
INSTANTIATE_TEST_SUITE_P(
    Inputs, LineReader,
    testing::Values(LineCase{"nothing", "", {""}},
                    LineCase{"carriage return", "a\r\nb", {"a", "b"}},
                    LineCase{"final newline", "a\nb\n", {"a", "b", ""}},
                    LineCase{"no final newline", "last", {"last"}},
                    LineCase{"empty lines", "\n\n", {"", "", ""}},
                    LineCase{"carriage returns inside", "a\rb\r\r\nc", {"ab", "c"}},
                    LineCase{"only a carriage return", "\r", {""}},
                    LineCase{"blanks at both ends", " \t a b\t \n  c", {"a b", "c"}},
                    LineCase{"a line of blanks", "a\n \t \nb", {"a", "", "b"}},
                    LineCase{"other white space stays", "\v\fa\f", {"\v\fa\f"}},
                    LineCase{"high bytes", "\xe9\xff\x80\n", {"\xe9\xff\x80", ""}},
                    LineCase{"a NUL", "a\0b\nc"sv, {std::string("a\0b", 3), "c"}}));

TEST(LineReader, ReadsLinesOfEveryLength) {
  for (const std::size_t length : {255U, 256U, 257U, 512U, 513U, 100000U}) {
    const std::string line(length, 'x');
    const std::string returns =
        std::string("\r") + line.substr(0, length / 2) + "\r" + line.substr(length / 2);
    EXPECT_EQ(linesOfStream(returns + "\nnext"), (Lines{line, "next"})) << length;
    EXPECT_EQ(linesOfText(returns + "\nnext"), (Lines{line, "next"})) << length;
  }
}

TEST(LineReader, AppendsToWhatTheLineHoldsAndTrimsTheWhole) {
  const StreamOf stream(" one \n two ");
  SString line(" first,");
  EXPECT_TRUE(readLine(stream.get(), line));
  EXPECT_EQ(line, "first, one");
  EXPECT_FALSE(readLine(stream.get(), line));
  EXPECT_EQ(line, "first, one two");

  SString::Size position = 0;
  line = " first,";
  EXPECT_TRUE(readLine(SString(" one \n two "), position, line));
  EXPECT_EQ(line, "first, one");
}

TEST(LineReader, MovesThePositionPastTheNewline) {
  const SString text("a\r\nbc\nd");
  SString::Size position = 0;
  SString line;
  EXPECT_TRUE(readLine(text, position, line));
  EXPECT_EQ(position, 3U);
  EXPECT_TRUE(readLine(text, position, line));
  EXPECT_EQ(position, 6U);
  EXPECT_FALSE(readLine(text, position, line));
  EXPECT_EQ(position, 7U);
}

TEST(LineReader, StartsAtThePosition) {
  SString::Size position = 3;
  SString line;
  EXPECT_TRUE(readLine(SString("abcdef\ng"), position, line));
  EXPECT_EQ(line, "def");
}

TEST(LineReader, AtOrBeyondTheEndOfATextNothingIsTouched) {
  const SString text("abc");
  for (SString::Size position : {3U, 4U, SString::npos}) {
    const SString::Size before = position;
    SString line(" as it was ");
    EXPECT_FALSE(readLine(text, position, line));
    EXPECT_EQ(position, before);
    EXPECT_EQ(line, " as it was ");
  }
}

TEST(LineReader, AtTheEndOfAStreamThereAreOnlyEmptyLines) {
  const StreamOf stream("a");
  SString line;
  EXPECT_FALSE(readLine(stream.get(), line));
  SString next;
  EXPECT_FALSE(readLine(stream.get(), next));
  EXPECT_EQ(next, "");
}

TEST(LineReader, AReadErrorIsTheEndOfTheFile) {
  const FailingStream stream;
  SString line;
  EXPECT_FALSE(readLine(stream.get(), line));
  EXPECT_EQ(line, "");
}

}  // namespace
}  // namespace vessant::test
