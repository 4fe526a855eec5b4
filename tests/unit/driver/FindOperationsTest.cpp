// Finding and verifying JVMs: the operations behind FIND_JVM and VERIFY.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/tagfile/TagFile.h"
#include "support/FakeJavaHome.h"
#include "support/ProcessScope.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kNoJvm =
    "A suitable JVM could not be found. Please run the program again using the option -vs:javahome "
    "<JAVA HOME DIR>";
/// The dot of the verification class's extraction.
constexpr const char* kExtracted = ".";
constexpr const char* kStage = "\nSearching for Java(tm) Virtual Machine...\n";

/// A launcher with a verification class whose objects are loaded; `home` is a Java 17.
class FindTest : public testing::Test {
 protected:
  FindTest() { run.script({"// nothing"}).verificationClass(); }

  /// Loads the launcher and calls findJvm on it.
  void find(bool showProgress, bool showFailure, const std::vector<std::string>& options = {}) {
    run.run(options);
    run.perform([&](LauncherMain& launcher) { launcher.findJvm({showProgress, showFailure}); });
  }

  DriverRun run;
  std::string home = run.javaHome("jdk", "17");
};

TEST_F(FindTest, SetsTheVariablesForAMatch) {
  run.jvmFile(10, jvmFileText("17", "PATH_HINT: " + home + "\n"));
  find(false, true);
  EXPECT_EQ(run.n(1), 1);
  EXPECT_EQ(run.s(1), home);
  EXPECT_THAT(run.s(2), StartsWith(run.tree.path("temp/vsj")));
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), HasSubstr("\nFinding a JVM\n"));
  EXPECT_THAT(run.log(), EndsWith("\nMatching JVM home is " + home + "\nMatching JVM file is " +
                                  run.s(2) + "\n"));
}

TEST_F(FindTest, WritesTheJvmFileAsATemporaryFile) {
  run.jvmFile(10, jvmFileText("17", "PATH_HINT: " + home + "\n"));
  find(false, false);
  RecordingLog log;
  const TagFile tags{SString(run.s(2)), log};
  EXPECT_EQ(str(tags.getValue("JVM_HOME")), home);
  EXPECT_EQ(str(tags.getValue("JVM_FILE")), run.s(2));
  EXPECT_EQ(tags.getValue("JVM_TEMP"), "0");
  EXPECT_EQ(tags.getValue("JVM_EXE"), "bin/java");
  run.end();
  EXPECT_THAT(run.tempFiles(), IsEmpty());
}

TEST_F(FindTest, TakesTheHomeThatTheUserNamesFirst) {
  const std::string other = run.javaHome("other", "17");
  run.jvmFile(10, jvmFileText("17", "PATH_HINT: " + home + "\n"));
  find(false, false, {"-vs:javahome", other});
  EXPECT_EQ(run.s(1), other);
}

TEST_F(FindTest, ClearsTheVariablesOfTheSearchBefore) {
  run.jvmFile(10, jvmFileText("21"));
  for (int number = 1; number <= 5; ++number) {
    run.state.variables.setNumericVariable(number, number);
  }
  for (int number = 1; number <= 10; ++number) {
    run.state.variables.setStringVariable(number, "before");
  }
  find(false, false);
  EXPECT_EQ(run.n(1), 0);
  EXPECT_EQ(run.s(1), "");
  EXPECT_EQ(run.s(2), "");
  EXPECT_EQ(run.n(2), 2);
  EXPECT_EQ(run.s(3), "before");
}

TEST_F(FindTest, LogsThatThereIsNoJvm) {
  find(false, false);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), EndsWith(std::string("\n") + kNoJvm + "\n"));
  EXPECT_THAT(run.log(), Not(HasSubstr("ERROR")));
}

TEST_F(FindTest, ShowsThatThereIsNoJvmWhenAsked) {
  find(false, true);
  EXPECT_EQ(run.out, std::string(kNoJvm) + "\n");
}

TEST_F(FindTest, HidesThatThereIsNoJvmInSilence) {
  find(true, true, {"-vs:silent"});
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.n(1), 0);
}

TEST_F(FindTest, ShowsItsStageAndTheProgressWhenAsked) {
  run.jvmFile(10, jvmFileText("17", "PATH_HINT: /no/such/home\n"));
  find(true, false);
  EXPECT_EQ(run.out,
            std::string(kStage) + kExtracted + "\nSearching for Java 17\n\nVerifying Java 17\n..");
  EXPECT_TRUE(run.state.console.progressShown);
}

TEST_F(FindTest, ShowsItsStageOnlyWhenTheProgressDisplayWasOnBefore) {
  run.run();
  run.state.console.progressShown = false;
  run.perform([](LauncherMain& launcher) { launcher.findJvm({true, false}); });
  EXPECT_EQ(run.out, kExtracted);
  EXPECT_TRUE(run.state.console.progressShown);
}

TEST_F(FindTest, TurnsTheProgressDisplayOffOtherwise) {
  run.jvmFile(10, jvmFileText("17", "PATH_HINT: /no/such/home\n"));
  find(false, false);
  EXPECT_EQ(run.out, "");
  EXPECT_FALSE(run.state.console.progressShown);
}

TEST_F(FindTest, CanBeRepeated) {
  const std::string second = run.javaHome("second", "21");
  run.jvmFile(10, jvmFileText("17", "PATH_HINT: " + home + "\n"));
  run.jvmFile(11, jvmFileText("21", "PATH_HINT: " + second + "\n"));
  find(false, false);
  EXPECT_EQ(run.s(1), home);
  const std::string first = run.s(2);
  run.state.javaHome = SString(second);
  run.perform([](LauncherMain& launcher) { launcher.findJvm({false, false}); });
  EXPECT_EQ(run.s(1), second);
  EXPECT_NE(run.s(2), first);
}

TEST_F(FindTest, FailsWhenTheVerificationClassCannotBeExtracted) {
  run.state.tempDirectory = "/no/such/root";
  run.run();
  EXPECT_THAT(run.failureOf([](auto& launcher) {
    launcher.findJvm({false, false});
  }),
              StartsWith("Cannot use /no/such/root as the temp directory"));
}

class VerifyTest : public FindTest {
 protected:
  /// Verifies the JVM file with id 10.
  void verify(const std::string& jvmFile, const std::vector<std::string>& options = {},
              bool showProgress = false, bool showFailure = true) {
    run.jvmFile(10, jvmFile);
    run.run(options);
    run.perform([&](LauncherMain& launcher) {
      launcher.verifyEmbeddedJvmFile({showProgress, showFailure}, 10);
    });
  }
};

TEST_F(VerifyTest, SetsTheVariablesForAHomeThatVerifies) {
  verify(jvmFileText("17"), {"-vs:javahome", home});
  EXPECT_EQ(run.n(1), 1);
  EXPECT_EQ(run.s(1), home);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), EndsWith("\nAfter VERIFY, the jvm home is " + home + "\n"));
}

TEST_F(VerifyTest, TakesTheHomeOfTheJvmFileWhenTheUserNamesNone) {
  verify(jvmFileText("17", "JVM_HOME: " + home + "\n"));
  EXPECT_EQ(run.n(1), 1);
  EXPECT_EQ(run.s(1), home);
}

TEST_F(VerifyTest, TakesTheHomeThatTheUserNamesFirst) {
  verify(jvmFileText("17", "JVM_HOME: " + home + "\n"), {"-vs:javahome", "/no/such/home"});
  EXPECT_EQ(run.n(1), 0);
}

TEST_F(VerifyTest, ShowsAndLogsThatAHomeIsInvalid) {
  run.state.variables.setNumericVariable(1, 1);
  run.state.variables.setStringVariable(1, "before");
  verify(jvmFileText("21"), {"-vs:javahome", home});
  EXPECT_EQ(run.n(1), 0);
  EXPECT_EQ(run.s(1), "before");
  EXPECT_EQ(run.out, "The JVM is not valid.\n");
  EXPECT_THAT(run.log(), EndsWith("\nIn VERIFY, the jvm is invalid.\n"));
}

TEST_F(VerifyTest, OnlyLogsThatAHomeIsInvalidWhenNotAsked) {
  verify(jvmFileText("21"), {"-vs:javahome", home}, false, false);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), EndsWith("\nIn VERIFY, the jvm is invalid.\n"));
}

TEST_F(VerifyTest, IsInvalidWithoutAnyHome) {
  verify(jvmFileText("17"));
  EXPECT_EQ(run.n(1), 0);
  EXPECT_EQ(run.out, "The JVM is not valid.\n");
}

TEST_F(VerifyTest, ShowsItsStageAndPhasesWhenAsked) {
  verify(jvmFileText("17"), {"-vs:javahome", "/no/such/home"}, true, true);
  EXPECT_EQ(run.out, std::string(kStage) + "\nVerifying Java 17\n" + kExtracted +
                         "\nVerifying Java 17\n..The JVM is not valid.\n");
}

TEST_F(VerifyTest, TurnsTheProgressDisplayOffOtherwise) {
  verify(jvmFileText("17"), {"-vs:javahome", home});
  EXPECT_FALSE(run.state.console.progressShown);
}

TEST_F(VerifyTest, RefusesAnUnknownId) {
  run.run();
  for (const int id : {99, -1, 0}) {
    EXPECT_EQ(
        run.failureOf([&](auto& main) {
          main.verifyEmbeddedJvmFile({false, true}, id);
        }),
        "Cannot verify jvm file at index " + std::to_string(id) + " because it does not exist.");
  }
  EXPECT_EQ(run.out, "");
}

TEST_F(VerifyTest, RefusesAFileOfAnotherType) {
  run.run();
  EXPECT_EQ(run.failureOf([](auto& main) {
    main.verifyEmbeddedJvmFile({false, true}, 5);
  }),
            "To verify a JVM, use an index of a jvm file. The index passed in was 5 which "
            "corresponds to the file named verify.jar");
}

TEST_F(VerifyTest, RefusesAFileThatWasNotRead) {
  run.jvmFile(10, jvmFileText("17"));
  const ScopedDirectory directory(run.tree.dir("work"));
  run.run({"-vs:extract"});  // reads the index alone
  EXPECT_EQ(run.failureOf([](auto& main) {
    main.verifyEmbeddedJvmFile({false, true}, 10);
  }),
            "The jvm file with file id 10 could not be read.");
}

TEST_F(VerifyTest, EndsAScriptThatNamesNoJvmFile) {
  DriverRun other;
  other.script({"VERIFY 0 1 7", "SET N5 = 1"});
  EXPECT_EQ(other.run(), -1);
  EXPECT_EQ(other.n(5), 0);
  EXPECT_THAT(other.log(),
              EndsWith(errorLine("Cannot verify jvm file at index 7 because it does not exist.")));
}

}  // namespace
}  // namespace vessant::test
