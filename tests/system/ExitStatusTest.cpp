// How a run ends: with the program's exit status, and with its errors when it failed.

#include "support/BuildPaths.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::StartsWith;

struct RunEnd : SystemTest {
  /// The program's output goes to the log, and its errors are the failure message.
  void addCapturingInstaller() {
    addScript({"FIND_JVM 0 0", "LAUNCH \"@S2@\" 0"});
    addLaunchScript(kJavaCommand, "");
    addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  }
};

struct LaunchFailure : RunEnd {};

TEST_F(LaunchFailure, ShowsTheProgramsErrorsWhenItFails) {
  addCapturingInstaller();
  EXPECT_THAT(run({"--exit=3"}), Ended(3, "Demo\nprogram error\n\n"));
}

TEST_F(LaunchFailure, IsNotShownWhenTheProgramSucceeds) {
  addCapturingInstaller();
  EXPECT_THAT(run(), Ended(0, "Demo\n"));
}

TEST_F(LaunchFailure, IsNotShownInSilence) {
  addCapturingInstaller();
  EXPECT_THAT(run({"-vs:silent", "--exit=3"}), Ended(3, ""));
}

TEST_F(LaunchFailure, HasNoTextWhenTheProgramHasTheConsole) {
  addCapturingInstaller();
  const ProcessResult result = run({"-vs:javaconsole", "--exit=3"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.err, "program error\n");
  EXPECT_THAT(result.out, StartsWith("Demo\nPROGRAM\n"));
  EXPECT_THAT(result.out, EndsWith("\nARG=--exit=3\n"));
}

TEST_F(LaunchFailure, IsShownWholeHoweverLongItIs) {
  addScript({"ILAUNCH 3 0"});
  addLaunchScript(std::string(kTestHelper) + " out 300000 err 200000 exit 3", "");
  addJvmFile("17");
  const ProcessResult result = runLogged();
  EXPECT_EQ(result.status, 3);
  const ProcessResult alone = runCommand({kTestHelper, "out", "300000", "err", "200000"});
  EXPECT_TRUE(result.out == "Demo\n" + alone.err + "\n") << result.out.size() << " bytes";
  EXPECT_TRUE(log().ends_with("\nStdOut:\n" + alone.out + "\nErrOut:\n" + alone.err + "\n"));
}

struct WizardStatus : RunEnd, ::testing::WithParamInterface<int> {};

TEST_P(WizardStatus, ThatSaysTheUserLeftIsNoFailureInAWizard) {
  addCapturingInstaller();
  file.modeByte(GetParam());
  EXPECT_THAT(run({"--exit=232"}), Ended(232, "Demo\n"));
  EXPECT_THAT(run({"--exit=231"}), Ended(231, "Demo\nprogram error\n\n"));
}

INSTANTIATE_TEST_SUITE_P(ModeBytes, WizardStatus, ::testing::Values(0, 2));

struct OtherStatus : RunEnd, ::testing::WithParamInterface<int> {};

TEST_P(OtherStatus, ThatSaysTheUserLeftIsAFailureElsewhere) {
  addCapturingInstaller();
  file.modeByte(GetParam());
  EXPECT_THAT(run({"--exit=232"}), Ended(232, "Demo\nprogram error\n\n"));
}

INSTANTIATE_TEST_SUITE_P(ModeBytes, OtherStatus, ::testing::Values(1, 3, 255));

struct WizardEnvironment : RunEnd {
  void addInstallerWithSettings() {
    addScript({"FIND_JVM 0 0", "LAUNCH \"@S2@\" 0"});
    addLaunchScript("echo \"<$FOO><${BAR-unset}><$BLANK>\"");
    addJvmFile("17.0.1",
               tag("PATH_HINT", javaHome("java17", "17.0.1")) +
                   tagBlock("SET_ENV_FOR_WIZARD", {"  FOO = b=ar  ", "BAR=", "   ", "BLANK"}));
    environment["BLANK"] = "something";
  }
};

TEST_F(WizardEnvironment, IsSetForTheProgramOfAWizard) {
  addInstallerWithSettings();
  file.modeByte(2);
  EXPECT_THAT(run(), Ended(0, "Demo\n<b=ar><><>\n"));
}

TEST_F(WizardEnvironment, IsLeftAloneElsewhere) {
  addInstallerWithSettings();
  file.modeByte(1);
  EXPECT_THAT(run(), Ended(0, "Demo\n<><unset><something>\n"));
}

struct ExitStatus : RunEnd, ::testing::WithParamInterface<int> {};

TEST_P(ExitStatus, IsThatOfTheProgram) {
  addInstaller("exit");
  const std::string status = std::to_string(GetParam());
  pack();
  EXPECT_THAT(run({status}), Ended(GetParam(), "Demo\n"));
}

INSTANTIATE_TEST_SUITE_P(Statuses, ExitStatus, ::testing::Values(0, 1, 2, 127, 232, 254, 255));

TEST_F(ExitStatus, IsZeroWhenASignalEndedTheProgram) {
  addInstaller("kill -KILL $$");
  EXPECT_THAT(run(), Ended(0, "Demo\n"));
}

TEST_F(ExitStatus, IsZeroWhenTheScriptLaunchesNothing) {
  addScript({"SET N1 = 5"});
  EXPECT_THAT(run(), Ended(0, "\n"));
}

TEST_F(ExitStatus, IsThatOfTheLastLaunch) {
  addScript({"FIND_JVM 0 0", "LAUNCH @S2@ 0", "ILAUNCH 3 0", "SET N1 = 7"});
  addLaunchScript("echo once more >> count; exit $(wc -l < count)");
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  environment["PATH"] = "/usr/bin:/bin";
  EXPECT_THAT(run(), Ended(2, "Demo\n"));
}

struct NothingToRun : RunEnd {};

TEST_F(NothingToRun, ALauncherThatCarriesNothingFails) {
  file.identification(0xCA82CA83U);
  addScript({"SET N1 = 1"});
  EXPECT_THAT(runLogged(), EndedWithoutInstaller(launcher, "\n"));
}

TEST_F(NothingToRun, ALauncherWithoutAScriptFails) {
  addLaunchScript(kJavaCommand);
  EXPECT_THAT(run(), EndedWithoutInstaller(launcher, "Demo\n\n"));
  EXPECT_THAT(run({"-vs:silent"}), Ended(255, ""));
}

TEST_F(NothingToRun, ALaunchWithoutALaunchScriptFails) {
  const std::string jvmFile = tree.file("java.jvm", jvmFileText("17"));
  addScript({"LAUNCH " + jvmFile + " 0"});
  EXPECT_THAT(run(), Ended(255, "\n"));
}

TEST_F(NothingToRun, AnEmbeddedLaunchWithoutItsFilesFailsAndIsLogged) {
  addScript({"ILAUNCH 2 0"});  // the launch script is no JVM file
  addLaunchScript(kJavaCommand);
  EXPECT_THAT(runLogged(), Ended(255, "Demo\n\n"));
  EXPECT_THAT(logLines(), Contains("ERROR: Unable to launch the internal launch script with the "
                                   "internal JVM file. Either the launch script or the JVM file "
                                   "is missing from the launcher."));
}

}  // namespace
}  // namespace vessant::test
