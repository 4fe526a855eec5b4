// GOTO, JMP0 and the labels that they look for.

#include "InstructionsFixture.h"

namespace vessant::test {
namespace {

class Jump : public InstructionsFixture {
 protected:
  using Calls = std::vector<std::string>;
};

TEST_F(Jump, GoesOnBehindTheLabel) {
  run({"GOTO end", "INSTALL_JVM 0", ":end", "INSTALL_JVM 1", "INSTALL_JVM 2"});
  EXPECT_EQ(actions.calls, (Calls{"installEmbeddedJvm(1)", "installEmbeddedJvm(2)"}));
}

TEST_F(Jump, EndsTheRunAtALabelInTheLastStatement) {
  EXPECT_EQ(run({"GOTO end", "BARK", ":end"}), 0);
}

TEST_F(Jump, GoesBack) {
  run({"GOTO start", ":again", "INSTALL_JVM 2", "GOTO end", ":start", "INSTALL_JVM 1", "GOTO again",
       ":end"});
  EXPECT_EQ(actions.calls, (Calls{"installEmbeddedJvm(1)", "installEmbeddedJvm(2)"}));
}

TEST_F(Jump, OnZeroOnly) {
  const Statements script = {"JMP0 @N1@ done", "INSTALL_JVM 1", ":done", "INSTALL_JVM 2"};
  run(script);
  EXPECT_EQ(actions.calls, Calls{"installEmbeddedJvm(2)"});
  for (const std::int32_t number : {1, -1, 2147483647}) {
    actions.calls.clear();
    actions.setNumericVariable(1, number);
    run(script);
    EXPECT_EQ(actions.calls, (Calls{"installEmbeddedJvm(1)", "installEmbeddedJvm(2)"})) << number;
  }
}

TEST_F(Jump, NotTakenLooksForNoLabel) {
  EXPECT_EQ(run({"JMP0 1 nowhere", "JMP0 1 @"}), 0);
}

TEST_F(Jump, IgnoresTokensBehindTheLabel) {
  EXPECT_EQ(run({"GOTO there now", "BARK", ":there", "JMP0 0 end now", "BARK", ":end"}), 0);
}

TEST_F(Jump, FindsTheFirstOfTwoEqualLabels) {
  run({"GOTO twice", ":twice", "INSTALL_JVM 1", "GOTO end", ":twice", "INSTALL_JVM 2", ":end"});
  EXPECT_EQ(actions.calls, Calls{"installEmbeddedJvm(1)"});
}

TEST_F(Jump, NeverFindsALabelInTheFirstStatement) {
  EXPECT_EQ(errorOf({":first", "GOTO first"}), (ScriptError{"Label not found (first)", 2}));
  EXPECT_EQ(errorOf({":first", "JMP0 0 first"}), (ScriptError{"Label not found (first)", 2}));
}

TEST_F(Jump, PrefersALaterStatementToTheFirst) {
  run({":twice", "JMP0 @N1@ skip", "GOTO end", ":skip", "SET N1 = 1", "GOTO twice", "INSTALL_JVM 1",
       ":twice", "INSTALL_JVM 2", ":end"});
  EXPECT_EQ(actions.calls, Calls{"installEmbeddedJvm(2)"});
}

TEST_F(Jump, ComparesWholeStatements) {
  const char* const statements[] = {":end now", ": end", ":END", "// end", ":en", ":ends", " :end"};
  for (const char* statement : statements) {
    EXPECT_EQ(errorOf({"// begin", statement, "GOTO end"}),
              (ScriptError{"Label not found (end)", 3}))
        << statement;
  }
  // " :end" is a label all the same: its first token begins with the mark.
  EXPECT_EQ(run({" :end", "// behind"}), 0);
}

TEST_F(Jump, MayComputeItsLabel) {
  actions.setStringVariable(1, "two words");
  actions.setNumericVariable(2, 7);
  run({"GOTO @S1@", ":step7", "INSTALL_JVM 1", "GOTO end", ":two words", "GOTO step@N2@", ":end"});
  EXPECT_EQ(actions.calls, Calls{"installEmbeddedJvm(1)"});
}

TEST_F(Jump, RefusesALabelThatComesOutBlank) {
  EXPECT_EQ(errorIn("GOTO @S1@"),
            (ScriptError{"Label @S1@ resolved to a blank string. Labels cannot be blank.", kLine}));
  EXPECT_EQ(errorIn("JMP0 0 @S2@"),
            (ScriptError{"Label @S2@ resolved to a blank string. Labels cannot be blank.", kLine}));
}

TEST_F(Jump, TellsAnUnknownLabelAsWritten) {
  actions.setStringVariable(1, "nowhere");
  EXPECT_EQ(errorIn("GOTO @S1@"), (ScriptError{"Label not found (@S1@)", kLine}));
  EXPECT_EQ(errorIn("JMP0 0 :label"), (ScriptError{"Label not found (:label)", kLine}));
}

TEST_F(Jump, TellsABadReferenceInItsLabel) {
  EXPECT_EQ(errorIn("GOTO x@S1"),
            (ScriptError{"Invalid label specified. Invalid variable specification.", kLine}));
}

}  // namespace
}  // namespace vessant::test
