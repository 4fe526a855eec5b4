// Places where a launcher may be started all the same: deep, vanished or full directories, and next
// to another launcher.

#include <optional>

#include <sys/stat.h>
#include <unistd.h>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

struct HardPlaces : SystemTest {
  HardPlaces() { environment["PATH"] = "/usr/bin:/bin"; }

  /// Runs a shell script that has the launcher and its temporary root as $0 and $1.
  ProcessResult runInShell(const std::string& script) {
    pack();
    return runCommand({"/bin/sh", "-c", script, launcher, tempRoot});
  }
};

TEST_F(HardPlaces, AreDirectoriesWithVeryLongPaths) {
  addInstaller("pwd; cat %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  const std::string component(200, 'd');
  std::string deep = "deep";
  while (deep.size() < 1500) deep += "/" + component;
  startDirectory = tree.dir(deep);
  EXPECT_THAT(run(), Ended(0, "Demo\n" + tree.path("app") + "\narchive\n"));
}

TEST_F(HardPlaces, AreDirectoriesThatAreGone) {
  addInstaller("pwd; cat %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  EXPECT_THAT(
      runInShell("mkdir gone && cd gone && rmdir ../gone && exec \"$0\" -vs:tempdir \"$1\""),
      Ended(0, "Demo\n" + tree.path("app") + "\narchive\n"));
}

TEST_F(HardPlaces, AreTempDirectoriesWithBlanksInTheirNames) {
  tempRoot = tree.dir("temp/my own");
  addInstaller("echo %CP%(); cat \"%APPLICATION_ARCHIVE%()\"");
  file.add(kClassPathArchive, 29, "a.jar", "a")
      .add(kApplicationArchive, 30, "app.zip", "archive\n");
  const ProcessResult result = run();
  EXPECT_EQ(maskTempNames(result.out), "Demo\n-cp :" + tempRoot + "/vsj/a.jar:\narchive\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(std::filesystem::remove(tempRoot)) << "the temporary root is not empty";
}

TEST_F(HardPlaces, AreTempDirectoriesThatCannotBeWritten) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  addInstaller();
  std::filesystem::permissions(tempRoot, std::filesystem::perms(0555));
  EXPECT_THAT(run(), Ended(255, "Demo\nPermission denied\n"));
}

TEST_F(HardPlaces, AreTempDirectoriesWithoutAnySpace) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can mount a small disk";
  addScript({"ILAUNCH 3 0"});
  addLaunchScript("echo %APPLICATION_ARCHIVE%()");
  addJvmFile("17");
  // So large when it is expanded that the check of the space lets it pass.
  file.addExpanding(kApplicationArchive, 30, "app.zip", std::string(200000, 'x'), 0, 0x80000000U);
  pack();
  const std::string script =
      "mount -t tmpfs -o size=65536 tmpfs \"$1\" || exit 99\n"
      "\"$0\" -vs:tempdir \"$1\"; echo \"status $?\"; ls -A \"$1\"\n";
  const ProcessResult result =
      runCommand({"/usr/bin/unshare", "--mount", "/bin/sh", "-c", script, launcher, tempRoot});
  if (result.status != 0) GTEST_SKIP() << "no disk can be mounted here: " << result.err;
  EXPECT_EQ(result.out,
            "Demo\nError writing file = 28 There may not be enough temporary disk space. Try using "
            "-vs:tempdir to use a temporary directory on a partition with more disk space.\n"
            "status 255\n");
}

struct NoExecRoot : HardPlaces {
  /// Runs the launcher with a log and a temporary root that is mounted noexec; none where nothing
  /// can be mounted.
  std::optional<ProcessResult> runInNoExecRoot() {
    pack();
    const std::string script =
        "mount -t tmpfs -o noexec tmpfs \"$1\" || exit 99\n"
        "\"$0\" -vs:tempdir \"$1\" -vs:log \"$2\"; status=$?; ls -A \"$1\"; exit $status\n";
    ProcessResult result = runCommand(
        {"/usr/bin/unshare", "--mount", "/bin/sh", "-c", script, launcher, tempRoot, logName()});
    if (result.status == 99 || !std::filesystem::exists(logName())) return std::nullopt;
    return result;
  }
  std::string advice = "No program can be started from the temporary directory " + tempRoot +
                       ", because its file system is mounted noexec. Please run the program again "
                       "using the option -vs:tempdir <temp dir> to specify a different directory.";
};

TEST_F(NoExecRoot, IsToldOfBeforeABundledJvmIsInstalled) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can mount a disk";
  addScript({"INSTALL_JVM 0"});
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\necho >jvm\n");
  const std::optional<ProcessResult> result = runInNoExecRoot();
  if (!result) GTEST_SKIP() << "no disk can be mounted here";
  EXPECT_EQ(result->err, advice + "\n");
  EXPECT_THAT(logLines(), ::testing::Contains("WARNING: " + advice));
  EXPECT_EQ(result->out, "");
}

TEST_F(NoExecRoot, IsToldOfBeforeASecondLauncherIsStarted) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can mount a disk";
  addScript({"EXECUTE_LAUNCHER 7"});
  file.add(kEmbeddedLauncher, 7, "inner", "#!/bin/sh\necho started\n");
  const std::optional<ProcessResult> result = runInNoExecRoot();
  if (!result) GTEST_SKIP() << "no disk can be mounted here";
  EXPECT_EQ(result->err, advice + "\n");
  EXPECT_THAT(logLines(), ::testing::Contains("WARNING: " + advice));
  EXPECT_THAT(logLines(), ::testing::Contains("ERROR: Unable to execute the embedded launcher."));
}

TEST_F(NoExecRoot, IsNoMatterToARunThatStartsNothingThere) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can mount a disk";
  addScript({"ILAUNCH 3 0"});
  addLaunchScript("cat %APPLICATION_ARCHIVE%()");
  addJvmFile("17");
  file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  const std::optional<ProcessResult> result = runInNoExecRoot();
  if (!result) GTEST_SKIP() << "no disk can be mounted here";
  EXPECT_THAT(*result, Ended(0, "Demo\narchive\n"));
}

TEST_F(HardPlaces, AreLogsThatArePipesWithoutAReader) {
  addScript({"ILAUNCH 3 0"});
  addLaunchScript("exit 7");
  addJvmFile("17");
  ASSERT_EQ(::mkfifo(logName().c_str(), 0600), 0);
  EXPECT_THAT(runLogged(), Ended(7, "Demo\n"));
}

TEST_F(HardPlaces, AreCommandsLongerThanTheSystemTakes) {
  addScript({"ILAUNCH 3 0"});
  addLaunchScript("true " + std::string(200000, 'x'));
  addJvmFile("17");
  const ProcessResult result = runLogged();
  EXPECT_EQ(result.status, 127);
  EXPECT_EQ(result.err, "Error starting the shell: Argument list too long\n");
  EXPECT_THAT(logLines(), ::testing::Contains(
                              "ERROR: The shell could not be started:  Argument list too long"));
}

TEST_F(HardPlaces, AreTempDirectoriesThatAnotherLauncherUses) {
  addInstaller("cat %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  const ProcessResult result = runInShell(
      "for i in 1 2 3 4; do \"$0\" -vs:tempdir \"$1\" -vs:log log >out$i & done; wait; cat out*");
  std::string expected;
  for (int i = 0; i < 4; ++i) expected += "Demo\narchive\n";
  EXPECT_THAT(result, Ended(0, expected));
}

TEST_F(HardPlaces, AreDirectoriesWithNamesThatShellsTakeApart) {
  launcher = tree.path("a $b 'c' \"d\"/set;up.bin");
  tree.dir("a $b 'c' \"d\"");
  addScript({"ILAUNCH 3 0"});
  addLaunchScript("pwd");
  addJvmFile("17");
  EXPECT_THAT(run(), Ended(0, "Demo\n" + tree.path("a $b 'c' \"d\"") + "\n"));
}

}  // namespace
}  // namespace vessant::test
