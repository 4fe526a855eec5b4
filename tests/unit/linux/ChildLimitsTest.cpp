// What a child may use up, and what becomes of one that uses more.

#include <chrono>
#include <csignal>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

constexpr std::uint64_t kFewBytes = 100000;
constexpr std::chrono::seconds kLongTime{30};

class ChildLimitsTest : public testing::Test {
 protected:
  ChildResult run(const std::string& command, ChildLimits limits) {
    ChildCommand child{.command = text(command), .workingDirectory = text(tree.root())};
    child.captureOutput = true;
    child.redirectChildOutput = true;
    child.emptyInput = true;
    child.stdoutText = &out;
    child.stderrText = &err;
    child.limits = limits;
    return LinuxPlatformImpl().executeCommand(child, progress);
  }

  /// Whether a process whose number stands in a file of the tree still runs.
  [[nodiscard]] bool runs(const std::string& name) const {
    const std::string number = readFile(tree.path(name));
    std::ifstream file("/proc/" + number.substr(0, number.find('\n')) + "/stat");
    std::string status;
    return std::getline(file, status) && status.find(") Z ") == std::string::npos;
  }
  /// Nobody waits for a process that was killed, so that its end takes a moment to show.
  [[nodiscard]] bool ends(const std::string& file) const {
    for (int i = 0; i < 1000 && runs(file); ++i) ::poll(nullptr, 0, 10);
    return !runs(file);
  }

  TempTree tree;
  SString out;
  SString err;
  RecordingProgress progress;
};

TEST_F(ChildLimitsTest, AreNothingToAChildThatKeepsThem) {
  const ChildResult result = run("echo out; echo err >&2; exit 5", {kFewBytes, 60});
  EXPECT_EQ(result.exitCode, 5);
  EXPECT_EQ(result.end, ChildEnd::Exited);
  EXPECT_EQ(out, "out\n");
  EXPECT_EQ(err, "err\n");
}

TEST_F(ChildLimitsTest, EndAChildThatTakesTooLongWithAllThatItStarted) {
  const auto start = std::chrono::steady_clock::now();
  const ChildResult result =
      run("sh -c 'echo $$ >one; exec sleep 100' & setsid sh -c 'echo $$ >two; exec sleep 100' & "
          "echo $$ >shell; echo before; while :; do sleep 100; done",
          {.seconds = 1});
  EXPECT_EQ(result.end, ChildEnd::TimeLimit);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(out, "before\n");
  EXPECT_LT(std::chrono::steady_clock::now() - start, kLongTime);
  for (const char* file : {"one", "two", "shell"}) EXPECT_TRUE(ends(file)) << file;
}

TEST_F(ChildLimitsTest, EndWhatHasLeftItsGroupItsSessionAndItsParent) {
  const ChildResult result =
      run("(setsid sh -c 'echo $$ >one; exec sleep 100' >/dev/null 2>&1 &); "
          "while :; do sleep 100; done",
          {.seconds = 1});
  EXPECT_EQ(result.end, ChildEnd::TimeLimit);
  EXPECT_FALSE(runs("one"));
}

TEST_F(ChildLimitsTest, LeaveWhatTheLauncherInheritedAlone) {
  const pid_t inherited = ::fork();
  if (inherited == 0) {
    ::pause();
    ::_exit(0);
  }
  EXPECT_EQ(run("while :; do sleep 100; done", {.seconds = 1}).end, ChildEnd::TimeLimit);
  EXPECT_EQ(::waitpid(inherited, nullptr, WNOHANG), 0) << "it was killed";
  ::kill(inherited, SIGKILL);
  ::waitpid(inherited, nullptr, 0);
}

/// The launcher, not the child, is stopped for longer than the child may take.
TEST_F(ChildLimitsTest, AreNoReproachToAChildThatEndsWhileTheLauncherIsStopped) {
  const ForkedResult result = runForked([this] {
    const std::string launcher = std::to_string(::getpid());
    const std::string waker = tree.program("waker", "#!/bin/sh\nsleep 1.5\nkill -CONT " + launcher);
    return run("kill -STOP " + launcher + "; (" + waker + " >/dev/null 2>&1 &); echo done; exit 7",
               {.seconds = 1})
        .exitCode;
  });
  EXPECT_EQ(result.status, 7);
}

TEST_F(ChildLimitsTest, EndAChildThatCannotBeEndedOtherwise) {
  const ChildResult result =
      run("trap '' TERM INT HUP; kill -STOP $$; while :; do :; done", {.seconds = 1});
  EXPECT_EQ(result.end, ChildEnd::TimeLimit);
}

TEST_F(ChildLimitsTest, CountForWhatHoldsTheOutputBehindTheEnd) {
  const ChildResult result = run("sh -c 'echo $$ >one; exec sleep 100' & exit 5", {.seconds = 1});
  EXPECT_EQ(result.end, ChildEnd::TimeLimit);
  EXPECT_TRUE(ends("one"));
}

TEST_F(ChildLimitsTest, EndAChildThatWritesTooMuch) {
  const ChildResult result =
      run("while :; do echo 0123456789012345678901234567890123456789; done", {kFewBytes, 60});
  EXPECT_EQ(result.end, ChildEnd::OutputLimit);
  EXPECT_GT(out.length(), kFewBytes);
  EXPECT_LT(out.length(), 2 * kFewBytes);
}

TEST_F(ChildLimitsTest, CountBothStreamsTogether) {
  const std::string half = std::to_string(kFewBytes / 2 + 1);
  EXPECT_EQ(run(helper("out " + half + " err " + half), {kFewBytes, 60}).end,
            ChildEnd::OutputLimit);
  EXPECT_EQ(run(helper("out " + std::to_string(kFewBytes)), {kFewBytes, 60}).end, ChildEnd::Exited);
}

TEST_F(ChildLimitsTest, GiveTheChildAGroupOfItsOwn) {
  run("kill -KILL 0", {.seconds = 60});  // or this test would end here
  EXPECT_EQ(run("kill -KILL 0", {.seconds = 60}).end, ChildEnd::Exited);
}

TEST_F(ChildLimitsTest, LeaveAChildWithoutThemInTheLaunchersGroup) {
  EXPECT_EQ(
      run("set -- $(cat /proc/$$/stat); [ $5 = " + std::to_string(::getpgrp()) + " ]", {}).exitCode,
      0);
}

TEST(EmptyInput, IsAtItsEndWhateverTheLaunchersIs) {
  const ForkedResult result = runForked([] {
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0 || ::dup2(ends[0], STDIN_FILENO) != 0) return 1;  // nothing ever comes
    ChildRunner runner;
    ChildCommand child{.command = "cat; exit 5"};
    child.emptyInput = true;
    return runner.platform.executeCommand(child, runner.progress).exitCode;
  });
  EXPECT_EQ(result.status, 5);
}

}  // namespace
}  // namespace vessant::test
