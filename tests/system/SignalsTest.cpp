// A user who ends the launcher: it lets the running program end, clears its temporary files and
// tells how the run ended.

#include <csignal>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::EndsWith;

struct Signal {
  const char* name;
  int number;
};

void PrintTo(const Signal& signal, std::ostream* out) {
  *out << signal.name;
}

/// Who sends the signals knows when: the program that the launcher runs sends them to the launcher.
struct Signals : SystemTest {
  Signals() { environment["PATH"] = "/usr/bin:/bin"; }

  /// Runs the launcher with its process id in the variable LAUNCHER.
  ProcessResult runWithId(const std::string& before = "") {
    pack();
    return runCommand({"/bin/sh", "-c", before + "LAUNCHER=$$; export LAUNCHER; exec \"$0\" \"$@\"",
                       launcher, "-vs:tempdir", tempRoot, "-vs:log", logName()});
  }
  /// The Java of the JVM file does this before it answers.
  void addInstallerWithJava(const std::string& action, const std::string& command) {
    tree.program("java17/bin/java", "#!/bin/sh\n" + action + "\nprintf '1739021872\\n17.0.1\\n'\n");
    addScript({"FIND_JVM 0 0", "JMP0 @N1@ end", "LAUNCH \"@S2@\" 0", ":end"});
    addLaunchScript(command);
    addJvmFile("17.0.1", tag("PATH_HINT", tree.path("java17")));
    file.add(kApplicationArchive, 30, "app.zip", "archive\n");
  }
};

struct EndingSignal : Signals, ::testing::WithParamInterface<Signal> {
  std::string sent = std::string("kill -") + GetParam().name + " $LAUNCHER";
};

TEST_P(EndingSignal, LetsTheProgramEndAndCleansUp) {
  addInstallerWithJava(":", sent + "; cat %APPLICATION_ARCHIVE%(); exit 5");
  EXPECT_THAT(runWithId(), Ended(5, "Demo\narchive\n"));
}

TEST_P(EndingSignal, LetsACapturedProgramEndAndCleansUp) {
  addScript({"ILAUNCH 3 0"});
  addLaunchScript(sent + "; cat %APPLICATION_ARCHIVE%() >&2; exit 5", "");
  addJvmFile("17");
  file.add(kApplicationArchive, 30, "app.zip", "archive");
  EXPECT_THAT(runWithId(), Ended(5, "Demo\narchive\n"));
}

TEST_P(EndingSignal, DuringTheSearchStopsTheNextExtraction) {
  addInstallerWithJava(sent, "cat %APPLICATION_ARCHIVE%()");
  EXPECT_THAT(runWithId(), Ended(255, "Demo\nCanceled by the user.\n"));
  EXPECT_THAT(log(), EndsWith("ERROR: Canceled by the user.\n"));
}

TEST_P(EndingSignal, ForTheSecondTimeEndsTheLauncherAtOnce) {
  addInstallerWithJava("trap '' INT TERM HUP; while " + sent + " 2>/dev/null; do :; done", "");
  EXPECT_THAT(runWithId(), Ended(128 + GetParam().number, "Demo\n"));
  EXPECT_FALSE(tree.list("temp").empty());
  std::filesystem::remove_all(tempRoot);
  tree.dir("temp");
}

TEST_P(EndingSignal, ThatWasIgnoredStaysSo) {
  addInstallerWithJava(sent, sent + "; cat %APPLICATION_ARCHIVE%()");
  EXPECT_THAT(runWithId(std::string("trap '' ") + GetParam().name + "; "),
              Ended(0, "Demo\narchive\n"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, EndingSignal,
                         ::testing::Values(Signal{"INT", SIGINT}, Signal{"TERM", SIGTERM},
                                           Signal{"HUP", SIGHUP}),
                         [](const auto& parameter) { return parameter.param.name; });

TEST_F(Signals, OfAnotherKindEndTheProgramsAsUsual) {
  addInstallerWithJava(":", "kill -PIPE $$; echo not reached");
  EXPECT_THAT(runWithId(), Ended(0, "Demo\n"));
}

}  // namespace
}  // namespace vessant::test
