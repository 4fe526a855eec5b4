#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/linux/LinuxPlatformImpl.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

using Arguments = std::vector<std::string>;

Arguments split(std::string_view commandLine) {
  StringDeque list;
  EXPECT_TRUE(splitCommandLine(list, commandLine));
  Arguments arguments;
  for (const SString& argument : list) arguments.push_back(str(argument));
  return arguments;
}

struct Case {
  const char* name;
  const char* commandLine;
  Arguments arguments;
};

void PrintTo(const Case& item, std::ostream* out) {
  *out << item.name;
}

std::string nameOf(const testing::TestParamInfo<Case>& item) {
  return item.param.name;
}

class SplitCommandLine : public testing::TestWithParam<Case> {};

TEST_P(SplitCommandLine, GivesTheArguments) {
  EXPECT_EQ(split(GetParam().commandLine), GetParam().arguments);
}

INSTANTIATE_TEST_SUITE_P(
    Blanks, SplitCommandLine,
    testing::Values(Case{"Nothing", "", {}}, Case{"BlanksOnly", " \t\n\r ", {}},
                    Case{"OneWord", "java", {"java"}},
                    Case{"FourKindsOfBlanks", " a\tb\nc\rd  e ", {"a", "b", "c", "d", "e"}},
                    Case{"OtherControlCharactersAreOrdinary", "a\vb\fc", {"a\vb\fc"}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Quotes, SplitCommandLine,
    testing::Values(
        Case{"JavaCommand",
             R"("/opt/my java/bin/java" -cp "a b" -Dx=\"y\")",
             {"/opt/my java/bin/java", "-cp", "a b", R"(-Dx="y")"}},
        Case{"KeepBlanksInside", "p \" a\t\n\" b", {"p", " a\t\n", "b"}},
        Case{"SectionInsideAnArgument", R"(p ab"c d"e)", {"p", "abc de"}},
        Case{"SectionInTheProgram", R"(/opt/"my java"/java x)", {"/opt/my java/java", "x"}},
        Case{"TwoSectionsInAnArgument", R"(p a"b c""d e"f)", {"p", "ab cd ef"}},
        Case{"TextBehindAQuotedArgumentIsANewOne", R"(p "a b"c d)", {"p", "a b", "c", "d"}},
        Case{"QuotedArgumentsSideBySide", R"(p "a b""c d")", {"p", "a b", "c d"}},
        Case{"LonePairGivesNothing", R"("")", {}},
        Case{"EmptyArgumentsAreDropped", R"(p "" x "")", {"p", "x"}},
        Case{"EmptySectionAddsNothing", R"(p a""b)", {"p", "ab"}},
        Case{"UnterminatedTakesTheRest", R"(p "a b c )", {"p", "a b c "}},
        Case{"UnterminatedSectionTakesTheRest", R"(p ab"c d e )", {"p", "abc d e "}},
        Case{"LoneQuoteAtTheEnd", R"(p a ")", {"p", "a"}},
        Case{"UnterminatedProgram", R"("/opt/my java)", {"/opt/my java"}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Backslashes, SplitCommandLine,
    testing::Values(
        Case{"AreKeptBeforeOtherCharacters", R"(C:\x\y arg\z)", {R"(C:\x\y)", R"(arg\z)"}},
        Case{"ProgramKeepsThemBeforeAQuote", R"(a\"b c" d)", {R"(a\b c)", "d"}},
        Case{"QuotedProgramEndsAtAQuoteBehindOne", R"("C:\dir\" x)", {R"(C:\dir\)", "x"}},
        Case{"EscapedQuoteInAQuotedArgument", R"(p "a \"b\" c")", {"p", R"(a "b" c)"}},
        Case{"EscapedQuoteInASection", R"(p x"a \" b"y)", {"p", R"(xa " by)"}},
        Case{"EscapedQuoteStartsNoSection", R"(p a\"b c)", {"p", R"(a"b)", "c"}},
        Case{"DoubledStaysDoubled", R"(p a\\b)", {"p", R"(a\\b)"}},
        Case{"SecondOfADoubledOneEscapesNothing", R"(p "a\\" b)", {"p", R"(a\\)", "b"}},
        Case{"NoEscapeOfLetters", R"(p a\nb)", {"p", R"(a\nb)"}},
        Case{"BlankBehindOneIsTaken", R"(p a\ b)", {"p", R"(a\ b)"}},
        Case{"LastCharacterIsLost", R"(p a\)", {"p", "a"}},
        Case{"AloneGivesNothing", R"(p \)", {"p"}},
        Case{"AProgramOfQuotesIsNoProgram", R"("" C:\x\"y z)", {R"(C:\x\y z)"}}),
    nameOf);

TEST(CommandLine, EmptiesTheListFirst) {
  StringDeque list;
  list.add("old");
  EXPECT_TRUE(splitCommandLine(list, "new"));
  ASSERT_EQ(list.count(), 1);
  EXPECT_EQ(list.get(0), "new");
}

TEST(CommandLine, SplitsALongLineInOnePass) {
  std::string line = "p";
  for (int i = 0; i < 20000; ++i) line += " \"argument\"";
  EXPECT_EQ(split(line).size(), 20001U);
}

}  // namespace
}  // namespace vessant::test
