// A launcher whose standard streams are closed, full or broken does its job all the same.

#include <gtest/gtest-spi.h>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct StandardStreams : SystemTest {
  StandardStreams() { environment["PATH"] = "/usr/bin:/bin"; }

  /// Runs the launcher from a shell with these redirections.
  ProcessResult runRedirected(const std::string& redirections) {
    return runInShell("exec \"$0\" \"$@\" " + redirections);
  }
  ProcessResult runInShell(const std::string& command) {
    pack();
    return runCommand(
        {"/bin/sh", "-c", command, launcher, "-vs:tempdir", tempRoot, "-vs:log", logName()});
  }
  /// The program has no console: what it writes is seen in the log.
  void addCapturingInstaller(const std::string& command) {
    addScript({"INITIALIZE_UI", "FIND_JVM 1 1", "LAUNCH \"@S2@\" 1"});
    addLaunchScript(command, "");
    addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
    file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  }
};

struct Redirected : StandardStreams, ::testing::WithParamInterface<const char*> {};

TEST_P(Redirected, ChangesNothingButWhatIsSeen) {
  addCapturingInstaller("cat %APPLICATION_ARCHIVE%(); echo errors >&2; exit 9");
  const ProcessResult result = runRedirected(GetParam());
  EXPECT_EQ(result.status, 9);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(log(), HasSubstr("StdOut:\narchive\n\nErrOut:\nerrors\n"));
  // Nothing that belongs on the console went into a file.
  EXPECT_THAT(log(), Not(HasSubstr("Initializing Demo")));
}

INSTANTIATE_TEST_SUITE_P(Streams, Redirected,
                         ::testing::Values("", "<&-", ">&-", "2>&-", "<&- >&-", "<&- 2>&-",
                                           ">&- 2>&-", "<&- >&- 2>&-", ">/dev/full",
                                           ">/dev/full 2>/dev/full", ">/dev/null </dev/null"));

TEST_P(Redirected, LetsAProgramWithTheConsoleRun) {
  addInstaller("cat %APPLICATION_ARCHIVE%() > " + tree.path("copy") + "; exit 9");
  file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  EXPECT_EQ(runRedirected(GetParam()).status, 9);
  EXPECT_EQ(readFile(tree.path("copy")), "archive\n");
}

/// What every test here relies on to end: a program that hangs and heeds no signal.
TEST(HungProgram, IsKilledAndFailsTheTest) {
  for (const char* script :
       {"trap '' INT TERM HUP ALRM; while :; do sleep 1; done",
        "trap '' INT TERM HUP ALRM; exec >&- 2>&-; while :; do sleep 1; done"}) {
    ProcessResult result;
    EXPECT_NONFATAL_FAILURE(
        result = runProcess({.command = {"/bin/sh", "-c", script}, .timeLimitSeconds = 1}),
        "/bin/sh was killed: it had not ended after 1 seconds");
    EXPECT_EQ(result.status, 137);
  }
}

TEST_F(StandardStreams, AnswerNothingWhenTheInputIsClosed) {
  addScript({"INSTALL_JVM 2"});
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\ntouch " + tree.path("installed") + "\n");
  EXPECT_THAT(runRedirected("<&-"),
              Ended(0,
                    "\nPreparing Java(tm) Virtual Machine...\n"
                    "Supply the destination directory for the Java Virtual Machine:\n\n"));
  EXPECT_FALSE(std::filesystem::exists(tree.path("installed")));
}

TEST_F(StandardStreams, AreOpenForTheProgramWhateverTheLauncherWasGiven) {
  // Otherwise the first files that the program opens would take their places.
  addInstaller("x=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2); echo \"$x\" > " +
               tree.path("streams"));
  EXPECT_EQ(runRedirected("<&- >&- 2>&-").status, 0);
  EXPECT_EQ(readFile(tree.path("streams")), "/dev/null\n/dev/null\n/dev/null\n");
}

TEST_F(StandardStreams, MayBreakWhileTheLauncherRuns) {
  addCapturingInstaller("cat %APPLICATION_ARCHIVE%(); exit 9");
  // The launcher starts only when the reader of its output has gone.
  const ProcessResult result = runInShell(
      "mkfifo go && { read x <go; \"$0\" \"$@\"; echo $? >status; } | { exec <&-; echo >go; }");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(readFile(startDirectory + "/status"), "9\n");
  EXPECT_THAT(log(), HasSubstr("StdOut:\narchive\n\nErrOut:\n"));
}

TEST_F(StandardStreams, BreakForTheProgramAsForAnyOther) {
  addInstaller("sh -c 'echo to nobody; echo reached >&2'; echo $? > " + tree.path("inner"));
  const ProcessResult result = runInShell(
      "mkfifo go && { read x <go; \"$0\" \"$@\"; echo $? >status; } | { exec <&-; echo >go; }");
  // The program is ended by the signal that the launcher itself outlives.
  EXPECT_EQ(readFile(tree.path("inner")), "141\n");
  EXPECT_EQ(readFile(startDirectory + "/status"), "0\n");
  EXPECT_EQ(result.err, "");
}

}  // namespace
}  // namespace vessant::test
