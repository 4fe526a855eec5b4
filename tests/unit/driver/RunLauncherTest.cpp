// The entry point: the launcher's name, the failure message and the exit status.

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/driver/LauncherMain.h"
#include "support/ProcessScope.h"
#include "support/StandardStreams.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kCannotOpen =
    "Unable to load the launcher file index. Cannot open launcher file.\n";

class RunLauncherTest : public testing::Test {
 protected:
  /// Calls the entry point with a program name and arguments; the printed text is then in `out`.
  int start(const std::string& name, const std::vector<std::string>& arguments = {}) {
    std::vector<const char*> all = {name.c_str()};
    for (const std::string& argument : arguments) all.push_back(argument.c_str());
    const int count = static_cast<int>(all.size());
    all.push_back(nullptr);
    const StdoutCapture capture;
    const int result = runLauncher(count, all.data(), run.state);
    out = capture.text();
    return result;
  }

  /// A launcher file whose program ends with `status` and writes "oops" as its error text.
  void makeProgram(int status, int modeByte, const std::string& error = "oops") {
    run.script({"ILAUNCH 10 0"})
        .launchScript("echo -n '" + error + "' >&2; exit " + std::to_string(status))
        .jvmFile(10, "DESC: Java\n")
        .file.modeByte(modeByte)
        .write(run.launcherFile);
    run.state.console.progressShown = false;
  }

  DriverRun run;
  std::string out;
};

TEST_F(RunLauncherTest, ReturnsTheResultOfTheScript) {
  makeProgram(7, 0);
  EXPECT_EQ(start(run.launcherFile), 7);
}

TEST_F(RunLauncherTest, PassesTheArgumentsWithoutTheProgramsName) {
  run.script({"// nothing"}).file.write(run.launcherFile);
  EXPECT_EQ(start(run.launcherFile, {"one", "", "-cp:a", "x", "two words"}), 0);
  EXPECT_THAT(texts(run.state.commandLineArguments),
              ElementsAre("one", "", "-cp:a", "x", "two words"));
  EXPECT_THAT(texts(run.state.passThroughArguments), ElementsAre("one", "", "two words"));
}

TEST_F(RunLauncherTest, TakesAnAbsoluteNameAsItStands) {
  const std::string odd = run.tree.path("app/../app/./setup.bin");
  run.script({"// nothing"}).file.write(run.launcherFile);
  EXPECT_EQ(start(odd), 0);
  EXPECT_EQ(run.state.launcherFileName, SString(odd));
  EXPECT_EQ(run.state.originalLauncherFileName, SString(odd));
}

TEST_F(RunLauncherTest, PutsTheCurrentDirectoryBeforeARelativeName) {
  for (const char* name : {"setup.bin", "./setup.bin", "../app/setup.bin"}) {
    const ScopedDirectory directory(run.tree.path("app"));
    EXPECT_EQ(start(name, {"-vs:version"}), 0);
    EXPECT_EQ(str(run.state.launcherFileName), run.tree.path("app") + "/" + name);
  }
}

TEST_F(RunLauncherTest, DoublesNoSeparatorInTheRootDirectory) {
  const ScopedDirectory directory("/");
  EXPECT_EQ(start("no-such-setup.bin", {"-vs:version"}), 0);
  EXPECT_EQ(run.state.launcherFileName, "/no-such-setup.bin");
}

TEST_F(RunLauncherTest, DoesNotSearchPath) {
  const std::string elsewhere = run.file.write(run.tree.path("app/launcher"));
  run.environment.set("PATH", run.tree.path("app"));
  const ScopedDirectory directory(run.tree.dir("work"));
  EXPECT_EQ(start("launcher"), -1);
  EXPECT_EQ(str(run.state.launcherFileName), run.tree.path("work/launcher"));
  EXPECT_EQ(out, kCannotOpen);
}

TEST_F(RunLauncherTest, KeepsARelativeNameWhereTheCurrentDirectoryIsGone) {
  const std::string gone = run.tree.dir("gone");
  const ScopedDirectory directory(gone);
  ASSERT_EQ(::rmdir(gone.c_str()), 0);
  EXPECT_EQ(start("setup.bin"), -1);
  EXPECT_EQ(run.state.launcherFileName, "setup.bin");
  EXPECT_EQ(out, kCannotOpen);
}

TEST_F(RunLauncherTest, KeepsARelativeNameWhereTheCurrentDirectoryIsTooLong) {
  const std::string part(200, 'd');
  std::string deep = "deep";
  for (int i = 0; i < 6; ++i) deep += "/" + part;
  const ScopedDirectory directory(run.tree.dir(deep));
  EXPECT_EQ(start("setup.bin", {"-vs:version"}), 0);
  EXPECT_EQ(run.state.launcherFileName, "setup.bin");
}

TEST_F(RunLauncherTest, StandsEvenWithoutAProgramsName) {
  const StdoutCapture capture;
  const char* const none[] = {nullptr};
  EXPECT_EQ(runLauncher(0, none, run.state), -1);
}

struct FailureMessage {
  int status;
  int modeByte;
  bool shown;
};

void PrintTo(const FailureMessage& row, std::ostream* out) {
  *out << "status " << row.status << ", mode " << row.modeByte;
}

class FailureMessageTest : public RunLauncherTest,
                           public testing::WithParamInterface<FailureMessage> {};

TEST_P(FailureMessageTest, IsShownUnlessTheUserLeftAWizard) {
  makeProgram(GetParam().status, GetParam().modeByte);
  EXPECT_EQ(start(run.launcherFile), GetParam().status);
  EXPECT_EQ(out, GetParam().shown ? "oops\n" : "");
  EXPECT_EQ(run.state.launchFailureMessage, "oops");
  EXPECT_EQ(run.state.lastTrailerByte, GetParam().modeByte);
}

INSTANTIATE_TEST_SUITE_P(StatusAndMode, FailureMessageTest,
                         testing::Values(FailureMessage{0, 0, false}, FailureMessage{0, 1, false},
                                         FailureMessage{232, 0, false},
                                         FailureMessage{232, 2, false},
                                         FailureMessage{232, 1, true}, FailureMessage{232, 3, true},
                                         FailureMessage{232, 255, true},
                                         FailureMessage{231, 0, true}, FailureMessage{233, 2, true},
                                         FailureMessage{1, 0, true}, FailureMessage{255, 2, true}));

/// A file of eight bytes carries nothing and is too short for a mode byte.
TEST_F(RunLauncherTest, ShowsTheFailureMessageOf232WhenThereIsNoModeByte) {
  const std::string shortFile = run.tree.file("app/short.bin", "12345678");
  const std::string in = run.inputFile(
      "ACTION: RUN_INSTRUCTIONS\n"
      "INSTRUCTIONS: " +
      run.tree.file("script.tag", "INSTRUCTIONS: LAUNCH " + run.tree.file("a.jvm") + " 0\n") +
      "\nLAUNCHSCRIPT: " + run.tree.file("l.tag", "COMMAND: echo -n oops >&2; exit 232\n") + "\n");
  run.state.console.progressShown = false;
  EXPECT_EQ(start(shortFile, {"-vs:in", in}), 232);
  EXPECT_EQ(run.state.lastTrailerByte, kNoModeByte);
  EXPECT_EQ(out, "oops\n");
}

TEST_F(RunLauncherTest, ShowsNoEmptyFailureMessage) {
  makeProgram(5, 0, "");
  EXPECT_EQ(start(run.launcherFile), 5);
  EXPECT_EQ(out, "");
}

TEST_F(RunLauncherTest, HidesTheFailureMessageInSilence) {
  makeProgram(5, 0);
  EXPECT_EQ(start(run.launcherFile, {"-vs:silent"}), 5);
  EXPECT_EQ(out, "");
}

TEST_F(RunLauncherTest, ShowsTheFailureMessageForAFailureOfItsOwn) {
  run.state.launchFailureMessage = "from before";
  EXPECT_EQ(start(run.tree.path("missing")), -1);
  EXPECT_EQ(out, std::string(kCannotOpen) + "from before\n");
}

TEST_F(RunLauncherTest, CleansUpBehindTheFailureMessage) {
  const std::string home = run.javaHome("jdk", "17");
  run.verificationClass().script({"VERIFY 0 0 10", "SET S2 = done", "GOTO nowhere"});
  run.jvmFile(10, "DESC: Java\nJVM_PROPERTIES: a=b\nJVM_EXE: bin/java\n")
      .file.write(run.launcherFile);
  EXPECT_EQ(start(run.launcherFile, {"-vs:javahome", home}), -1);
  EXPECT_EQ(run.s(2), "done");
  EXPECT_THAT(run.tempFiles(), IsEmpty());
}

TEST(UnexpectedFailure, IsToldInOneLine) {
  LauncherState state;
  const StdoutCapture capture;
  EXPECT_EQ(reportUnexpectedFailure(state), -1);
  EXPECT_EQ(capture.text(), "The launcher ended because of an unexpected internal failure.\n");
}

TEST(UnexpectedFailure, IsHiddenInSilence) {
  LauncherState state;
  state.console.silent = true;
  const StdoutCapture capture;
  EXPECT_EQ(reportUnexpectedFailure(state), -1);
  EXPECT_EQ(capture.text(), "");
}

}  // namespace
}  // namespace vessant::test
