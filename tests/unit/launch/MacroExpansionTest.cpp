// The engine that finds macros and lets a handler put their values in.

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/launch/MacroHandler.h"
#include "support/FakeRun.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

/// Replaces a macro by the value of its name, from one delimiter through the other.
class ValueHandler final : public MacroHandler {
 public:
  void handleMacro(MacroText& text, char delimiter, SString::Size end) override {
    const std::string name = str(macroName(text, end));
    asked.push_back(std::string(1, delimiter) + name);
    text.replace(end + 1, values[name]);
  }

  std::map<std::string, std::string> values;
  std::vector<std::string> asked;
};

class MacroExpansion : public ::testing::Test {
 protected:
  std::string expand(const char* source, char delimiter = '@') {
    return str(expandMacros(source, handler, delimiter));
  }
  std::string failure(const char* source) {
    return thrownMessage([&] { static_cast<void>(expand(source)); });
  }

  ValueHandler handler;
};

TEST_F(MacroExpansion, PutsValuesIn) {
  handler.values = {{"A", "one"}, {"B", "two"}, {"EMPTY", ""}};
  EXPECT_EQ(expand("@A@"), "one");
  EXPECT_EQ(expand("<@A@-@B@>"), "<one-two>");
  EXPECT_EQ(expand("@A@@B@@A@"), "onetwoone");
  EXPECT_EQ(expand("@EMPTY@@A@@EMPTY@"), "one");
  EXPECT_EQ(expand("@UNKNOWN@"), "");
}

TEST_F(MacroExpansion, ServesOneDelimiter) {
  handler.values = {{"A", "one"}};
  EXPECT_EQ(expand("%A% @A@ #A#", '#'), "%A% @A@ one");
  EXPECT_EQ(handler.asked, std::vector<std::string>{"#A"});
}

TEST_F(MacroExpansion, LeavesItsSourceAlone) {
  handler.values = {{"A", "one"}};
  const SString source = "@A@@@";
  EXPECT_EQ(expandMacros(source, handler, '@'), "one@");
  EXPECT_EQ(source, "@A@@@");
}

TEST_F(MacroExpansion, LeavesATextWithoutMacrosAlone) {
  for (const char* source : {"", "a", "ab", "plain text"}) EXPECT_EQ(expand(source), source);
  EXPECT_TRUE(handler.asked.empty());
}

TEST_F(MacroExpansion, ExpandsAValueAgain) {
  handler.values = {{"A", "<@B@>"}, {"B", "@C@@C@"}, {"C", "c"}};
  EXPECT_EQ(expand("@A@ @C@"), "<cc> c");
}

TEST_F(MacroExpansion, JoinsAValueWithWhatFollows) {
  handler.values = {{"A", "@"}, {"B", "b"}};
  EXPECT_EQ(expand("@A@B@"), "b");
}

TEST_F(MacroExpansion, EndsAtAnUnpairedDelimiter) {
  handler.values = {{"A", "one"}};
  EXPECT_EQ(expand("@A@ me@home"), "one me@home");
  EXPECT_EQ(expand("@A@ and @"), "one and @");
}

TEST_F(MacroExpansion, OpensNothingInTheLastTwoCharacters) {
  for (const char* source : {"@", "a@", "@a", "abc@", "abc@d"}) EXPECT_EQ(expand(source), source);
  EXPECT_EQ(expand("abc@@"), "abc@");
  EXPECT_TRUE(handler.asked.empty());
}

TEST_F(MacroExpansion, MakesADoubledDelimiterASingleOne) {
  EXPECT_EQ(expand("@@"), "@");
  EXPECT_EQ(expand("100%%", '%'), "100%");
  EXPECT_EQ(expand("a@@b"), "a@b");
  EXPECT_TRUE(handler.asked.empty());
}

TEST_F(MacroExpansion, CollapsesADoubledDelimiterWhenThePassHasEnded) {
  handler.values = {{"A", "x"}, {"B", "@"}};
  EXPECT_EQ(expand("@A@ a@@"), "x a@");
  EXPECT_EQ(expand("@B@@"), "@");
}

TEST_F(MacroExpansion, TakesADoubledDelimiterForThePartOfAName) {
  handler.values = {{"@", "both"}, {"@A", "name"}, {"@ ", "blank"}};
  EXPECT_EQ(expand("@@@@"), "both@");
  EXPECT_EQ(expand("@@A@"), "name");
  EXPECT_EQ(expand("@@ @"), "blank");
  EXPECT_EQ(handler.asked, (std::vector<std::string>{"@@", "@@A", "@@ "}));
}

TEST_F(MacroExpansion, ManagesManyMacros) {
  handler.values = {{"A", "x"}};
  SString source;
  for (int i = 0; i < 20000; ++i) source += "@A@";
  EXPECT_EQ(expandMacros(source, handler, '@'), SString(20000, 'x'));
}

TEST_F(MacroExpansion, ManagesManyMacrosInOneValue) {
  handler.values = {{"A", "-Dname=value "}};
  for (int i = 0; i < 20000; ++i) handler.values["ALL"] += "@A@";
  EXPECT_EQ(expand("@ALL@").size(), 20000 * handler.values["A"].size());
}

TEST_F(MacroExpansion, ManagesManyMacrosBehindOneAnother) {
  constexpr int kLength = 20000;
  for (int i = 0; i < kLength; ++i) {
    handler.values[std::to_string(i)] = "<@" + std::to_string(i + 1) + "@>";
  }
  handler.values[std::to_string(kLength)] = "end";
  EXPECT_EQ(expand("@0@"), std::string(kLength, '<') + "end" + std::string(kLength, '>'));
}

TEST_F(MacroExpansion, ManagesLongValuesWithMacrosInAndBehindThem) {
  const std::string longText(300 << 10, 'x');
  handler.values = {{"A", longText + "@B@"}, {"B", "b"}};
  EXPECT_EQ(expand("@A@:@A@:@B@"), longText + "b:" + longText + "b:b");
  handler.values = {{"A", std::string(64 << 20, 'x')}};
  EXPECT_EQ(expand("@A@.").size(), (64U << 20) + 1);
}

TEST_F(MacroExpansion, RefusesAValueThatLeadsBackToItself) {
  handler.values = {{"A", "@A@"}};
  EXPECT_EQ(failure("run @A@ now"), "The expansion of a macro never ends: run @A@ now");
}

TEST_F(MacroExpansion, RefusesValuesThatLeadBackToEachOther) {
  handler.values = {{"A", "a@B@"}, {"B", "@C@b"}, {"C", "@A@"}};
  EXPECT_EQ(failure("@C@"), "The expansion of a macro never ends: @C@");
}

TEST_F(MacroExpansion, RefusesAValueThatGrowsWithEveryTurn) {
  for (const std::size_t size : {1U, 3U, 100U, 5000U, 50000U, 3U << 20}) {
    const std::string padding(size, 'x');
    const std::string values[] = {padding + "@A@", "@A@" + padding, "@A@" + padding + "@A@",
                                  "@A@@A@"};
    for (const std::string& value : values) {
      handler.values = {{"A", value}};
      handler.asked.clear();
      EXPECT_EQ(failure("@A@"), "The expansion of a macro never ends: @A@");
      EXPECT_LT(handler.asked.size(), 40000U);
    }
  }
}

TEST_F(MacroExpansion, RefusesALongValueThatLeadsBackToItself) {
  const std::string name(1 << 20, 'n');
  handler.values = {{name, "@" + name + "@"}};
  EXPECT_EQ(failure(("@" + name + "@").c_str()).size(),
            std::string("The expansion of a macro never ends: @@").size() + name.size());
  EXPECT_LT(handler.asked.size(), 100U);
}

TEST(MacroText, IsReplacedWhereItsRestBegins) {
  MacroText text("one two three");
  text.pass(4);
  EXPECT_EQ(text.position(), 4U);
  EXPECT_EQ(text.rest(), "two three");
  text.replace(3, "a longer text");
  EXPECT_EQ(text.rest(), "a longer text three");
  text.pass(2);
  text.replace(6, "");
  EXPECT_EQ(text.whole(), "one a  text three");
  EXPECT_EQ(text.position(), 6U);
  text.replace(SString::npos, "end");
  EXPECT_EQ(text.rest(), "end");
  EXPECT_EQ(text.whole(), "one a end");
}

TEST(MacroText, KnowsWhatItWasGiven) {
  MacroText text("ab");
  EXPECT_FALSE(text.isInValue());
  text.replace(1, "xy");
  EXPECT_TRUE(text.isInValue());
  text.pass(2);
  EXPECT_FALSE(text.isInValue());
  EXPECT_EQ(text.movedInValues(), 0U);
  text.replace(1, "z");
  text.replace(1, "123");
  EXPECT_EQ(text.movedInValues(), 4U);
}

}  // namespace
}  // namespace vessant::test
