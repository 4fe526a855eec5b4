// What the lines of a tag file mean.

#include <string>

#include "TagFileFixture.h"

namespace vessant::test {
namespace {

struct Reading {
  const char* name;
  std::string text;
  Tags tags;
};

const Reading kReadings[] = {
    // Single values.
    {"ValueBehindBlanks", "COLOR: blue\n", {{"COLOR", {"blue"}}}},
    {"ValueRightBehindTheColon", "COLOR:blue\n", {{"COLOR", {"blue"}}}},
    {"BlanksAroundEverything", " \t COLOR \t: \t blue sky \t \n", {{"COLOR", {"blue sky"}}}},
    {"ColonInTheValue", "URL: http://host:80/\n", {{"URL", {"http://host:80/"}}}},
    {"ColonAtTheEndOfTheValue", "A: b:\n", {{"A", {"b:"}}}},
    {"QuoteInsideAPlainValue", "A: say \"hi\"\n", {{"A", {"say \"hi\""}}}},
    {"NameWithBlanksInside", "MY TAG: 1\n", {{"MY TAG", {"1"}}}},
    {"NameWithQuotes", "\"N\": 1\n", {{"\"N\"", {"1"}}}},
    {"EmptyName", ": 1\n", {{"", {"1"}}}},
    {"NamesDifferInCase", "a: 1\nA: 2\n", {{"a", {"1"}}, {"A", {"2"}}}},
    {"BytesBeyondAscii", "\xC4\xFF: \x80\xA0\n", {{"\xC4\xFF", {"\x80\xA0"}}}},
    {"VerticalTabIsNoWhitespace", "A: \v\f\n", {{"A", {"\v\f"}}}},
    {"NulByteIsText", std::string("A: b\0c\n", 7), {{"A", {std::string("b\0c", 3)}}}},
    // Lines.
    {"NothingAtAll", "", {}},
    {"BlankLinesOnly", "\n \t \n\r\n", {}},
    {"BlankLinesBetween", "\nA: 1\n\n \t\nB: 2\n\n", {{"A", {"1"}}, {"B", {"2"}}}},
    {"LastLineWithoutItsEnd", "A: 1\nB: 2", {{"A", {"1"}}, {"B", {"2"}}}},
    {"ReturnsBeforeNewlines", "A: 1\r\nB: 2\r\n", {{"A", {"1"}}, {"B", {"2"}}}},
    {"ReturnsAnywhere", "\rA\r: 1\r2\r\n", {{"A", {"12"}}}},
    {"ReturnsEndNoLine", "A: 1\rB: 2\r", {{"A", {"1B: 2"}}}},
    // Blocks.
    {"Block", "L:\na\n\nb\n/:\n", {{"L", {"a", "b"}}}},
    {"BlockLinesAreTrimmed", "L : \n\t a b \n \t\n  /: \n", {{"L", {"a b"}}}},
    {"BlockWithReturns", "L:\r\na\r\n\r\n/:\r\n", {{"L", {"a"}}}},
    {"ColonsInABlock",
     "L:\nA: 1\nB:\n:\n//:\n/: x\n/:\n",
     {{"L", {"A: 1", "B:", ":", "//:", "/: x"}}}},
    {"QuoteInsideABlockLine", "L:\na \"b\" c\n/:\n", {{"L", {"a \"b\" c"}}}},
    {"BlockThenMore", "L:\na\n/:\nM: 1\n", {{"L", {"a"}}, {"M", {"1"}}}},
    {"BlockEndWithoutItsLineEnd", "L:\na\n/:", {{"L", {"a"}}}},
    {"EmptyBlockMakesNoTag", "L:\n\n/:\nM: 1\n", {{"M", {"1"}}}},
    {"StrayBlockEndOpensABlock", "/:\na\nb\n/:\n", {{"/", {"a", "b"}}}},
    {"SlashWithAValueIsATag", "/: 1\n", {{"/", {"1"}}}},
    // Quotes.
    {"QuotedValue", "A: \"  padded  \"\n", {{"A", {"  padded  "}}}},
    {"QuotedValueRightBehindTheColon", "A:\"x\"\n", {{"A", {"x"}}}},
    {"EmptyQuotedValue", "A: \"\"\n", {{"A", {""}}}},
    {"DoubledQuoteInside", "A: \"a\"\"b\"\n", {{"A", {"a\"b"}}}},
    {"OnlyADoubledQuote", "A: \"\"\"\"\n", {{"A", {"\""}}}},
    {"DoubledQuotesAtBothEnds", "A: \"\"\"x\"\"\"\n", {{"A", {"\"x\""}}}},
    {"TextBehindTheClosingQuote", "A: \"a\" b \"c\n", {{"A", {"a"}}}},
    {"QuotedBlockLines",
     "L:\n \" a \" rest\n\"\"\n\"b\"\"c\"\n\"/:\"\n/:\n",
     {{"L", {" a ", "", "b\"c", "/:"}}}},
    // The same name again.
    {"SecondDefinitionWins", "A: 1\nB: 2\nA: 3\n", {{"B", {"2"}}, {"A", {"3"}}}},
    {"SecondBlockWins", "A:\na\nb\nc\n/:\nA:\nd\n/:\n", {{"A", {"d"}}}},
    {"ValueReplacesABlock", "A:\na\nb\n/:\nA: c\n", {{"A", {"c"}}}},
    {"EmptyBlockForgetsTheTag", "A: 1\nB: 2\nA:\n/:\n", {{"B", {"2"}}}},
    {"ManyDefinitions", "A: 1\nA: 2\nB: 1\nA: 3\nB: 2\n", {{"A", {"3"}}, {"B", {"2"}}}},
};

void PrintTo(const Reading& reading, std::ostream* out) {
  *out << reading.text;
}

class TagFileReading : public TagFileFixture, public ::testing::WithParamInterface<Reading> {};

TEST_P(TagFileReading, GivesTheTags) {
  EXPECT_EQ(tagsIn(GetParam().text), GetParam().tags);
  EXPECT_TRUE(log.lines().empty());
}

INSTANTIATE_TEST_SUITE_P(TagFile, TagFileReading, ::testing::ValuesIn(kReadings),
                         [](const auto& reading) { return std::string(reading.param.name); });

class TagFileSyntax : public TagFileFixture {};

TEST_F(TagFileSyntax, ReadsBothFormsInOneFile) {
  read("COLOR: blue\nITEMS:\n  first item\n  \"  padded item  \"\n/:\n");
  EXPECT_EQ(tagsOf(file),
            (Tags{{"COLOR", {"blue"}}, {"ITEMS", {"first item", "  padded item  "}}}));
}

TEST_F(TagFileSyntax, CountsOnlyTheLastDefinitionsValues) {
  read("A:\n1\n2\n3\n/:\nA:\n4\n5\n/:\n");
  EXPECT_EQ(file.getValueCount("A"), 2);
  EXPECT_EQ(file.getValue("A"), "4");
}

TEST_F(TagFileSyntax, KeepsALineOfAnyLength) {
  const std::string name(70'000, 'N');
  const std::string value(300'000, 'v');
  EXPECT_EQ(tagsIn(name + ": " + value + "\n"), (Tags{{name, {value}}}));
}

// A lookup for each line would take hours here.
TEST_F(TagFileSyntax, ReadsManyDistinctTags) {
  constexpr int kCount = 100'000;
  std::string text;
  for (int i = 0; i < kCount; ++i) text += "TAG_" + std::to_string(i) + ": x\n";
  read(text);
  ASSERT_EQ(file.tags().count(), kCount);
  EXPECT_EQ(tagsOf(file).front().first, "TAG_0");
  EXPECT_EQ(tagsOf(file).back().first, "TAG_99999");
  EXPECT_EQ(file.lineNumber(), kCount + 1);
}

TEST_F(TagFileSyntax, ReadsManyRedefinitions) {
  constexpr int kCount = 100'000;
  std::string text = "FIRST: 1\n";
  for (int i = 0; i < kCount; ++i) text += "A: " + std::to_string(i) + "\nB: x\n";
  EXPECT_EQ(tagsIn(text), (Tags{{"FIRST", {"1"}}, {"A", {"99999"}}, {"B", {"x"}}}));
}

TEST_F(TagFileSyntax, ReadsABlockOfManyValues) {
  constexpr int kCount = 100'000;
  std::string text = "L:\n";
  for (int i = 0; i < kCount; ++i) text += std::to_string(i) + "\n";
  read(text + "/:\n");
  ASSERT_EQ(file.getValueCount("L"), kCount);
  EXPECT_EQ(file.getValue("L", kCount - 1), "99999");
}

}  // namespace
}  // namespace vessant::test
