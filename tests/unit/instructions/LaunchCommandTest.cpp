// The file name of LAUNCH, which may be quoted and may hold blanks.

#include "InstructionsFixture.h"

namespace vessant::test {
namespace {

class LaunchCommand : public InstructionsFixture {
 protected:
  std::string launched(const std::string& statement) {
    actions.calls.clear();
    run({statement});
    return actions.calls.empty() ? "nothing" : actions.calls.front();
  }
};

TEST_F(LaunchCommand, TakesAQuotedName) {
  EXPECT_EQ(launched("LAUNCH \"my jvm.jvm\" 5"), "launchWithJvmFile(my jvm.jvm, 5)");
  EXPECT_EQ(launched("LAUNCH   \" padded \" 5"), "launchWithJvmFile( padded , 5)");
  EXPECT_EQ(launched("LAUNCH \"plain\"5"), "launchWithJvmFile(plain, 5)");
}

TEST_F(LaunchCommand, ReadsADoubledQuoteAsOne) {
  EXPECT_EQ(launched("LAUNCH \"the \"\"new\"\" one\" 5"), "launchWithJvmFile(the \"new\" one, 5)");
  EXPECT_EQ(launched("LAUNCH \"x\"\"\" 5"), "launchWithJvmFile(x\", 5)");
}

TEST_F(LaunchCommand, KeepsQuotesInsideAPlainName) {
  EXPECT_EQ(launched("LAUNCH a\"b 5"), "launchWithJvmFile(a\"b, 5)");
}

TEST_F(LaunchCommand, EndsAPlainNameAtWhitespaceOfTagFilesOnly) {
  for (const char* blank : {" ", "\t", "\n", "\r"}) {
    EXPECT_EQ(launched(std::string("LAUNCH ") + blank + "a.jvm" + blank + "5"),
              "launchWithJvmFile(a.jvm, 5)");
  }
  EXPECT_EQ(launched("LAUNCH a\vb\fc.jvm 5"), "launchWithJvmFile(a\vb\fc.jvm, 5)");
  EXPECT_EQ(launched("LAUNCH \va.jvm 5"), "launchWithJvmFile(\va.jvm, 5)");
  EXPECT_EQ(launched("LAUNCH \f\"a.jvm\" 5"), "launchWithJvmFile(\f\"a.jvm\", 5)");
}

TEST_F(LaunchCommand, SeparatesTheSecondsByAnyWhitespace) {
  EXPECT_EQ(launched("LAUNCH \"a.jvm\"\v5"), "launchWithJvmFile(a.jvm, 5)");
  EXPECT_EQ(launched("LAUNCH a.jvm \f5"), "launchWithJvmFile(a.jvm, 5)");
}

TEST_F(LaunchCommand, SubstitutesVariablesInAQuotedName) {
  actions.setStringVariable(1, "/opt/a \"b\"");
  EXPECT_EQ(launched("LAUNCH \"@S1@/x y\" 5"), "launchWithJvmFile(/opt/a \"b\"/x y, 5)");
}

TEST_F(LaunchCommand, AcceptsANameThatSubstitutionLeavesEmpty) {
  EXPECT_EQ(launched("LAUNCH @S1@ 5"), "launchWithJvmFile(, 5)");
}

TEST_F(LaunchCommand, RefusesAnEmptyName) {
  const ScriptError error{"Invalid jvm file name specified in LAUNCH. Empty expression.", kLine};
  EXPECT_EQ(errorIn("LAUNCH"), error);
  EXPECT_EQ(errorIn("LAUNCH  "), error);
  EXPECT_EQ(errorIn("LAUNCH \"\" 5"), error);
}

TEST_F(LaunchCommand, TellsABadReferenceInTheName) {
  EXPECT_EQ(errorIn("LAUNCH @S1 5"),
            (ScriptError{"Invalid jvm file name specified in LAUNCH. Invalid variable "
                         "specification.",
                         kLine}));
}

TEST_F(LaunchCommand, TellsAMissingQuoteWithoutALine) {
  const char* const names[] = {"\"my jvm.jvm 5", "\"", "\"x\"\"", "\"x\"\" 5", "\"\"\" 5"};
  for (const std::string name : names) {
    EXPECT_EQ(errorIn("LAUNCH  " + name),
              (ScriptError{
                  "Expected ending quote in " + name + "Invalid jvm file name specified in LAUNCH.",
                  ScriptError::kNoLine}));
  }
}

TEST_F(LaunchCommand, ReadsTheSecondsFromWhereTheNameEnds) {
  EXPECT_EQ(errorIn("LAUNCH \"a\"b 5"), (ScriptError{" Invalid numeric expression (b)", kLine}));
}

}  // namespace
}  // namespace vessant::test
