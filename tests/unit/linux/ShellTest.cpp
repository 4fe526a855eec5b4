// The shells that systems have as /bin/sh, each in a file system of its own without /proc: a
// command means to the launcher's shell what it means to the same shell alone.

#include <csignal>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/linux/CancelSignals.h"
#include "launcher/linux/Shell.h"
#include "support/ProgramCopy.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

struct ShellKind {
  const char* name;
  const char* program;
};

void PrintTo(const ShellKind& shell, std::ostream* out) {
  *out << shell.name;
}

class Shells : public testing::TestWithParam<ShellKind> {
 protected:
  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can change the root directory";
    tree.dir("dev");
    tree.file("dev/null");
    const bool copied = copyProgram(GetParam().program, tree.root(), "/bin/sh");
    if (!copied) GTEST_SKIP() << "no " << GetParam().program << " here";
    copyProgram("/bin/sleep", tree.root(), "/bin/sleep");
  }

  void enter() const {
    if (::chroot(tree.root().c_str()) != 0 || ::chdir("/") != 0) ::_exit(kThrown);
    ::setsid();
    ::setenv("PATH", "/bin", 1);
  }
  [[nodiscard]] ForkedResult alone(const std::string& command) const {
    return runForked([&]() -> int {
      enter();
      ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
      return kThrown;
    });
  }
  /// The same through a launcher.
  [[nodiscard]] ForkedResult launched(const std::string& command) const {
    return runForked([&] {
      enter();
      return ChildRunner().pass(command);
    });
  }
  /// What the command writes, its status to the launcher, and whether the run is cancelled.
  [[nodiscard]] std::string run(const std::string& command) const {
    const ForkedResult result = runForked([&] {
      enter();
      CancelFlag flag;
      const CancelSignals signals(flag);
      const std::int32_t status = ChildRunner().pass(command);
      const std::string line = std::to_string(status) + (flag.isSet() ? " cancelled" : "");
      return ::write(STDOUT_FILENO, line.data(), line.size()) < 0 ? 1 : 0;
    });
    return result.out;
  }

  TempTree tree;
};

INSTANTIATE_TEST_SUITE_P(Kinds, Shells,
                         testing::Values(ShellKind{"Dash", "/bin/dash"},
                                         ShellKind{"Bash", "/bin/bash"},
                                         ShellKind{"Busybox", "/bin/busybox"}),
                         [](const auto& item) { return item.param.name; });

TEST_P(Shells, MeanTheSameByACommand) {
  const char* commands[] = {
      "",
      " ",
      "echo text",
      "exit 3",
      "(exit 5)",
      "echo a \\",
      "echo a # b",
      "# nothing",
      "false",
      "missing program",
      "/dev/null",
      "cd /missing",
      "exec sh -c 'exit 4'",
      "exec missing",
      "while read x; do echo got $x; done <<E\na\nb\nE",
      "echo one\nmissing\necho three",
      "while read x; do echo got $x; done <<E\na",
      "echo \"abc",
      "echo 'abc",
      "echo `abc",
      "if true; then echo x",
      "echo ${",
      "sleep 0 & wait; exit 6",
      "trap 'echo bye' EXIT; exit 7",
      "set -e; false; echo no",
      "echo $0 $#",
      "! true",
      "{ echo a; }",
      "echo a && echo b || echo c",
      "f() { echo f $1; }; f x",
      "sh -c 'exit 130'",
      "kill -TERM $$ & wait $!; echo $?",
  };
  for (const char* command : commands) {
    SCOPED_TRACE(command);
    const ForkedResult expected = alone(command);
    const ForkedResult result = launched(command);
    EXPECT_EQ(result.out, expected.out);
    EXPECT_EQ(result.err, expected.err);
    // A shell that dies is 0 to the launcher.
    EXPECT_EQ(result.status, expected.status > 128 && expected.status < 160 &&
                                     std::string(command).starts_with("kill")
                                 ? 0
                                 : expected.status);
  }
}

/// There are no devices here at all.
TEST_P(Shells, HaveAnEmptyInputWithoutDevices) {
  std::filesystem::remove_all(tree.path("dev"));
  const ForkedResult result = runForked([&] {
    enter();
    ChildRunner runner;
    ChildCommand child{.command = "if read x; then exit 1; fi; exit 5"};
    child.emptyInput = true;
    return runner.platform.executeCommand(child, runner.progress).exitCode;
  });
  EXPECT_EQ(result.status, 5);
}

TEST_P(Shells, TellWhereASyntaxErrorIs) {
  for (const char* command : {"; echo a", "echo a;; echo b", "echo a )", "echo (", "then; echo",
                              "echo one\necho a )\necho three", "if true; fi", "}; echo a"}) {
    SCOPED_TRACE(command);
    const ForkedResult expected = alone(command);
    const ForkedResult result = launched(command);
    EXPECT_EQ(result.status, expected.status);
    EXPECT_EQ(result.out, expected.out);
    EXPECT_EQ(result.err, expected.err);
  }
}

TEST_P(Shells, TellOfAProgramThatDiesOfASignal) {
  for (const int signal : {SIGKILL, SIGTERM, SIGHUP, SIGPIPE}) {
    const std::string dies = "sh -c 'kill -" + std::to_string(signal) + " $$'";
    EXPECT_EQ(run(dies), std::to_string(128 + signal));
    EXPECT_EQ(run("true; " + dies), std::to_string(128 + signal));
    EXPECT_EQ(run("true && " + dies), std::to_string(128 + signal));
  }
}

TEST_P(Shells, ThatDieThemselvesTellNothing) {
  EXPECT_EQ(run("kill -KILL $$; exit 5"), "0");
  EXPECT_EQ(run("kill -TERM $$; exit 5"), "0");
}

/// A loop that ends, should no signal come.
const std::string kWait = "i=0; while [ $i -lt 100 ]; do sleep 0.05; i=$((i+1)); done; exit 99";

TEST_P(Shells, LetASignalThroughToTheProgramAlone) {
  const std::string hook = "trap \"echo hook; exit 3\" TERM; kill -TERM $PARENT; " + kWait;
  EXPECT_EQ(run("PARENT=$PPID sh -c '" + hook + "'"), "hook\n3 cancelled");
  const std::string dies = "kill -TERM $PARENT; " + kWait;
  EXPECT_EQ(run("PARENT=$PPID sh -c '" + dies + "'"), "143 cancelled");
}

TEST_P(Shells, LeaveCtrlCToTheProgram) {
  EXPECT_EQ(run("sh -c 'trap \"echo got\" INT; kill -INT 0; sleep 0.1; exit 7'"), "got\n7");
  EXPECT_EQ(run("sh -c 'trap \"\" INT; kill -INT 0; exit 7'; echo then; exit 8"), "then\n8");
  EXPECT_EQ(run("sh -c 'kill -INT 0; " + kWait + "'; echo then"), "130 cancelled");
}

TEST_P(Shells, LiveThroughAThreadDump) {
  EXPECT_EQ(run("sh -c 'trap \"echo dump\" QUIT; kill -QUIT 0; sleep 0.1; exit 7'"), "dump\n7");
}

TEST_P(Shells, AreWaitedForWithTheirProgramWhenAllAreToEnd) {
  const std::string hook = "trap \"sleep 0.2; echo hook; exit 3\" TERM; kill -TERM 0; " + kWait;
  EXPECT_EQ(run("sh -c '" + hook + "'"), "hook\n0 cancelled");
}

}  // namespace
}  // namespace vessant::test
