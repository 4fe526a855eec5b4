// What vspack shows while it works: on a terminal, from a second on, and nowhere else.

#include <ctime>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "support/BuildPaths.h"
#include "support/CallStop.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessRunner.h"
#include "support/RunningProcess.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// The time after which a command shows that it works.
constexpr timespec kPatience = {1, 50'000'000};

/// A command, and the system call by which it reads: the sanitizers have none of these of their
/// own.
struct Case {
  const char* name;
  std::vector<std::string> arguments;
  long call;
  std::string shown;
};

class VspackProgressTest : public testing::TestWithParam<Case> {
 protected:
  VspackProgressTest() {
    tree.file("data", bytes);
    tree.file("pack.manifest", "OUTPUT: new\nLAUNCHER: " + std::string(kLauncher) +
                                   "\nFILES:\n  application 1 data\n/:\n");
    LauncherFileBuilder().stub("launcher").add(6, 1, "data", bytes).write(tree.path("setup"));
    tree.file("setup.sums", runProcess({{kVspack, "sums", tree.path("setup")}}).out);
  }

  /// Runs the command, held in the middle for longer than a user waits without a word, and returns
  /// what it showed.
  std::string run(RunningProcess::Console console) {
    ProcessRequest request{{"/bin/sh", "-c", "read -r go; exec \"$0\" \"$@\"", kVspack}};
    request.command.insert(request.command.end(), GetParam().arguments.begin(),
                           GetParam().arguments.end());
    request.directory = tree.root();
    RunningProcess process(request, console);
    CallStop stop(process.id());
    process.type("go\n");
    // Behind what comes before the bytes that take their time, and far from their end.
    EXPECT_TRUE(stop.runTo({GetParam().call}, 14));
    ::clock_nanosleep(CLOCK_MONOTONIC, 0, &kPatience, nullptr);
    stop.release();
    EXPECT_EQ(process.wait(), 0);
    return process.output();
  }

  TempTree tree;
  const std::string bytes = std::string(4'000'000, 'x');
};

TEST_P(VspackProgressTest, OnATerminalTheUserSeesHowFarItIs) {
  EXPECT_THAT(run(RunningProcess::Console::Terminal),
              AllOf(HasSubstr("\r\x1B[K" + GetParam().shown + ": "), HasSubstr(" %\r\x1B[K")));
}

TEST_P(VspackProgressTest, ElsewhereNothingIsShown) {
  EXPECT_THAT(run(RunningProcess::Console::Pipe), Not(HasSubstr(" %")));
}

std::string nameOf(const testing::TestParamInfo<Case>& command) {
  return command.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Commands, VspackProgressTest,
    testing::Values(Case{"Pack",
                         {"pack", "pack.manifest", "--allow", "no-script", "--no-align"},
                         SYS_pread64,
                         "packing new"},
                    Case{"Extract", {"extract", "setup", "-C", "x"}, SYS_pread64, "extracting"},
                    Case{"Sums", {"sums", "setup"}, SYS_pread64, "summing up setup"},
                    Case{"VerifySums",
                         {"verify", "setup", "--sums", "setup.sums"},
                         SYS_pread64,
                         "verifying setup"}),
    nameOf);

}  // namespace
}  // namespace vessant::test
