// What keeps a child from being started or waited for.
#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/linux/Shell.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

constexpr uid_t kSomeUser = 65534;

std::string failureOf(const std::string& directory) {
  ChildRunner runner;
  try {
    runner.capture("exit 0", directory);
  } catch (const LauncherException& error) {
    return str(error.message());
  }
  return "no exception";
}

TEST(StartFailures, AMissingWorkingDirectory) {
  const TempTree tree;
  const std::string missing = tree.path("missing");
  const std::filesystem::path before = std::filesystem::current_path();
  EXPECT_EQ(failureOf(missing),
            "Error setting working directory: " + missing + " No such file or directory");
  EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST(StartFailures, AWorkingDirectoryThatIsAFile) {
  TempTree tree;
  const std::string file = tree.file("file");
  EXPECT_EQ(failureOf(file), "Error setting working directory: " + file + " Not a directory");
}

TEST(StartFailures, NothingRunsWithoutItsWorkingDirectory) {
  const TempTree tree;
  ChildRunner runner;
  EXPECT_THROW(runner.pass("echo ran >" + tree.path("ran"), tree.path("missing")),
               LauncherException);
  EXPECT_TRUE(tree.list().empty());
}

/// Leaves room for so many further descriptors.
void limitDescriptors(rlim_t count) {
  const int next = ::dup(STDIN_FILENO);
  ::close(next);
  const rlim_t limit = static_cast<rlim_t>(next) + count;
  const rlimit limits = {limit, limit};
  ::setrlimit(RLIMIT_NOFILE, &limits);
}

/// Runs a captured command that cannot be started and prints where that leaves the process.
ForkedResult failToStart(const TempTree& tree, const std::function<void()>& prepare) {
  return runForked([&] {
    // UBSan needs descriptors the first time it looks at a type: the same once, with enough of
    // them.
    static_cast<void>(failureOf(tree.path("missing")));
    prepare();
    try {
      ChildRunner().capture("exit 0", tree.root());
    } catch (const LauncherException&) {
      char directory[4096] = {};
      if (::getcwd(directory, sizeof(directory)) != nullptr) {
        static_cast<void>(!::write(STDOUT_FILENO, directory, std::string(directory).size()));
      }
      throw;
    }
    return 0;
  });
}

class PipeFailure : public testing::TestWithParam<rlim_t> {};

// The directory left behind takes one descriptor; a pipe takes two.
INSTANTIATE_TEST_SUITE_P(Room, PipeFailure, testing::Values(0, 1, 2, 3, 4));

TEST_P(PipeFailure, TellsTheReasonAndStaysInTheWorkingDirectory) {
  const TempTree tree;
  const ForkedResult result = failToStart(tree, [] { limitDescriptors(GetParam()); });
  EXPECT_EQ(result.status, kThrown);
  EXPECT_EQ(result.err, "Couldn't create either stdout or stderr pipe: Too many open files");
  EXPECT_EQ(result.out, tree.root());
}

TEST(StartFailures, AFailedForkStaysInTheWorkingDirectory) {
  TempTree tree;
  std::filesystem::permissions(tree.root(), std::filesystem::perms(0755));
  const ForkedResult result = failToStart(tree, [] {
    const rlimit none = {0, 0};
    if (::getuid() == 0 && ::setuid(kSomeUser) != 0) throw LauncherException("no other user");
    ::setrlimit(RLIMIT_NPROC, &none);
  });
  EXPECT_EQ(result.status, kThrown);
  EXPECT_EQ(result.err, "Error forking new process: Resource temporarily unavailable");
  EXPECT_EQ(result.out, tree.root());
}

TEST(StartFailures, AChildThatCannotBeWaitedFor) {
  const ForkedResult result = runForked([] {
    ::signal(SIGCHLD, SIG_IGN);  // the system reaps children at once
    return ChildRunner().pass(helper("exit 3"));
  });
  EXPECT_EQ(result.status, kThrown);
  EXPECT_EQ(result.err, "Error waiting for child process: No child processes");
}

int statusOf(const ShellSetup& setup) {
  int status = 0;
  ::waitpid(startShell("exit 0", setup), &status, 0);
  return WEXITSTATUS(status);
}

TEST(StartFailures, AChildWithoutItsStreamsTellsWhyAndEnds) {
  const ForkedResult result = runForked([] {
    return statusOf({.redirect = true, .standardOutput = -1, .standardError = STDERR_FILENO});
  });
  EXPECT_EQ(result.status, kChildSetupFailed);
  EXPECT_EQ(result.err, "Error capturing stdout or stderr in new process: Bad file descriptor\n");
}

TEST(StartFailures, ACommandThatIsTooLongTellsWhyAndEnds) {
  ChildRunner runner;
  const std::string command = "exit 0 #" + std::string(200000, 'x');
  EXPECT_EQ(runner.capture(command), kChildSetupFailed);
  EXPECT_EQ(runner.err, "Error starting the shell: Argument list too long\n");
}

TEST(StartFailures, AShellThatCannotBeStartedIsToldOfWithItsError) {
  ChildRunner runner;
  const std::string command = "exit 0 #" + std::string(200000, 'x');
  const ChildResult result =
      runner.platform.executeCommand({.command = text(command)}, runner.progress);
  EXPECT_EQ(result.exitCode, kChildSetupFailed);
  EXPECT_EQ(result.startError, E2BIG);
  EXPECT_EQ(runner.platform.executeCommand({.command = "exit 127"}, runner.progress).startError, 0);
}

TEST(StartFailures, AChildWithoutItsErrorStreamTellsWhyAndEnds) {
  const ForkedResult result = runForked([] {
    return statusOf({.redirect = true, .standardOutput = STDOUT_FILENO, .standardError = -1});
  });
  EXPECT_EQ(result.status, kChildSetupFailed);
  EXPECT_EQ(result.err, "Error capturing stdout or stderr in new process: Bad file descriptor\n");
}

}  // namespace
}  // namespace vessant::test
