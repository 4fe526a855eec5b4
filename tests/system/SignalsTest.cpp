// A user, a terminal or a supervisor who ends the launcher: at whatever it is, it lets the running
// program end, starts nothing more, clears its temporary files and tells how the run ended.

#include <csignal>

#include "support/RunningProcess.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kCancelled = "Canceled by the user.\n";

/// A program's wait for what comes; one that waits in vain fails the test.
const std::string kWait = "i=0; while [ $i -lt 500 ]; do sleep 0.02; i=$((i+1)); done; exit 99";

struct Signal {
  const char* name;
  int number;
};

void PrintTo(const Signal& signal, std::ostream* out) {
  *out << signal.name;
}

/// Who sends the signals knows when: the program that the launcher runs sends them, or the test
/// when it has read what the program shows.
struct Signals : SystemTest {
  Signals() { environment["PATH"] = "/usr/bin:/bin"; }

  /// Runs the launcher with its process id in the variable LAUNCHER.
  ProcessResult runWithId(const std::string& before = "") {
    pack();
    return runCommand({"/bin/sh", "-c", before + "LAUNCHER=$$; export LAUNCHER; exec \"$0\" \"$@\"",
                       launcher, "-vs:tempdir", tempRoot, "-vs:log", logName()});
  }
  /// The launcher as a test talks to it.
  ProcessRequest request() {
    pack();
    return {.command = {launcher, "-vs:tempdir", tempRoot, "-vs:log", logName()},
            .environment = environment,
            .directory = startDirectory};
  }
  /// A command that runs a script of another program's, whose "$0" is a file of the launcher's.
  static std::string program(const std::string& steps) {
    return "sh -c '" + steps + "' %APPLICATION_ARCHIVE%()";
  }
  /// The Java of the JVM file does this before it answers. Behind the launch stands another one.
  void addInstallerWithJava(const std::string& action, const std::string& command,
                            const std::string& more = "DISPLAY_CONSOLE: 1\n") {
    tree.program("java17/bin/java", "#!/bin/sh\n" + action + "\nprintf '1739021872\\n17.0.1\\n'\n");
    addScript(script);
    addLaunchScript(command, more);
    addJvmFile("17.0.1", tag("PATH_HINT", tree.path("java17")));
    file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  }
  void addProgram(const std::string& steps) { addInstallerWithJava(":", program(steps)); }

  std::vector<std::string> script = {"FIND_JVM 0 0", "JMP0 @N1@ end", "LAUNCH \"@S2@\" 0", ":end"};
};

struct EndingSignal : Signals, ::testing::WithParamInterface<Signal> {
  std::string number = std::to_string(GetParam().number);
  std::string sent = "kill -" + number + " $LAUNCHER; ";
  std::string hook = "trap \"sleep 0.1; cat $0; exit 5\" " + number + "; ";
};

TEST_P(EndingSignal, LetsTheProgramPutItsThingsInOrder) {
  addProgram(hook + sent + kWait);
  EXPECT_THAT(runWithId(), Ended(255, std::string("Demo\narchive\n") + kCancelled));
  EXPECT_THAT(log(), EndsWith(std::string("ERROR: ") + kCancelled));
}

TEST_P(EndingSignal, EndsAProgramThatDoesNotKnowIt) {
  addProgram(sent + kWait);
  const ProcessResult result = runWithId();
  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.out, std::string("Demo\n") + kCancelled);
}

TEST_P(EndingSignal, LetsACapturedProgramEnd) {
  addInstallerWithJava(":", program(hook + sent + kWait), "");
  EXPECT_THAT(runWithId(), Ended(255, std::string("Demo\n") + kCancelled));
  EXPECT_THAT(log(), HasSubstr("StdOut:\narchive\n"));
}

TEST_P(EndingSignal, StartsNoFurtherProgram) {
  script = {"FIND_JVM 0 0", "LAUNCH \"@S2@\" 0", "LAUNCH \"@S2@\" 0"};
  addProgram(hook + sent + kWait);
  EXPECT_THAT(runWithId(), Ended(255, std::string("Demo\narchive\n") + kCancelled));
}

TEST_P(EndingSignal, DuringTheSearchEndsTheCandidateAndTheRun) {
  addInstallerWithJava(sent + kWait, "echo not reached");
  EXPECT_THAT(runWithId(), Ended(255, std::string("Demo\n") + kCancelled));
}

TEST_P(EndingSignal, DuringAnInstallationEndsIt) {
  addScript({"INSTALL_JVM 0", "INSTALL_JVM 0"});
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\n" + sent + kWait + "\n");
  EXPECT_THAT(runWithId(), Ended(255, kCancelled));
}

TEST_P(EndingSignal, EndsAScriptThatGoesRoundInACircle) {
  script = {"INITIALIZE_UI", ":again", "SET N1 = 1", "GOTO again"};
  addInstallerWithJava(":", "echo not reached");
  RunningProcess process(request(), RunningProcess::Console::Pipe);
  ASSERT_TRUE(process.readUntil("Initializing Demo..."));
  process.send(GetParam().number);
  EXPECT_EQ(process.wait(), 255);
  EXPECT_THAT(process.output(), EndsWith(kCancelled));
}

TEST_P(EndingSignal, ShowsNothingOfACapturedProgramBehindIt) {
  addInstallerWithJava(
      ":", program("trap \"echo interrupted >&2; exit 5\" " + number + "; " + sent + kWait), "");
  EXPECT_THAT(runWithId(), Ended(255, std::string("Demo\n") + kCancelled));
  EXPECT_THAT(log(), HasSubstr("ErrOut:\ninterrupted\n"));
}

TEST_P(EndingSignal, DuringAnInstallationThatAnInputFileNamesEndsIt) {
  const std::string installer = tree.program("installer", "#!/bin/sh\n" + sent + kWait + "\n");
  const std::string inputFile =
      tree.file("input.tag", tag("ACTION", "INSTALL_JVM") + tag("INSTALL_JVM_EXE", installer) +
                                 tag("INSTALL_JVM_DEST", tree.dir("destination")));
  pack();
  const ProcessResult result =
      runCommand({"/bin/sh", "-c", "LAUNCHER=$$; export LAUNCHER; exec \"$0\" \"$@\"", launcher,
                  "-vs:in", inputFile});
  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.out, kCancelled);
}

TEST_P(EndingSignal, WorksAtOnceWhileAQuestionIsAsked) {
  addScript({"INSTALL_JVM 2", "INSTALL_JVM 2"});
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\n");
  RunningProcess process(request(), RunningProcess::Console::Pipe);
  ASSERT_TRUE(process.readUntil("Supply the destination"));
  process.send(GetParam().number);
  EXPECT_EQ(process.wait(), 255);
  EXPECT_THAT(process.output(), EndsWith(kCancelled));
}

TEST_P(EndingSignal, WorksAtOnceWhileNobodyReadsTheOutput) {
  script = {"FIND_JVM 0 0", "INITIALIZE_UI", "FIND_JVM 1 1", "FIND_JVM 1 1"};
  addInstallerWithJava(":", "echo not reached");
  RunningProcess process(request(), RunningProcess::Console::FullPipe);
  while (!std::filesystem::exists(logName())) {
  }
  process.send(GetParam().number);
  EXPECT_EQ(process.wait(), 255);
}

TEST_P(EndingSignal, ForTheSecondTimeEndsTheLauncherAtOnce) {
  addProgram("trap \"" + sent + "exit\" " + number + "; " + sent + kWait);
  EXPECT_EQ(runWithId().status, 128 + GetParam().number);
  EXPECT_FALSE(tree.list("temp").empty());
  std::filesystem::remove_all(tempRoot);
  tree.dir("temp");
}

TEST_P(EndingSignal, ThatWasIgnoredStaysSo) {
  addInstallerWithJava(sent, sent + "cat %APPLICATION_ARCHIVE%()");
  EXPECT_THAT(runWithId("trap '' " + number + "; "), Ended(0, "Demo\narchive\n"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, EndingSignal,
                         ::testing::Values(Signal{"INT", SIGINT}, Signal{"TERM", SIGTERM},
                                           Signal{"HUP", SIGHUP}, Signal{"USR1", SIGUSR1},
                                           Signal{"USR2", SIGUSR2}, Signal{"ALRM", SIGALRM},
                                           Signal{"STKFLT", SIGSTKFLT}, Signal{"XCPU", SIGXCPU},
                                           Signal{"VTALRM", SIGVTALRM}, Signal{"PROF", SIGPROF},
                                           Signal{"IO", SIGIO}, Signal{"PWR", SIGPWR},
                                           Signal{"RTMIN", SIGRTMIN}, Signal{"RTMAX", SIGRTMAX}),
                         [](const auto& parameter) { return parameter.param.name; });

struct ToTheGroup : EndingSignal {};

/// A supervisor or a terminal that goes: the shell of the command dies at once.
TEST_P(ToTheGroup, WaitsForTheProgramAllTheSame) {
  addProgram(hook + "kill -" + number + " 0; " + kWait);
  EXPECT_THAT(runWithId(), Ended(255, std::string("Demo\narchive\n") + kCancelled));
}

INSTANTIATE_TEST_SUITE_P(Numbers, ToTheGroup,
                         ::testing::Values(Signal{"TERM", SIGTERM}, Signal{"HUP", SIGHUP}),
                         [](const auto& parameter) { return parameter.param.name; });

struct Terminal : Signals {
  /// What a user sees who types this when the program has said that it is ready.
  int typeAt(const std::string& keys) {
    RunningProcess process(request(), RunningProcess::Console::Terminal);
    if (!process.readUntil("ready")) return -1;
    process.type(keys);
    const int status = process.wait();
    shown = process.output();
    return status;
  }
  std::string shown;
};

TEST_F(Terminal, LeavesCtrlCToAProgramThatSurvivesIt) {
  addProgram("trap \"echo got; cat $0; exit 7\" INT; echo ready; " + kWait);
  EXPECT_EQ(typeAt("\x03"), 7);
  EXPECT_THAT(shown, HasSubstr("got\r\narchive"));
  EXPECT_THAT(shown, Not(HasSubstr("got\r\narchive\r\ngot")));
}

TEST_F(Terminal, GoesOnBehindAProgramThatSurvivesCtrlC) {
  script = {"FIND_JVM 0 0", "LAUNCH \"@S2@\" 0", "INVALID"};
  addProgram("trap \"exit 0\" INT; echo ready; " + kWait);
  EXPECT_EQ(typeAt("\x03"), 255);
  EXPECT_THAT(shown, HasSubstr("Invalid command (INVALID)"));
}

TEST_F(Terminal, EndsTheRunWithAProgramThatDiesOfCtrlC) {
  addProgram("echo ready; " + kWait);
  EXPECT_EQ(typeAt("\x03"), 255);
  EXPECT_THAT(shown, HasSubstr("Canceled by the user."));
}

TEST_F(Terminal, EndsTheRunWithAProgramThatTellsItsDeathByCtrlC) {
  addProgram("trap \"exit 130\" INT; echo ready; " + kWait);
  EXPECT_EQ(typeAt("\x03"), 255);
}

TEST_F(Terminal, LeavesTheRequestForAThreadDumpToTheProgram) {
  addProgram("trap \"echo dump; exit 7\" QUIT; echo ready; " + kWait);
  EXPECT_EQ(typeAt("\x1C"), 7);
  EXPECT_THAT(shown, HasSubstr("dump"));
}

TEST_F(Terminal, EndsTheQuestionAtCtrlC) {
  addScript({"INSTALL_JVM 2"});
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\n");
  RunningProcess process(request(), RunningProcess::Console::Terminal);
  ASSERT_TRUE(process.readUntil("Supply the destination"));
  process.type("\x03");
  EXPECT_EQ(process.wait(), 255);
}

TEST_F(Signals, DoNotStopASupervisedRunFromTellingOfADeadProgram) {
  addProgram("kill -KILL $$");
  EXPECT_EQ(runWithId().status, 137);
}

TEST_F(Signals, OfAnotherKindEndTheProgramsAsUsual) {
  addInstallerWithJava(":", "kill -PIPE $$; echo not reached");
  EXPECT_THAT(runWithId(), Ended(0, "Demo\n"));
}

}  // namespace
}  // namespace vessant::test
