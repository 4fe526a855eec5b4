// Launching the Java program, or an embedded launcher.

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ProcessRunner.h"
#include "support/ProcessScope.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kNothingToLaunch =
    "Unable to launch the internal launch script with the internal JVM file. Either the launch "
    "script or the JVM file is missing from the launcher.";
constexpr const char* kNoLauncher = "Unable to execute the embedded launcher.";

class LaunchTest : public testing::Test {
 protected:
  LaunchTest() { run.script({"// nothing"}); }

  /// Loads the launcher and launches with the embedded JVM file.
  std::int32_t launch(std::int32_t id, std::int16_t seconds = 0,
                      const std::vector<std::string>& options = {}) {
    run.run(options);
    std::int32_t result = 0;
    run.perform([&](auto& main) { result = main.launchWithEmbeddedJvmFile(id, seconds); });
    return result;
  }
  std::int32_t launchWith(const std::string& jvmFile) {
    run.run();
    std::int32_t result = 0;
    run.perform([&](auto& main) { result = main.launchWithJvmFile(SString(jvmFile), 0); });
    return result;
  }

  DriverRun run;
};

TEST_F(LaunchTest, ReturnsTheProgramsStatusAndKeepsWhatItWrote) {
  run.launchScript("echo out; echo err >&2; exit 7").jvmFile(10, "DESC: Java\n");
  EXPECT_EQ(launch(10), 7);
  EXPECT_EQ(run.state.launchFailureMessage, "err\n");
  EXPECT_EQ(run.state.launchOutput, "out\n");
}

TEST_F(LaunchTest, HandsTheArgumentsOn) {
  run.launchScript("printf '[%%s]'").jvmFile(10, "DESC: Java\n");
  EXPECT_EQ(launch(10, 0, {"one", "-cp:a", "x", "two words", "say \"hi\"", "-console"}), 0);
  EXPECT_EQ(run.out, "[one][two words][say \"hi\"][-console]");
}

TEST_F(LaunchTest, CollectsTheOutputUnlessAConsoleIsWanted) {
  run.launchScript("echo out #").jvmFile(10, "DESC: Java\n");
  launch(10);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.state.launchOutput, "out\n");
  DriverRun other;
  other.script({"// nothing"}).launchScript("echo out #").jvmFile(10, "DESC: Java\n");
  other.run({"-vs:javaconsole"});
  other.perform([](auto& main) { main.launchWithEmbeddedJvmFile(10, 0); });
  EXPECT_EQ(other.out, "out\n");
  EXPECT_EQ(other.state.launchOutput, "");
}

TEST_F(LaunchTest, UsesTheTagsOfTheEmbeddedJvmFile) {
  run.launchScript("echo @NAME@").jvmFile(10, "NAME: ten\n").jvmFile(11, "NAME: eleven\n");
  EXPECT_EQ(launch(11), 0);
  EXPECT_EQ(run.state.launchOutput, "eleven\n");
}

TEST_F(LaunchTest, UsesTheTagsOfANamedJvmFile) {
  run.launchScript("echo @NAME@");
  EXPECT_EQ(launchWith(run.tree.file("a.jvm", "NAME: a\n")), 0);
  EXPECT_EQ(run.state.launchOutput, "a\n");
}

TEST_F(LaunchTest, ShowsTheStageForAsLongAsTheProgressDisplayIsOn) {
  run.launchScript("exit 0", "DESC: Product\n").jvmFile(10, "DESC: Java\n");
  run.state.console.searchPhase = SearchPhase::Scanning;
  launch(10, 1);
  EXPECT_EQ(run.out, "\nRunning Product...\n");
  EXPECT_FALSE(run.state.console.progressShown);
  EXPECT_EQ(run.state.console.searchPhase, SearchPhase::None);
}

TEST_F(LaunchTest, ShowsNoStageForNoSeconds) {
  for (const std::int16_t seconds : {std::int16_t{0}, std::int16_t{-1}}) {
    DriverRun other;
    other.script({"// nothing"}).launchScript("exit 0", "DESC: P\n").jvmFile(10, "DESC: Java\n");
    other.run();
    other.state.console.searchPhase = SearchPhase::Scanning;
    other.perform([&](auto& main) { main.launchWithEmbeddedJvmFile(10, seconds); });
    EXPECT_EQ(other.out, "");
    EXPECT_FALSE(other.state.console.progressShown);
    EXPECT_EQ(other.state.console.searchPhase, SearchPhase::Scanning);
  }
}

TEST_F(LaunchTest, FailsUnseenWithoutALaunchScript) {
  const std::string jvm = run.tree.file("a.jvm", "NAME: a\n");
  EXPECT_EQ(launchWith(jvm), -1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), Not(HasSubstr("ERROR")));
  EXPECT_TRUE(run.state.console.progressShown);
}

TEST_F(LaunchTest, LooksForTheLaunchScriptBeforeTheJvmFile) {
  EXPECT_EQ(launchWith("/no/such/file"), -1);
}

TEST_F(LaunchTest, FailsForANamedJvmFileThatCannotBeRead) {
  run.launchScript("exit 0");
  run.run();
  EXPECT_EQ(run.failureOf([](auto& main) { main.launchWithJvmFile("/no/such/file", 0); }),
            "Unable to load input file: /no/such/file");
}

TEST_F(LaunchTest, LogsThatTheEmbeddedLaunchScriptIsMissing) {
  run.jvmFile(10, "DESC: Java\n");
  EXPECT_EQ(launch(10, 5), -1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), EndsWith(errorLine(kNothingToLaunch)));
  EXPECT_TRUE(run.state.console.progressShown);
}

TEST_F(LaunchTest, LogsThatTheEmbeddedJvmFileIsMissing) {
  for (const int id : {99, 2, -1}) {  // 2 is the launch script
    DriverRun other;
    other.script({"// nothing"}).launchScript("exit 0").jvmFile(10, "DESC: Java\n");
    other.run();
    other.perform([&](auto& main) { EXPECT_EQ(main.launchWithEmbeddedJvmFile(id, 0), -1); });
    EXPECT_THAT(other.log(), EndsWith(errorLine(kNothingToLaunch))) << id;
  }
}

TEST_F(LaunchTest, LogsThatTheEmbeddedJvmFileWasNotRead) {
  run.launchScript("exit 0").jvmFile(10, "DESC: Java\n");
  const ScopedDirectory directory(run.tree.dir("work"));
  EXPECT_EQ(launch(10, 0, {"-vs:extract"}), -1);
  EXPECT_THAT(run.log(), EndsWith(errorLine(kNothingToLaunch)));
}

TEST_F(LaunchTest, KeepsTheEarlierMessageWhenTheProgramCannotBeStarted) {
  run.launchScript("%NONE%()").jvmFile(10, "DESC: Java\n");
  run.state.launchFailureMessage = "before";
  run.run();
  EXPECT_THAT(run.failureOf([](auto& main) { main.launchWithEmbeddedJvmFile(10, 0); }),
              testing::StartsWith("Launch script error: "));
  EXPECT_EQ(run.state.launchFailureMessage, "before");
  EXPECT_FALSE(run.state.console.progressShown);
}

TEST_F(LaunchTest, GivesTheScriptItsResult) {
  DriverRun other;
  other.script({"ILAUNCH 10 0", "SET N5 = 1"}).launchScript("exit 9").jvmFile(10, "DESC: Java\n");
  EXPECT_EQ(other.run(), 9);
  EXPECT_EQ(other.n(5), 1);
}

class EmbeddedLauncherTest : public LaunchTest {
 protected:
  void execute(std::int32_t id, const std::vector<std::string>& options = {}) {
    run.run(options);
    run.perform([&](auto& main) { main.runEmbeddedLauncher(id); });
  }
  DriverRun& embed(const std::string& bytes) {
    run.file.add(kEmbeddedLauncher, 70, "inner", bytes);
    return run;
  }
};

TEST_F(EmbeddedLauncherTest, IsOnlyMissedInTheLog) {
  for (const int id : {99, 1, -1}) {  // 1 is the script
    DriverRun other;
    other.script({"// nothing"});
    other.run();
    other.perform([&](auto& main) { main.runEmbeddedLauncher(id); });
    EXPECT_EQ(other.out, "");
    EXPECT_THAT(other.log(), EndsWith(errorLine(kNoLauncher)));
    EXPECT_THAT(other.tempFiles(), IsEmpty());
  }
}

TEST_F(EmbeddedLauncherTest, ThatCannotBeStartedIsMissedInTheLog) {
  embed("#!/no/such/interpreter\n");
  execute(70);
  EXPECT_EQ(run.out, ".");  // its extraction
  EXPECT_THAT(run.log(), EndsWith(errorLine(kNoLauncher)));
  EXPECT_EQ(run.tempFiles().size(), 2U);
  run.end();
  EXPECT_THAT(run.tempFiles(), IsEmpty());
}

/// A launcher that could be started would take the place of the test.
TEST_F(EmbeddedLauncherTest, IsNotEvenExtractedByAnEmbeddedLauncher) {
  embed("#!/no/such/interpreter\n");
  const std::string outer = run.file.write(run.tree.path("outer.bin"));
  execute(70, {"-vs:orig", outer});
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), EndsWith(errorLine(kNoLauncher)));
  EXPECT_THAT(run.tempFiles(), IsEmpty());
}

TEST_F(EmbeddedLauncherTest, LetsTheScriptGoOnWhenItCannotBeStarted) {
  DriverRun other;
  other.script({"EXECUTE_LAUNCHER 70", "SET N5 = 1"});
  EXPECT_EQ(other.run(), 0);
  EXPECT_EQ(other.n(5), 1);
}

/// The real launcher becomes the embedded one, which here is a script that shows how it was called.
TEST_F(EmbeddedLauncherTest, TakesThePlaceOfTheLauncherWithItsArguments) {
  DriverRun other;
  other.file.launcherStub();
  other.script({"EXECUTE_LAUNCHER 70"});
  other.file.add(kEmbeddedLauncher, 70, "inner",
                 "#!/bin/sh\n"
                 "echo \"$0\"; pwd\n"
                 "for argument do echo \"[$argument]\"; done\n"
                 "exit 6\n");
  other.file.write(other.launcherFile);
  const std::string temp = other.tree.path("temp");
  const ProcessResult result = runProcess({.command = {other.launcherFile, "-vs:tempdir", temp,
                                                       "-vs:silent", "two words", "", "a\"b c\""},
                                           .directory = other.tree.dir("work")});
  EXPECT_EQ(result.status, 6);
  const std::vector<std::string> left = other.tempFiles();
  ASSERT_EQ(left.size(), 2U);  // its directory and itself, which it has to delete
  EXPECT_EQ(left[1], left[0] + "/inner");
  EXPECT_EQ(result.out, temp + "/" + left[1] + "\n" + other.tree.path("work") + "\n[-vs:orig]\n[" +
                            other.launcherFile + "]\n[-vs:tempdir]\n[" + temp +
                            "]\n[-vs:silent]\n[two words]\n[a]\n[b]\n[c]\n");
}

}  // namespace
}  // namespace vessant::test
