// The argument list of a macro function and the errors that it may hold.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/launch/MacroFunctions.h"
#include "support/FakeRun.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

using Texts = std::vector<std::string>;

constexpr SString::Size kListStart = 3;  // behind "%F%"

class FunctionArguments : public ::testing::Test {
 protected:
  /// The arguments of the list that follows "%F%".
  Texts argumentsIn(const std::string& list) {
    const MacroText whole(std::string_view(text = "%F%" + list));
    StringDeque arguments;
    position = kListStart;
    parseFunctionArguments(whole, position, arguments, log);
    Texts result;
    for (const SString& argument : arguments) result.push_back(str(argument));
    return result;
  }
  std::string errorIn(const std::string& list) {
    return thrownMessage([&] { argumentsIn(list); });
  }
  /// Where the list that was read last ended, counted from its start.
  [[nodiscard]] SString::Size length() const { return position - kListStart; }

  std::string text;
  SString::Size position = 0;
  RecordingLog log;
};

TEST_F(FunctionArguments, MayBeNone) {
  EXPECT_EQ(argumentsIn("()"), Texts{});
  EXPECT_EQ(length(), 2U);
  EXPECT_EQ(argumentsIn(" \t( \r\n) tail"), Texts{});
  EXPECT_EQ(length(), 7U);
}

TEST_F(FunctionArguments, StandInQuotesBetweenCommas) {
  EXPECT_EQ(argumentsIn("(\"a\")"), Texts{"a"});
  EXPECT_EQ(argumentsIn("(\"a\",\"b c\",\"\")tail"), (Texts{"a", "b c", ""}));
  EXPECT_EQ(length(), 14U);
  EXPECT_EQ(argumentsIn("(\"(\",\")\",\",\")"), (Texts{"(", ")", ","}));
}

TEST_F(FunctionArguments, MayStandApart) {
  EXPECT_EQ(argumentsIn(" (\t\"a\" ,\n\"b\"\r) "), (Texts{"a", "b"}));
  EXPECT_EQ(length(), 14U);
}

TEST_F(FunctionArguments, KeepTheirBlanksAndLineBreaks) {
  EXPECT_EQ(argumentsIn("(\" a \n b\t\")"), Texts{" a \n b\t"});
}

TEST_F(FunctionArguments, ReadADoubledQuoteAsOne) {
  EXPECT_EQ(argumentsIn("(\"he said \"\"hi\"\"\")"), Texts{"he said \"hi\""});
  EXPECT_EQ(argumentsIn("(\"\"\"\",\"\"\"\"\"\")"), (Texts{"\"", "\"\""}));
}

TEST_F(FunctionArguments, MayEndInAComma) {
  EXPECT_EQ(argumentsIn("(\"a\",)"), Texts{"a"});
  EXPECT_EQ(length(), 6U);
}

TEST_F(FunctionArguments, AreCompleteWhenTheTextEndsBehindAnArgument) {
  EXPECT_EQ(argumentsIn("(\"A\",\"B\""), (Texts{"A", "B"}));
  EXPECT_EQ(position, SString::npos);
  EXPECT_EQ(argumentsIn("(\"\""), Texts{""});
  EXPECT_EQ(position, SString::npos);
}

TEST_F(FunctionArguments, AreAddedToWhatIsThere) {
  StringDeque arguments;
  arguments.add("first");
  position = 0;
  parseFunctionArguments(MacroText("(\"second\")"), position, arguments, log);
  EXPECT_EQ(arguments.count(), 2);
  EXPECT_EQ(arguments.get(1), "second");
}

TEST_F(FunctionArguments, TellWhereTheListGoesWrong) {
  struct Row {
    const char* list;
    const char* error;
  };
  const Row rows[] = {
      {"", "Expected left parenthesis. (near character 3)"},
      {"   ", "Expected left parenthesis. (near character 3)"},
      {" x()", "Expected left parenthesis. (near character 3)"},
      {")", "Expected left parenthesis. (near character 3)"},
      {"\"a\"", "Expected left parenthesis. (near character 3)"},
      {"(", "Expected string arg. (near character 4)"},
      {"(  ", "Expected string arg. (near character 4)"},
      {"  (a)", "Expected string arg. (near character 6)"},
      {"( \t,", "Expected string arg. (near character 4)"},
      {"((", "Expected string arg. (near character 4)"},
      {"(\"X\",'y')", "Expected string arg. (near character 8)"},
      {"(\"X\" ,  y)", "Expected string arg. (near character 9)"},
      {"(\"X\",", "Expected string arg. (near character 8)"},
      {"(\"X\",,\"Y\")", "Expected string arg. (near character 8)"},
      {"(\"X\" \"Y\")", "Expected right parenthesis. (near character 7)"},
      {"(\"X\" ", "Expected right parenthesis. (near character 7)"},
      {"(\"X\";", "Expected right parenthesis. (near character 7)"},
      {"(\"X\", \"Y\"  (", "Expected right parenthesis. (near character 12)"},
  };
  for (const Row& row : rows) {
    log.clear();
    EXPECT_EQ(errorIn(row.list), std::string("Launch script error: ") + row.error) << row.list;
    EXPECT_EQ(log.lines(),
              (std::vector<RecordingLog::Line>{{"Launch command:", LogLevel::Information},
                                               {text, LogLevel::Information}}));
  }
}

TEST_F(FunctionArguments, CountTheirPlaceFromTheBeginningOfTheWholeText) {
  MacroText whole("%A%() and %F%(bare) tail");
  whole.replace(5, "the value");
  whole.pass(14);
  EXPECT_EQ(whole.rest(), "%F%(bare) tail");
  StringDeque arguments;
  position = kListStart;
  EXPECT_EQ(thrownMessage([&] { parseFunctionArguments(whole, position, arguments, log); }),
            "Launch script error: Expected string arg. (near character 18)");
  EXPECT_EQ(log.texts(), (Texts{"Launch command:", "the value and %F%(bare) tail"}));
  MacroText open("%A%() %F%(\"x)");
  open.pass(6);
  position = kListStart;
  EXPECT_EQ(thrownMessage([&] { parseFunctionArguments(open, position, arguments, log); }),
            "Expected double quote to end argument near 11");
}

TEST_F(FunctionArguments, RefuseAZeroByte) {
  EXPECT_EQ(errorIn(std::string("(\0)", 3)),
            "Launch script error: Expected string arg. (near character 4)");
}

TEST_F(FunctionArguments, TellAMissingQuoteWithoutTheCommand) {
  const std::string message = "Expected double quote to end argument near ";
  EXPECT_EQ(errorIn("(\"abc"), message + "5");
  EXPECT_EQ(errorIn("(\"a\", \"abc)"), message + "10");
  EXPECT_EQ(errorIn("(\""), message + "5");
  EXPECT_EQ(errorIn("(\"A\"\""), message + "-1");
  EXPECT_TRUE(log.lines().empty());
}

TEST(LaunchScriptError, LogsTheCommandAndThrowsTheMessage) {
  RecordingLog log;
  EXPECT_EQ(thrownMessage([&] { launchScriptError("java %X%", "Bad.", log); }),
            "Launch script error: Bad.");
  EXPECT_EQ(log.lines(),
            (std::vector<RecordingLog::Line>{{"Launch command:", LogLevel::Information},
                                             {"java %X%", LogLevel::Information}}));
}

}  // namespace
}  // namespace vessant::test
