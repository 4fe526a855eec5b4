// The loop over the statements: their order, the result and the errors that end it.

#include <thread>

#include "InstructionsFixture.h"
#include "launcher/base/Exceptions.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

class Execution : public InstructionsFixture {
 protected:
  using Calls = std::vector<std::string>;
};

TEST_F(Execution, RunsTheStatementsInTheirOrder) {
  run({"INITIALIZE_UI", "FIND_JVM 1 1", "ILAUNCH 2 0"});
  EXPECT_EQ(actions.calls,
            (Calls{"beginProgress()", "findJvm(1, 1)", "launchWithEmbeddedJvmFile(2, 0)"}));
}

TEST_F(Execution, OfNoStatementsYieldsZero) {
  EXPECT_EQ(run({}), 0);
}

TEST_F(Execution, YieldsZeroWithoutALaunch) {
  EXPECT_EQ(run({"FIND_JVM 0 0", "SET N1 = 5"}), 0);
}

TEST_F(Execution, YieldsTheStatusOfTheLastLaunch) {
  actions.statuses = {3, -1, 232};
  EXPECT_EQ(run({"ILAUNCH 1 0", "LAUNCH a.jvm 0", "ILAUNCH 2 0", "FIND_JVM 0 0"}), 232);
  actions.statuses = {7, 42};
  EXPECT_EQ(run({"ILAUNCH 1 0", "LAUNCH a.jvm 0"}), 42);
}

TEST_F(Execution, StartsEveryRunWithTheResultZero) {
  actions.statuses = {3};
  EXPECT_EQ(run({"ILAUNCH 1 0"}), 3);
  EXPECT_EQ(run({"FIND_JVM 0 0"}), 0);
}

TEST_F(Execution, PassesOverLabels) {
  EXPECT_EQ(run({":first", ": more words", ":", ":GOTO nowhere"}), 0);
  EXPECT_TRUE(actions.calls.empty());
}

TEST_F(Execution, StopsAtABlankStatement) {
  EXPECT_EQ(errorIn(""), (ScriptError{"No command specified.", kLine}));
  EXPECT_EQ(errorIn(" \t\v\f\r\n"), (ScriptError{"No command specified.", kLine}));
}

TEST_F(Execution, StopsAtAnUnknownCommand) {
  const char* const tokens[] = {"BARK",  "find_jvm", "FIND_JVM2", "FIND",
                                "//now", "/",        "SET=",      "\"FIND_JVM\""};
  for (const std::string token : tokens) {
    EXPECT_EQ(errorIn(token + " 1 1"), (ScriptError{"Invalid command (" + token + "). ", kLine}));
  }
}

TEST_F(Execution, NumbersTheStatementsFromOne) {
  EXPECT_EQ(errorOf({"BARK"}).line, 1);
  EXPECT_EQ(errorOf({"// 1", "// 2", "GOTO there", "BARK", ":there", "FIND_JVM"}).line, 6);
}

TEST_F(Execution, DoesNothingBehindAnError) {
  EXPECT_EQ(errorOf({"INITIALIZE_UI", "BARK", "FIND_JVM 1 1"}).line, 2);
  EXPECT_EQ(actions.calls, Calls{"beginProgress()"});
}

TEST_F(Execution, PassesTheErrorsOfOperationsOn) {
  actions.during = [] { throw LauncherException("No JVM installer was included."); };
  EXPECT_EQ(errorIn("INSTALL_JVM 1"),
            (ScriptError{"No JVM installer was included.", ScriptError::kNoLine}));
}

constexpr const char* kCanceled = "Canceled by the user.";

TEST_F(Execution, StartsNothingMoreOnceTheRunIsCancelled) {
  actions.during = [this] { actions.canceled = true; };
  EXPECT_EQ(errorOf({"INITIALIZE_UI", "FIND_JVM 1 1"}),
            (ScriptError{kCanceled, ScriptError::kNoLine}));
  EXPECT_EQ(actions.calls, Calls{"beginProgress()"});
}

TEST_F(Execution, IsCancelledAlsoInItsLastStatement) {
  actions.during = [this] { actions.canceled = true; };
  EXPECT_EQ(errorOf({"ILAUNCH 2 0"}), (ScriptError{kCanceled, ScriptError::kNoLine}));
}

TEST_F(Execution, OfACancelledRunDoesNotBegin) {
  actions.canceled = true;
  EXPECT_EQ(errorOf({"BARK"}), (ScriptError{kCanceled, ScriptError::kNoLine}));
}

/// Without the look at the flag these never end.
TEST_F(Execution, ThatGoesRoundInACircleEndsWhenTheRunIsCancelled) {
  std::thread user([this] { actions.canceled = true; });
  EXPECT_EQ(errorOf({"// begin", ":again", "GOTO again"}).message, kCanceled);
  user.join();
}

TEST_F(Execution, OfAValueThatRefersToItselfEndsWhenTheRunIsCancelled) {
  actions.setStringVariable(1, "x@S1@");
  std::thread user([this] { actions.canceled = true; });
  EXPECT_EQ(errorOf({"INSTALL_JVM \"@S1@\""}).message, kCanceled);
  user.join();
}

TEST_F(Execution, SeesTheVariablesThatOperationsSet) {
  actions.during = [this] {
    actions.setNumericVariable(1, 1);
    actions.setStringVariable(2, "/tmp/found.jvm");
  };
  run({"FIND_JVM 0 0", "JMP0 @N1@ end", "LAUNCH @S2@ 1", ":end"});
  EXPECT_EQ(actions.calls, (Calls{"findJvm(0, 0)", "launchWithJvmFile(/tmp/found.jvm, 1)"}));
}

TEST_F(Execution, KeepsTheVariablesForTheNextRun) {
  run({"SET N1 = 5", "SET S10 = kept"});
  run({"SET N2 = @N1@", "SET S1 = @S10@"});
  EXPECT_EQ(actions.getNumericVariable(2), 5);
  EXPECT_EQ(stringVariable(1), "kept");
}

TEST_F(Execution, ReadsTheScriptFromATagFile) {
  TempTree tree;
  const std::string path = tree.file("script",
                                     "DESC: ignored\r\n"
                                     "INSTRUCTIONS:\r\n"
                                     "  FIND_JVM 1 1\r\n"
                                     "\r\n"
                                     "  SET S1 = \"a  b\"\r\n"
                                     "  \"LAUNCH \"\"x y.jvm\"\" 2\"\r\n"
                                     "/:\r\n");
  RecordingLog log;
  const TagFile tags(SString(std::string_view(path)), log);
  runInstructions(tags, actions);
  EXPECT_EQ(actions.calls, (Calls{"findJvm(1, 1)", "launchWithJvmFile(x y.jvm, 2)"}));
  EXPECT_EQ(stringVariable(1), "a  b");
}

TEST_F(Execution, OfATagFileWithoutInstructionsYieldsZero) {
  TagFile tags;
  tags.addValue("COMMAND", "BARK");
  tags.addValue("instructions", "BARK");
  EXPECT_EQ(runInstructions(tags, actions), 0);
}

}  // namespace
}  // namespace vessant::test
