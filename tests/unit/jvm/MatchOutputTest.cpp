// What a candidate prints, compared with what its JVM file asks for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using Values = std::vector<std::string>;

bool matches(const std::string& output, const Values& values, RecordingLog& log) {
  StringPairPtrDeque expected;
  for (const std::string& value : values) {
    auto pair = std::make_unique<StringPair>();
    pair->name = "name";
    pair->value = text(value);
    expected.add(std::move(pair));
  }
  return JVMFile::matchOutput(text(output), expected, log);
}

struct Case {
  const char* name;
  const char* output;
  Values expected;
  bool matches;
};

void PrintTo(const Case& item, std::ostream* out) {
  *out << item.name;
}

class MatchOutput : public testing::TestWithParam<Case> {};

TEST_P(MatchOutput, Decides) {
  RecordingLog log;
  EXPECT_EQ(matches(GetParam().output, GetParam().expected, log), GetParam().matches);
  EXPECT_TRUE(log.lines().empty());
}

std::string nameOf(const testing::TestParamInfo<Case>& item) {
  return item.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    WholeValues, MatchOutput,
    testing::Values(Case{"Equal", "1739021872\nppc\n", {"ppc"}, true},
                    Case{"Longer", "1739021872\nppc64\n", {"ppc"}, false},
                    Case{"Shorter", "1739021872\npp\n", {"ppc"}, false},
                    Case{"OtherCase", "1739021872\nPPC\n", {"ppc"}, false},
                    Case{"EmptyLineForAnEmptyValue", "1739021872\n\n", {""}, true},
                    Case{"EmptyLineForAValue", "1739021872\n\nppc\n", {"ppc"}, false},
                    Case{"TextForAnEmptyValue", "1739021872\nx\n", {""}, false},
                    Case{"NoExpectedValues", "1739021872\nanything\n", {}, true}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Prefixes, MatchOutput,
    testing::Values(Case{"Longer", "1739021872\n1.3.1_02\n", {"1.3..."}, true},
                    Case{"Equal", "1739021872\n1.3\n", {"1.3..."}, true},
                    Case{"Different", "1739021872\n1.4.0\n", {"1.3..."}, false},
                    Case{"Shorter", "1739021872\n1.\n", {"1.3..."}, false},
                    Case{"DotsAloneAcceptAll", "1739021872\nanything\n", {"..."}, true},
                    Case{"DotsAloneAcceptNothing", "1739021872\n\n", {"..."}, true},
                    Case{"FourDotsKeepOne", "1739021872\n13\n", {"1...."}, false},
                    Case{"TwoDotsAreText", "1739021872\n1.3\n", {"1.."}, false},
                    Case{"DotsInTheMiddleAreText", "1739021872\n1.x2\n", {"1...2"}, false},
                    Case{"OtherCase", "1739021872\nORACLE\n", {"Or..."}, false}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    SeveralValues, MatchOutput,
    testing::Values(Case{"AllEqual", "1739021872\na\nb\nc\n", {"a", "b", "c"}, true},
                    Case{"FirstDiffers", "1739021872\nx\nb\n", {"a", "b"}, false},
                    Case{"LastDiffers", "1739021872\na\nx\n", {"a", "b"}, false},
                    Case{"OrderMatters", "1739021872\nb\na\n", {"a", "b"}, false},
                    Case{"FewerLinesAreAccepted", "1739021872\na\n", {"a", "b"}, true},
                    Case{"NoLinesAreAccepted", "1739021872\n", {"a"}, true},
                    Case{"MagicLineWithoutItsEndIsAccepted", "1739021872", {"a"}, true},
                    Case{"AnEmptyLineIsALine", "1739021872\na\n\n", {"a", "b"}, false},
                    Case{"FurtherLinesAreIgnored", "1739021872\na\nb\n", {"a"}, true}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Lines, MatchOutput,
    testing::Values(Case{"LinesAheadOfTheMagicLineAreIgnored",
                         "warning\n\n17390218\n1739021872\na\n",
                         {"a"},
                         true},
                    Case{"ASecondMagicLineIsAValue", "1739021872\n1739021872\na\n", {"a"}, false},
                    Case{"LinesAreTrimmed", " \t1739021872 \n\t a \t\n", {"a"}, true},
                    Case{"CarriageReturnsAreDropped", "1739\r021872\r\na\rb\r\n", {"ab"}, true},
                    Case{"BlanksInsideAreKept", "1739021872\na  b\n", {"a b"}, false},
                    Case{"TheLastLineNeedsNoEnd", "1739021872\na\nx", {"a", "b"}, false}),
    nameOf);

struct Failure {
  const char* name;
  const char* output;
  const char* lastLine;
};

void PrintTo(const Failure& item, std::ostream* out) {
  *out << item.name;
}

class WithoutMagicLine : public testing::TestWithParam<Failure> {};

INSTANTIATE_TEST_SUITE_P(Outputs, WithoutMagicLine,
                         testing::Values(Failure{"Nothing", "", ""},
                                         Failure{"OneLine", "Error: none\n", "Error: none"},
                                         Failure{"LastLineWithoutItsEnd", "one\ntwo", "two"},
                                         Failure{"LastLineIsEmpty", "one\n\n", ""},
                                         Failure{"LastLineIsTrimmed", "  two \r\n", "two"},
                                         Failure{"Longer", "17390218720\n", "17390218720"},
                                         Failure{"TextAhead", "x1739021872\n", "x1739021872"},
                                         Failure{"InsideALine", "a 1739021872\nend\n", "end"}),
                         [](const auto& item) { return item.param.name; });

TEST_P(WithoutMagicLine, IsRejectedWithTheLastLineInTheLog) {
  RecordingLog log;
  EXPECT_FALSE(matches(GetParam().output, {}, log));
  EXPECT_THAT(log.lines(), ElementsAre(RecordingLog::Line{
                               std::string("Invalid magic value: ") + GetParam().lastLine + "\n",
                               LogLevel::Error}));
}

}  // namespace
}  // namespace vessant::test
