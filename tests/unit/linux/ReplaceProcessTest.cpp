#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "support/BuildPaths.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

constexpr int kReturned = 98;

/// Becomes the command in a process of its own.
ForkedResult becomeCommand(const std::string& command, const std::string& directory = "") {
  return runForked([&] {
    ChildRunner runner;
    ChildCommand child{.command = text(command), .workingDirectory = text(directory)};
    child.captureOutput = true;
    child.redirectChildOutput = true;
    child.runInBackground = true;
    child.stdoutText = &runner.out;
    child.replaceProcess = true;
    std::printf("ahead\n");
    return runner.platform.executeCommand(child, runner.progress).exitCode == 0 ? kReturned : 99;
  });
}

TEST(ReplaceProcess, BecomesTheProgram) {
  const ForkedResult result = becomeCommand(helper("text hello exit 7"));
  EXPECT_EQ(result.status, 7);
  EXPECT_EQ(result.out, "ahead\nhello\n");
}

TEST(ReplaceProcess, HandsTheArgumentsOnWithoutAShell) {
  const ForkedResult result = becomeCommand(helper(R"(args "a b" $HOME \"q\" '*' "" c;d)"));
  const char expected[] = "ahead\na b\0$HOME\0\"q\"\0'*'\0c;d\0";
  EXPECT_EQ(result.out, std::string(expected, sizeof(expected) - 1));
}

TEST(ReplaceProcess, IgnoresTheWorkingDirectory) {
  const ForkedResult result = becomeCommand(helper("cwd"), "/no/such/directory");
  EXPECT_EQ(result.out, "ahead\n" + std::filesystem::current_path().string() + "\n");
}

TEST(ReplaceProcess, LooksForTheProgramOnThePath) {
  const std::filesystem::path program = kTestHelper;
  const ForkedResult result = runForked([&] {
    ::setenv("PATH", program.parent_path().c_str(), 1);
    ChildRunner runner;
    const SString command = text(program.filename().string() + " exit 9");
    runner.platform.executeCommand({.command = command, .replaceProcess = true}, runner.progress);
    return kReturned;
  });
  EXPECT_EQ(result.status, 9);
}

TEST(ReplaceProcess, ReturnsZeroForAMissingProgram) {
  const ForkedResult result = becomeCommand("/no/such/program x");
  EXPECT_EQ(result.status, kReturned);
  EXPECT_EQ(result.err, "");
}

TEST(ReplaceProcess, ReturnsZeroForACommandWithoutAProgram) {
  EXPECT_EQ(becomeCommand(" ").status, kReturned);
  EXPECT_EQ(becomeCommand("\"\"").status, kReturned);
}

}  // namespace
}  // namespace vessant::test
