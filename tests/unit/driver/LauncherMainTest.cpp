// The run, its variables and its clean-up.

#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "launcher/driver/LauncherMain.h"
#include "support/AllocationWatch.h"
#include "support/StandardStreams.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::int32_t kSmallest = -2147483647 - 1;

TEST(Variables, AreEmptyAndZeroAtTheStart) {
  LauncherState state;
  const LauncherMain launcher(state);
  for (int number = 1; number <= 10; ++number) EXPECT_EQ(launcher.getStringVariable(number), "");
  for (int number = 1; number <= 5; ++number) EXPECT_EQ(launcher.getNumericVariable(number), 0);
}

TEST(Variables, KeepWhatTheyAreSetTo) {
  LauncherState state;
  LauncherMain launcher(state);
  for (int number = 1; number <= 10; ++number) {
    launcher.setStringVariable(number, SString(std::to_string(number)));
  }
  for (int number = 1; number <= 5; ++number) {
    launcher.setNumericVariable(number, kSmallest + number);
  }
  EXPECT_EQ(launcher.getStringVariable(1), "1");
  EXPECT_EQ(launcher.getStringVariable(10), "10");
  EXPECT_EQ(launcher.getNumericVariable(1), kSmallest + 1);
  EXPECT_EQ(launcher.getNumericVariable(5), kSmallest + 5);
}

TEST(Variables, RefuseOtherNumbers) {
  DriverRun run;
  run.run({"-vs:version"});
  for (const int number : {0, 11, -1, kSmallest}) {
    const std::string text = "Invalid string variable number: " + std::to_string(number);
    EXPECT_EQ(run.failureOf([&](auto& main) { main.setStringVariable(number, "x"); }), text);
    EXPECT_EQ(run.failureOf([&](auto& main) { return void(main.getStringVariable(number)); }),
              text);
  }
  for (const int number : {0, 6, 10, -1, kSmallest}) {
    const std::string text = "Invalid numeric variable number: " + std::to_string(number);
    EXPECT_EQ(run.failureOf([&](auto& main) { main.setNumericVariable(number, 1); }), text);
    EXPECT_EQ(run.failureOf([&](auto& main) { return void(main.getNumericVariable(number)); }),
              text);
  }
}

TEST(Run, IsAFailureWithoutAScript) {
  DriverRun run;
  run.jvmFile(10, "DESC: Java\n");
  EXPECT_EQ(run.run(), -1);
  EXPECT_EQ(run.out, "\n");
  EXPECT_EQ(run.log().find("ERROR"), std::string::npos);
  EXPECT_EQ(run.state.console.progressCount, 100);
}

/// What the run says on standard error.
std::string adviceOf(DriverRun& run, const std::vector<std::string>& arguments = {}) {
  const StderrCapture capture;
  EXPECT_EQ(run.run(arguments), -1);
  return capture.text();
}

std::string noInstaller(const std::string& file) {
  return file +
         ": This file carries no installer. It is incomplete or was changed. Please download or "
         "copy it again.\n";
}

TEST(Run, AdvisesToFetchALauncherWithoutFilesAgain) {
  DriverRun run;
  run.script({"SET N5 = 1"}).file.identification(0);
  EXPECT_EQ(adviceOf(run), noInstaller(run.launcherFile));
  EXPECT_EQ(run.out, "\n");
  EXPECT_EQ(run.n(5), 0);
}

TEST(Run, AdvisesToFetchALauncherWithoutAScriptAgain) {
  DriverRun run;
  run.jvmFile(10, "DESC: Java\n");
  EXPECT_EQ(adviceOf(run), noInstaller(run.launcherFile));
}

TEST(Run, NamesTheFileWhoseFilesAreMissing) {
  DriverRun run;
  const std::string outer = run.tree.file("outer.bin", "nothing behind it");
  EXPECT_EQ(adviceOf(run, {"-vs:orig", outer}), noInstaller(outer));
}

TEST(Run, GivesNoAdviceInSilence) {
  DriverRun run;
  run.file.identification(0);
  EXPECT_EQ(adviceOf(run, {"-vs:silent"}), "");
}

TEST(Run, GivesNoAdviceWhereNoScriptIsToRun) {
  DriverRun run;
  run.file.identification(0);
  const StderrCapture capture;
  EXPECT_EQ(run.run({"-vs:version"}), 0);
  EXPECT_EQ(capture.text(), "");
}

TEST(Run, TellsThatTheUserCanceled) {
  DriverRun run;
  run.script({"SET N5 = 1"});
  run.state.cancelFlag.set();
  EXPECT_EQ(run.run(), -1);
  EXPECT_EQ(run.out, "Canceled by the user.\n");
  EXPECT_EQ(run.n(5), 0);
  EXPECT_THAT(run.log(), testing::EndsWith(errorLine("Canceled by the user.")));
}

TEST(Run, TellsThatTheUserCanceledAlsoBehindAnAction) {
  DriverRun run;
  run.state.cancelFlag.set();
  EXPECT_EQ(run.run({"-vs:version"}), -1);
  EXPECT_EQ(run.out, "2.52\nCanceled by the user.\n");
}

TEST(Run, ShowsAndLogsAFailureToLoadTheIndex) {
  DriverRun run;
  run.file.add(9, 1, "x", "");
  EXPECT_EQ(run.run(), -1);
  const std::string text =
      "Unable to load the launcher file index. Invalid file type in file index.";
  EXPECT_EQ(run.out, text + "\n");
  EXPECT_EQ(run.log(), "------------------\n" + errorLine(text));
}

TEST(Run, ShowsAndLogsAFailureOfTheScriptWithItsLine) {
  DriverRun run;
  run.script({"// fine", "NONSENSE"});
  EXPECT_EQ(run.run(), -1);
  const std::string text = "Error in instructions. Invalid command (NONSENSE).  Line number (2)";
  EXPECT_EQ(run.out, text + "\n");
  EXPECT_THAT(run.log(), HasSubstr(errorLine(text)));
}

TEST(Run, ShowsOtherFailuresOfTheScriptAsTheyAre) {
  DriverRun run;
  run.script({"SET N1 = x"});
  EXPECT_EQ(run.run(), -1);
  EXPECT_EQ(run.out, "Invalid value specified for SET command Invalid numeric expression in x\n");
}

TEST(Run, LogsFailuresAlsoInSilence) {
  DriverRun run;
  run.script({"NONSENSE"});
  EXPECT_EQ(run.run({"-vs:silent"}), -1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), HasSubstr("ERROR: Error in instructions. Invalid command (NONSENSE). "));
}

TEST(Run, LeavesTheProgressCountWhereAFailureStoppedIt) {
  DriverRun run;
  run.script({"NONSENSE"});
  run.run();
  EXPECT_EQ(run.state.console.progressCount, 0);
}

TEST(Run, TakesItsTitleFromTheFirstLaunchScript) {
  DriverRun run;
  run.script({"INITIALIZE_UI"}).launchScript("x", "DESC: First\\u0021\n");
  run.file.add(kLaunchScript, 3, "second.tag", "DESC: Second\n");
  run.run();
  EXPECT_EQ(run.state.console.uiTitle, "First!");
  EXPECT_EQ(run.out, "First!\n\nInitializing First!...\n\n");
}

TEST(Run, PrintsAnEmptyLineForALaunchScriptWithoutADescription) {
  DriverRun run;
  run.script({"// nothing"}).launchScript("x");
  run.run();
  EXPECT_EQ(run.out, "\n\n");
}

TEST(Run, KeepsTheFirstOfSeveralScripts) {
  DriverRun run;
  run.script({"SET N5 = 1"}).script({"SET N5 = 2"});
  run.run();
  EXPECT_EQ(run.n(5), 1);
}

TEST(Run, ReportsATagFileErrorOfAnEmbeddedFile) {
  DriverRun run;
  run.file.add(kJvmFile, 10, "bad.jvm", "no colon\n");
  EXPECT_EQ(run.run(), -1);
  EXPECT_EQ(run.out,
            "Unable to load the launcher file index. Syntax error in bad.jvm at line 1 ==> Missing "
            "colon at the end of the tag name.\n");
}

TEST(BeginProgress, ShowsTheFirstStageAndTurnsTheProgressDisplayOn) {
  DriverRun run;
  run.script({"// nothing"}).launchScript("x", "DESC: Product\n");
  run.run();
  run.state.console.searchPhase = SearchPhase::Scanning;
  run.perform([](LauncherMain& launcher) { launcher.beginProgress(); });
  EXPECT_EQ(run.out, "\nInitializing Product...\n");
  EXPECT_EQ(run.state.console.searchPhase, SearchPhase::None);
}

TEST(BeginProgress, ShowsNothingYetWhenTheProgressDisplayWasOff) {
  DriverRun run;
  run.run({"-vs:version"});
  run.state.console.progressShown = false;
  run.perform([](LauncherMain& launcher) { launcher.beginProgress(); });
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.state.console.progressShown);
}

TEST(BeginProgress, LeavesTheProgressDisplayOffInSilence) {
  DriverRun run;
  run.run({"-vs:silent", "-vs:version"});
  run.perform([](LauncherMain& launcher) { launcher.beginProgress(); });
  EXPECT_EQ(run.out, "");
  EXPECT_FALSE(run.state.console.progressShown);
}

TEST(CleanUp, DeletesWhatTheRunMade) {
  DriverRun run;
  run.verificationClass().script({"FIND_JVM 0 0"});
  run.run();
  EXPECT_EQ(run.tempFiles().size(), 2U);
  run.end();
  EXPECT_THAT(run.tempFiles(), IsEmpty());
}

/// A copy of the launcher in a directory of its own, as an outer launcher makes it.
struct EmbeddedCopy {
  explicit EmbeddedCopy(const std::string& statement = "// nothing") {
    run.verificationClass().script({statement});
    outer = run.file.write(run.tree.path("outer.bin"));
    run.launcherFile = run.tree.file("inner/launcher");
  }

  DriverRun run;
  std::string outer;
};

TEST(CleanUp, OfAnEmbeddedLauncherDeletesItsOwnFileAndDirectory) {
  EmbeddedCopy copy;
  EXPECT_EQ(copy.run.run({"-vs:orig", copy.outer}), 0);
  EXPECT_TRUE(std::filesystem::exists(copy.run.launcherFile));
  copy.run.end();
  EXPECT_FALSE(std::filesystem::exists(copy.run.tree.path("inner")));
  EXPECT_TRUE(std::filesystem::exists(copy.outer));
}

TEST(CleanUp, OfAnEmbeddedLauncherKeepsADirectoryThatHoldsMore) {
  EmbeddedCopy copy;
  const std::string more = copy.run.tree.file("inner/more");
  copy.run.run({"-vs:orig", copy.outer});
  copy.run.end();
  EXPECT_FALSE(std::filesystem::exists(copy.run.launcherFile));
  EXPECT_TRUE(std::filesystem::exists(more));
}

TEST(CleanUp, ThatStopsAtAFailingPathLeavesTheLauncherWithWhatIsLeft) {
  EmbeddedCopy copy("FIND_JVM 0 0");
  copy.run.run({"-vs:orig", copy.outer});
  const std::vector<std::string> made = copy.run.tempFiles();
  ASSERT_THAT(made, Not(IsEmpty()));
  {
    AllocationWatch watch;
    watch.failNext(std::numeric_limits<int>::max());
    copy.run.end();
  }
  EXPECT_EQ(copy.run.tempFiles(), made);
  EXPECT_TRUE(std::filesystem::exists(copy.run.launcherFile));
}

TEST(CleanUp, OfAnEmbeddedLauncherPassesOverALackOfMemory) {
  EmbeddedCopy copy;
  copy.run.run({"-vs:orig", copy.outer});
  {
    AllocationWatch watch;
    watch.failNext(std::numeric_limits<int>::max());
    copy.run.end();
  }
  EXPECT_FALSE(std::filesystem::exists(copy.run.launcherFile));
}

TEST(CleanUp, KeepsTheFileOfALauncherThatIsNotEmbedded) {
  DriverRun run;
  run.script({"// nothing"});
  run.state.originalLauncherMode = true;  // the copy for launching does not count here
  run.run({"-vs:orig"});
  run.end();
  EXPECT_TRUE(std::filesystem::exists(run.launcherFile));
}

}  // namespace
}  // namespace vessant::test
