#include <cstdio>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/linux/CancelSignals.h"
#include "launcher/linux/ChildProcess.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

constexpr int kFirstOwnDescriptor = 3;
constexpr int kMostDescriptors = 1024;

/// Whether a test captures the child's output; the outcome must not depend on it.
class AnyChild : public testing::TestWithParam<bool> {
 protected:
  std::int32_t run(const std::string& command, const std::string& directory = "") {
    return GetParam() ? runner.capture(command, directory) : runner.pass(command, directory);
  }

  TempTree tree;
  ChildRunner runner;
};

INSTANTIATE_TEST_SUITE_P(Capture, AnyChild, testing::Values(false, true),
                         [](const auto& item) { return item.param ? "On" : "Off"; });

TEST_P(AnyChild, ReturnsTheExitCode) {
  for (const int code : {0, 1, 3, 127, 255}) {
    EXPECT_EQ(run(helper("exit " + std::to_string(code))), code);
  }
}

TEST_P(AnyChild, ReturnsZeroForAShellEndedByASignal) {
  EXPECT_EQ(run("kill -KILL $$; exit 5"), 0);
}

TEST_P(AnyChild, ReturnsTheShellsCodeForAMissingProgram) {
  EXPECT_EQ(run("\"" + tree.path("missing") + "\" 2>/dev/null"), 127);
}

TEST_P(AnyChild, ReturnsTheShellsCodeForAFileThatIsNoProgram) {
  EXPECT_EQ(run("\"" + tree.file("data", "text") + "\" 2>/dev/null"), 126);
}

TEST_P(AnyChild, AnEmptyCommandSucceeds) {
  EXPECT_EQ(run(""), 0);
}

TEST_P(AnyChild, TheShellTakesTheCommandApart) {
  EXPECT_EQ(run("code=4; (exit $code) && exit 1 || exit \"$((code + 2))\""), 6);
}

TEST_P(AnyChild, RunsInTheWorkingDirectoryAndComesBack) {
  const std::filesystem::path before = std::filesystem::current_path();
  EXPECT_EQ(run("pwd -P >where", tree.root()), 0);
  EXPECT_EQ(readFile(tree.path("where")), tree.root() + "\n");
  EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_P(AnyChild, StaysInTheCurrentDirectoryWithoutAWorkingDirectory) {
  const std::filesystem::path before = std::filesystem::current_path();
  EXPECT_EQ(run("pwd -P >" + tree.path("where")), 0);
  EXPECT_EQ(readFile(tree.path("where")), before.string() + "\n");
  EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_P(AnyChild, HasOnlyTheStandardStreamsOpen) {
  const std::string list = tree.path("fds");
  const ForkedResult result = runForked([&] {
    for (int fd = kFirstOwnDescriptor; fd < kMostDescriptors; ++fd) ::close(fd);
    return run(helper("fds >" + list), tree.root());
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(readFile(list), "");
}

TEST_P(AnyChild, LeavesNoDescriptorOpen) {
  const ForkedResult result = runForked([&] {
    for (int fd = kFirstOwnDescriptor; fd < kMostDescriptors; ++fd) ::close(fd);
    run(helper("exit 0"), tree.root());
    return ::dup(STDIN_FILENO);
  });
  EXPECT_EQ(result.status, kFirstOwnDescriptor);
}

TEST_P(AnyChild, NeverRunsTheCleanUpOfTheParent) {
  static const TempTree* kept = nullptr;
  kept = &tree;
  const ForkedResult result = runForked([&] {
    std::atexit([] { std::filesystem::create_directory(kept->path("cleaned")); });
    return run("exit 0");
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_FALSE(std::filesystem::exists(tree.path("cleaned")));
}

TEST_P(AnyChild, ComesBackFromADirectoryThatCannotBeNamed) {
  const std::string deep = tree.dir("deep");
  const ForkedResult result = runForked([&] {
    std::filesystem::current_path(deep);
    const std::string part(200, 'd');
    for (int i = 0; i < 30; ++i) {
      if (::mkdir(part.c_str(), 0755) != 0 || ::chdir(part.c_str()) != 0) return 1;
    }
    run("exit 0", tree.root());
    return ::access(("../" + part).c_str(), F_OK) == 0 ? 0 : 2;
  });
  EXPECT_EQ(result.status, 0);
}

TEST(ChildProcess, PassesItsStreamsToAnUncapturedChild) {
  const ForkedResult result = runForked([] {
    ChildRunner runner;
    const std::int32_t status = runner.pass(helper("text out err 3 exit 7"));
    return runner.out.isEmpty() && runner.progress.steps == 0 ? status : 99;
  });
  EXPECT_EQ(result.status, 7);
  EXPECT_EQ(result.out, "out\n");
  EXPECT_EQ(result.err, "eee");
}

TEST(ChildProcess, WritesItsBufferOnceAndAheadOfTheChildsOutput) {
  const ForkedResult result = runForked([] {
    ChildRunner runner;
    std::printf("ahead\n");
    runner.pass(helper("text child"));
    std::printf("behind\n");
    return std::fflush(stdout);
  });
  EXPECT_EQ(result.out, "ahead\nchild\nbehind\n");
}

TEST(ChildProcess, WaitsForACommandInTheBackground) {
  const TempTree tree;
  ChildRunner runner;
  ChildCommand child{.command = text("echo done >" + tree.path("file") + "; exit 3")};
  child.runInBackground = true;
  EXPECT_EQ(runner.platform.executeCommand(child, runner.progress).exitCode, 3);
  EXPECT_EQ(readFile(tree.path("file")), "done\n");
}

/// A child that has ended and was not waited for.
pid_t makeEndedChild(int status) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(status);
  siginfo_t info = {};
  ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT);
  return child;
}

TEST_P(AnyChild, OthersAreReapedWithoutTakingTheirStatus) {
  const ForkedResult result = runForked([&] {
    makeEndedChild(42);
    const std::int32_t status = run(helper("exit 3"));
    return ::waitpid(-1, nullptr, 0) < 0 && errno == ECHILD ? status : 99;
  });
  EXPECT_EQ(result.status, 3);
}

/// While a child runs that is not over before the other one is.
TEST_P(AnyChild, OthersThatEndMeanwhileAreReapedAtOnce) {
  const std::string list = tree.path("children");
  const ForkedResult result = runForked([&] {
    CancelFlag flag;
    const CancelSignals signals(flag);
    const pid_t other = ::fork();
    if (other == 0) {
      ::poll(nullptr, 0, 100);
      ::_exit(42);
    }
    return run("while kill -0 " + std::to_string(other) +
               " 2>/dev/null; do sleep 0.01; done; exit 3");
  });
  EXPECT_EQ(result.status, 3);
}

}  // namespace
}  // namespace vessant::test
