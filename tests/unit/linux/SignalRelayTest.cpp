// What signals mean while a child runs: real signals, real shells and programs. Each test is a
// launcher in a session of its own, so that a signal to its group reaches nobody else. The programs
// know when to send: they send themselves.

#include <csignal>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/linux/CancelSignals.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

constexpr int kKilled = 128;
constexpr const char* kCancelled = " cancelled";
constexpr const char* kGoesOn = " goes on";

struct Signal {
  const char* name;
  int number;
};

void PrintTo(const Signal& signal, std::ostream* out) {
  *out << signal.name;
}

std::string nameOf(const testing::TestParamInfo<Signal>& item) {
  return item.param.name;
}

/// A program, and not a part of the shell's own work.
std::string program(const std::string& script) {
  return "sh -c '" + script + "'";
}

/// A launcher that runs the command. Returns what the program wrote, the exit code and whether the
/// run is cancelled.
std::string launch(const std::string& command, ChildLimits limits = {}) {
  const ForkedResult result = runForked([&] {
    for (int signal = 1; signal <= SIGRTMAX; ++signal) ::signal(signal, SIG_DFL);
    ::setsid();
    CancelFlag flag;
    const CancelSignals signals(flag);
    ::setenv("LAUNCHER", std::to_string(::getpid()).c_str(), 1);
    ChildRunner runner;
    ChildCommand child{.command = text(command)};
    child.limits = limits;
    const ChildResult ended = runner.platform.executeCommand(child, runner.progress);
    const std::string line = std::to_string(ended.exitCode) + (flag.isSet() ? kCancelled : kGoesOn);
    return ::write(STDOUT_FILENO, line.data(), line.size()) < 0 ? 1 : 0;
  });
  return result.status == 0 ? result.out : "launcher ended with " + std::to_string(result.status);
}

/// A program's wait for what comes; without an end it fails the test in a time that is long.
const std::string kWait = "i=0; while [ $i -lt 500 ]; do sleep 0.01; i=$((i+1)); done; exit 99";

class Sent : public testing::TestWithParam<Signal> {
 protected:
  const std::string name = std::to_string(GetParam().number);
  const std::string toLauncher = "kill -" + name + " $LAUNCHER; ";
  const std::string toGroup = "kill -" + name + " 0; ";
};

INSTANTIATE_TEST_SUITE_P(Signals, Sent,
                         testing::Values(Signal{"HUP", SIGHUP}, Signal{"INT", SIGINT},
                                         Signal{"USR1", SIGUSR1}, Signal{"USR2", SIGUSR2},
                                         Signal{"ALRM", SIGALRM}, Signal{"TERM", SIGTERM},
                                         Signal{"STKFLT", SIGSTKFLT}, Signal{"XCPU", SIGXCPU},
                                         Signal{"VTALRM", SIGVTALRM}, Signal{"PROF", SIGPROF},
                                         Signal{"IO", SIGIO}, Signal{"PWR", SIGPWR}),
                         nameOf);

TEST_P(Sent, ToTheLauncherAloneIsHandedOnOnceAndCancels) {
  const std::string trap = "trap \"echo got; sleep 0.1; exit 3\" " + name + "; ";
  EXPECT_EQ(launch(program(trap + toLauncher + kWait)), std::string("got\n3") + kCancelled);
}

TEST_P(Sent, ToTheLauncherAloneEndsAProgramThatDoesNotCatchIt) {
  const std::string status = std::to_string(kKilled + GetParam().number);
  EXPECT_EQ(launch(program(toLauncher + kWait) + " 2>/dev/null").substr(0, 13),
            status + kCancelled);
}

TEST_P(Sent, ReachesAProgramInAPartOfTheCommand) {
  const std::string trap = "trap \"echo got; exit 3\" " + name + "; ";
  const std::string command = "(cd /; " + program(trap + toLauncher + kWait) + "; exit 4)";
  EXPECT_EQ(launch(command), std::string("got\n4") + kCancelled);
}

TEST_P(Sent, TwiceEndsTheLauncherAtOnce) {
  const std::string trap = "trap \"" + toLauncher + "exit\" " + name + "; ";
  EXPECT_EQ(launch(program(trap + toLauncher + kWait)),
            "launcher ended with " + std::to_string(kKilled + GetParam().number));
}

TEST_P(Sent, ReachesAChildWithAGroupOfItsOwn) {
  const std::string trap = "trap \"echo got; exit 3\" " + name + "; ";
  EXPECT_EQ(launch(program(trap + toLauncher + kWait), {.seconds = 60}),
            std::string("got\n3") + kCancelled);
}

class SentToAll : public Sent {};

INSTANTIATE_TEST_SUITE_P(Signals, SentToAll,
                         testing::Values(Signal{"HUP", SIGHUP}, Signal{"TERM", SIGTERM},
                                         Signal{"USR1", SIGUSR1}),
                         nameOf);

/// The shell dies of it at once, the program puts its things in order first.
TEST_P(SentToAll, IsNotHandedOnAndTheProgramIsWaitedFor) {
  const std::string trap = "trap \"echo got; sleep 0.2; echo done; exit 3\" " + name + "; ";
  EXPECT_EQ(launch(program(trap + toGroup + kWait)), std::string("got\ndone\n0") + kCancelled);
}

/// What it writes meanwhile is more than the pipe holds, and is read all the same.
TEST(SignalRelay, AProgramThatOutlivesItsShellIsReadToItsEnd) {
  const ForkedResult result = runForked([] {
    ::setsid();
    ::signal(SIGTERM, SIG_DFL);
    CancelFlag flag;
    const CancelSignals signals(flag);
    ChildRunner runner;
    runner.capture(program("trap \"" + std::string(kTestHelper) +
                           " out 300000; exit 3\" TERM; kill -TERM 0; " + kWait));
    return flag.isSet() && runner.out.length() == 300000 ? 0 : 1;
  });
  EXPECT_EQ(result.status, 0);
}

TEST(SignalRelay, ACtrlCThatTheProgramSurvivesIsItsOwn) {
  const std::string script = "trap \"echo got\" INT; kill -INT 0; sleep 0.2; exit 7";
  EXPECT_EQ(launch(program(script)), std::string("got\n7") + kGoesOn);
}

TEST(SignalRelay, ACtrlCThatTheProgramIgnoresIsNobodys) {
  EXPECT_EQ(launch(program("trap \"\" INT; kill -INT 0; kill -INT 0; exit 7")),
            std::string("7") + kGoesOn);
}

TEST(SignalRelay, TheCommandGoesOnBehindAProgramThatSurvives) {
  const std::string script = program("trap \"\" INT; kill -INT 0; exit 7") + "; echo then $?";
  EXPECT_EQ(launch(script), std::string("then 7\n0") + kGoesOn);
}

TEST(SignalRelay, ACtrlCThatEndsTheProgramEndsTheCommandAndTheRun) {
  EXPECT_EQ(launch(program("kill -INT 0; " + kWait) + "; echo not reached"),
            std::string("130") + kCancelled);
}

TEST(SignalRelay, AProgramThatTellsOfItsEndByCtrlCEndsTheRun) {
  const std::string script = "trap \"exit 130\" INT; kill -INT 0; " + kWait;
  EXPECT_EQ(launch(program(script)), std::string("130") + kCancelled);
}

TEST(SignalRelay, ThisStatusWithoutCtrlCIsTheProgramsOwn) {
  EXPECT_EQ(launch(program("exit 130")), std::string("130") + kGoesOn);
  EXPECT_EQ(launch(program("kill -INT $$")), std::string("130") + kGoesOn);
}

TEST(SignalRelay, AThreadDumpIsTheProgramsBusiness) {
  const std::string script = "trap \"echo dump\" QUIT; kill -QUIT 0; sleep 0.2; exit 7";
  EXPECT_EQ(launch(program(script)), std::string("dump\n7") + kGoesOn);
  const std::string twice = "trap \"echo dump\" QUIT; kill -QUIT 0; kill -QUIT 0; exit 7";
  EXPECT_TRUE(launch(program(twice)).ends_with(std::string("7") + kGoesOn));
}

TEST(SignalRelay, AThreadDumpCanBeAskedOfTheLauncher) {
  const std::string script = "trap \"echo dump; exit 7\" QUIT; kill -QUIT $LAUNCHER; " + kWait;
  EXPECT_EQ(launch(program(script)), std::string("dump\n7") + kGoesOn);
}

TEST(SignalRelay, AProgramThatKnowsNoThreadDumpDiesOfItAndEndsTheRun) {
  EXPECT_EQ(
      launch("ulimit -c 0; " + program("kill -QUIT 0; " + kWait) + " 2>/dev/null").substr(0, 13),
      std::string("131") + kCancelled);
}

TEST(SignalRelay, AShellThatRunsNothingIsEndedItself) {
  EXPECT_EQ(launch("kill -TERM $LAUNCHER; while :; do :; done"), std::string("0") + kCancelled);
}

TEST(SignalRelay, NothingReachesProcessesThatAreNotTheLaunchers) {
  // A sibling in the launcher's own group, and a child that it inherited.
  const std::string guard = "trap \"echo reached\" TERM; ";
  const ForkedResult result = runForked([&] {
    ::setsid();
    CancelFlag flag;
    const CancelSignals signals(flag);
    const pid_t inherited = ::fork();
    if (inherited == 0) ::execl("/bin/sh", "sh", "-c", (guard + kWait).c_str(), nullptr);
    ChildRunner runner;
    runner.pass(program("kill -TERM " + std::to_string(::getpid()) + "; " + kWait));
    ::kill(inherited, SIGKILL);
    return flag.isSet() ? 0 : 1;
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
}

TEST(SignalRelay, AStoppedProgramGoesOnToHeedTheSignal) {
  const std::string wake = "(sleep 0.2; kill -TERM $LAUNCHER) & ";
  EXPECT_EQ(launch(wake + program("trap \"echo got; exit 3\" TERM; kill -STOP $$; exit 9")),
            std::string("got\n3") + kCancelled);
}

TEST(SignalRelay, AStoppedShellGoesOnToSeeItsProgramEnd) {
  const std::string wake = "(sleep 0.2; kill -TERM $LAUNCHER) & ";
  EXPECT_EQ(launch(program("trap \"exit 3\" TERM; " + wake + "kill -STOP $PPID; " + kWait)),
            std::string("3") + kCancelled);
}

TEST(SignalRelay, DoesNotWaitForAWitnessThatIsStopped) {
  const std::string stopOthers =
      "for p in $(cat /proc/$LAUNCHER/task/$LAUNCHER/children); do "
      "[ $p = $PPID ] || kill -STOP $p; done; ";
  EXPECT_EQ(
      launch(program("trap \"exit 3\" TERM; " + stopOthers + "kill -TERM $LAUNCHER; " + kWait)),
      std::string("3") + kCancelled);
}

TEST(SignalRelay, AllAreIgnoredThatWereIgnored) {
  const ForkedResult result = runForked([&] {
    ::setsid();
    ::signal(SIGTERM, SIG_IGN);
    ::signal(SIGINT, SIG_IGN);
    CancelFlag flag;
    const CancelSignals signals(flag);
    const std::string launcher = std::to_string(::getpid());
    ChildRunner runner;
    const std::int32_t status =
        runner.pass(program("kill -TERM " + launcher + "; kill -INT 0; kill -TERM 0; exit 7"));
    return flag.isSet() ? 99 : status;
  });
  EXPECT_EQ(result.status, 7);
}

}  // namespace
}  // namespace vessant::test
