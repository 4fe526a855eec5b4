// Installing the JVM that the launcher carries.

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ProcessScope.h"
#include "support/StandardStreams.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kStage = "\nPreparing Java(tm) Virtual Machine...\n";
constexpr const char* kQuestion =
    "Supply the destination directory for the Java Virtual Machine:\n";

class InstallTest : public testing::Test {
 protected:
  InstallTest() { run.script({"// nothing"}); }

  /// Runs the commands as the installer.
  void install(std::int32_t mode, const std::string& commands,
               const std::vector<std::string>& options = {}) {
    run.jvmInstaller(commands);
    installWhatIsThere(mode, options);
  }
  void installWhatIsThere(std::int32_t mode, const std::vector<std::string>& options = {}) {
    run.run(options);
    run.perform([&](LauncherMain& launcher) { launcher.installEmbeddedJvm(mode); });
  }
  /// The directory of S1.
  [[nodiscard]] std::string destination() const {
    return std::filesystem::path(run.s(1)).parent_path().string();
  }

  DriverRun run;
};

TEST_F(InstallTest, RunsTheInstallerInANewTemporaryDirectory) {
  install(0, "pwd > where; echo \"$0\" > name; echo 'DESC: New' > jvm\n");
  EXPECT_EQ(run.n(1), 1);
  EXPECT_THAT(run.s(1), StartsWith(run.tree.path("temp/vsj")));
  EXPECT_THAT(run.s(1), EndsWith("/jvm"));
  EXPECT_EQ(readFile(destination() + "/where"), destination() + "\n");
  EXPECT_EQ(readFile(destination() + "/name"), destination() + "/installer\n");
  EXPECT_FALSE(std::filesystem::exists(destination() + "/installer"));
  EXPECT_EQ(readFile(run.s(1)), "DESC:  New\nJVM_HOME:  " + destination() +
                                    "\nJVM_FILE:  " + run.s(1) + "\nJVM_TEMP:  1\n");
  run.end();
  EXPECT_THAT(run.tempFiles(), IsEmpty());
}

TEST_F(InstallTest, ResolvesARelativeHomeAgainstTheDestination) {
  install(0, "echo 'JVM_HOME: jre' > jvm\n");
  EXPECT_THAT(readFile(run.s(1)), HasSubstr("JVM_HOME:  " + destination() + "/jre\n"));
}

TEST_F(InstallTest, KeepsAnAbsoluteHome) {
  install(1, "echo 'JVM_HOME: /opt/jre' > jvm\n");
  EXPECT_THAT(readFile(run.s(1)), HasSubstr("JVM_HOME:  /opt/jre\n"));
}

TEST_F(InstallTest, TakesTheFirstInstaller) {
  run.jvmInstaller("echo 'DESC: first' > jvm\n");
  install(0, "echo 'DESC: second' > jvm\n");
  EXPECT_THAT(readFile(run.s(1)), HasSubstr("DESC:  first\n"));
}

TEST_F(InstallTest, IsQuietInModeZero) {
  install(0, "echo noise; echo noise >&2; echo > jvm\n");
  EXPECT_EQ(run.out, "");
  EXPECT_FALSE(run.state.console.progressShown);
}

TEST_F(InstallTest, ShowsItsStageAndItsProgressInModeOne) {
  run.script({"// nothing"}).jvmInstaller("echo > jvm\n");
  run.run();
  run.state.console.progressShown = false;
  run.perform([](LauncherMain& launcher) { launcher.installEmbeddedJvm(1); });
  EXPECT_EQ(run.out, std::string(kStage) + ".");  // the dot is the installer's extraction
  EXPECT_EQ(run.n(1), 1);
}

TEST_F(InstallTest, KeepsTheInstallersOutputToItself) {
  install(1, "echo noise; echo noise >&2; echo > jvm\n");
  EXPECT_THAT(run.out, Not(HasSubstr("noise")));
  EXPECT_THAT(run.log(), Not(HasSubstr("noise")));
}

TEST_F(InstallTest, ShowsNothingInSilence) {
  install(1, "echo > jvm\n", {"-vs:silent"});
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.n(1), 1);
}

TEST_F(InstallTest, AsksForTheDestinationInModeTwo) {
  const std::string target = run.tree.dir("target");
  const ScopedInput answer(target + "\n");
  install(2, "echo > jvm\n");
  EXPECT_EQ(run.out, std::string(kStage) + kQuestion + ".");
  EXPECT_EQ(run.s(1), target + "/jvm");
  EXPECT_THAT(readFile(run.s(1)), HasSubstr("JVM_TEMP:  0\n"));
  run.end();
  EXPECT_THAT(run.tree.list("target"), testing::ElementsAre("jvm"));
}

TEST_F(InstallTest, CountsARelativeAnswerFromTheCurrentDirectory) {
  run.tree.dir("work/target");
  const ScopedDirectory directory(run.tree.path("work"));
  const ScopedInput answer("target\n");
  install(2, "echo > jvm\n");
  EXPECT_EQ(run.s(1), run.tree.path("work/target/jvm"));
}

TEST_F(InstallTest, InstallsNothingForAnEmptyAnswer) {
  const ScopedInput answer("");
  install(2, "echo > jvm\n");
  EXPECT_EQ(run.n(1), 0);
  EXPECT_EQ(run.s(1), "");
  EXPECT_EQ(run.out, std::string(kStage) + kQuestion);
}

TEST_F(InstallTest, InstallsNothingInModeTwoInSilence) {
  const std::string target = run.tree.dir("target");
  const ScopedInput answer(target + "\n");
  install(2, "echo > jvm\n", {"-vs:silent"});
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.n(1), 0);
  EXPECT_THAT(run.tree.list("target"), IsEmpty());
}

TEST_F(InstallTest, InstallsNothingInAnyOtherMode) {
  for (const int mode : {-1, 3}) {
    DriverRun other;
    other.script({"// nothing"}).jvmInstaller("echo > jvm\n");
    other.run();
    other.perform([&](LauncherMain& launcher) { launcher.installEmbeddedJvm(mode); });
    EXPECT_EQ(other.n(1), 0);
    EXPECT_EQ(other.s(1), "");
    EXPECT_EQ(other.out, kStage);
    EXPECT_THAT(other.tempFiles(), IsEmpty());
  }
}

TEST_F(InstallTest, DoesNotMakeAMissingDestination) {
  const ScopedInput answer(run.tree.path("missing") + "\n");
  run.jvmInstaller("echo > jvm\n");
  run.run();
  EXPECT_EQ(run.failureOf([](auto& launcher) { launcher.installEmbeddedJvm(2); }),
            "No such file or directory");
  EXPECT_FALSE(std::filesystem::exists(run.tree.path("missing")));
}

TEST_F(InstallTest, OnlyLogsThatTheInstallerMadeNoJvmFile) {
  run.state.variables.setNumericVariable(1, 1);
  run.state.variables.setStringVariable(1, "before");
  install(0, "exit 0\n");
  EXPECT_EQ(run.n(1), 0);
  EXPECT_EQ(run.s(1), "");
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), EndsWith(errorLine("Invalid bundled JVM. Missing 'jvm' file.")));
}

TEST_F(InstallTest, LogsWhatAnInstallerSaidThatDidNotDoItsWork) {
  const std::string said = "\nStdOut:\nout\n\nErrOut:\ndisk full\n\n";
  install(0, "echo out; echo disk full >&2\n");
  EXPECT_THAT(run.log(), HasSubstr("\nThe JVM installer ended with status 0" + said));
  DriverRun other;
  other.script({"INSTALL_JVM 0"})
      .jvmInstaller("echo out; echo disk full >&2; echo > jvm; exit 9\n");
  EXPECT_EQ(other.run(), 0);
  EXPECT_THAT(other.log(), HasSubstr("\nThe JVM installer ended with status 9" + said));
}

TEST_F(InstallTest, PassesOverTheInstallersExitStatus) {
  install(0, "echo > jvm; exit 9\n");
  EXPECT_EQ(run.n(1), 1);
}

TEST_F(InstallTest, FailsWithoutAnInstaller) {
  run.state.variables.setNumericVariable(1, 1);
  run.state.variables.setStringVariable(1, "before");
  run.run();
  EXPECT_EQ(run.failureOf([](auto& launcher) { launcher.installEmbeddedJvm(1); }),
            "No JVM installer was included in the launcher.");
  EXPECT_EQ(run.n(1), 0);
  EXPECT_EQ(run.s(1), "");
  EXPECT_EQ(run.out, kStage);
}

TEST_F(InstallTest, EndsAScriptWithoutAnInstaller) {
  DriverRun other;
  other.script({"INSTALL_JVM 0", "SET N5 = 1"});
  EXPECT_EQ(other.run(), -1);
  EXPECT_EQ(other.n(5), 0);
  const std::string text = "No JVM installer was included in the launcher.";
  EXPECT_EQ(other.out, text + "\n");
  EXPECT_THAT(other.log(), EndsWith(errorLine(text)));
}

TEST_F(InstallTest, FailsForAJvmFileWithASyntaxError) {
  run.jvmInstaller("echo 'no colon' > jvm\n");
  run.run();
  EXPECT_THAT(run.failureOf([](auto& launcher) { launcher.installEmbeddedJvm(0); }),
              HasSubstr("/jvm at line 1 ==> Missing colon at the end of the tag name."));
  EXPECT_EQ(run.n(1), 0);
  EXPECT_EQ(run.s(1), "");
}

}  // namespace
}  // namespace vessant::test
