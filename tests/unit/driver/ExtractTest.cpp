// "-vs:extract": every embedded file and an input file that names them.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/ProcessScope.h"
#include "support/StandardStreams.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kCannotExtract = "Unable to extract embedded files from the launcher. ";

class ExtractTest : public testing::Test {
 protected:
  std::int32_t extract(const std::vector<std::string>& arguments = {"-vs:extract"}) {
    const ScopedDirectory directory(run.tree.dir("work"));
    return run.run(arguments);
  }
  [[nodiscard]] std::string extracted(const std::string& name) const {
    return readFile(run.tree.path("work/" + name));
  }

  DriverRun run;
};

TEST_F(ExtractTest, WritesEveryFileAndAnInputFile) {
  run.jvmFile(10, "DESC: A\n").script({"SET N5 = 1"}).launchScript("run");
  run.jvmFile(11, "DESC: B\n").jvmInstaller("exit 0\n").verificationClass();
  run.file.add(kApplicationArchive, 60, "app.jar", "archive")
      .add(kEmbeddedLauncher, 70, "inner", "launcher")
      .add(kClassPathArchive, 30, "cp.jar", "");
  EXPECT_EQ(extract(), 0);
  EXPECT_THAT(run.tree.list("work"),
              ElementsAre("app.jar", "cp.jar", "inner", "input.tag", "installer", "java10.jvm",
                          "java11.jvm", "launch.tag", "script.tag", "verify.jar"));
  EXPECT_EQ(extracted("java11.jvm"), "DESC: B\n");
  EXPECT_EQ(extracted("script.tag"), "INSTRUCTIONS:\n  SET N5 = 1\n/:\n");
  EXPECT_EQ(extracted("cp.jar"), "");
  EXPECT_EQ(extracted("input.tag"),
            "ACTION:  RUN_INSTRUCTIONS\n"
            "JVM:\n  java10.jvm\n  java11.jvm\n/:\n"
            "INSTRUCTIONS:  script.tag\n"
            "LAUNCHSCRIPT:  launch.tag\n");
  EXPECT_EQ(run.n(5), 0);
  EXPECT_EQ(run.state.console.progressCount, 100);
}

TEST_F(ExtractTest, NamesTheLastScriptOfAKind) {
  run.file.add(kScript, 1, "one.tag", "A: 1\n").add(kScript, 2, "two.tag", "A: 2\n");
  extract();
  EXPECT_EQ(extracted("input.tag"), "ACTION:  RUN_INSTRUCTIONS\nINSTRUCTIONS:  two.tag\n");
}

TEST_F(ExtractTest, WritesOnlyTheInputFileForALauncherWithoutFiles) {
  run.file.identification(1);
  EXPECT_EQ(extract(), 0);
  EXPECT_THAT(run.tree.list("work"), ElementsAre("input.tag"));
  EXPECT_EQ(extracted("input.tag"), "ACTION:  RUN_INSTRUCTIONS\n");
}

TEST_F(ExtractTest, ReplacesAnEarlierInputFile) {
  run.tree.file("work/input.tag", std::string(1000, 'x'));
  run.script({"// nothing"});
  extract();
  EXPECT_EQ(extracted("input.tag"), "ACTION:  RUN_INSTRUCTIONS\nINSTRUCTIONS:  script.tag\n");
}

TEST_F(ExtractTest, DoesNotReadTheFilesItWrites) {
  run.file.add(kScript, 1, "bad.tag", "no colon here\n");
  EXPECT_EQ(extract(), 0);
  EXPECT_EQ(extracted("bad.tag"), "no colon here\n");
}

TEST_F(ExtractTest, ShowsADotForEachFileAndEndsTheLine) {
  run.jvmFile(10, "A: 1\n").jvmFile(11, "A: 2\n");
  extract();
  EXPECT_EQ(run.out, "..\n");
}

TEST_F(ExtractTest, PrintsNothingInSilence) {
  run.jvmFile(10, "A: 1\n");
  EXPECT_EQ(extract({"-vs:silent", "-vs:extract"}), 0);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.tree.list("work"), ElementsAre("input.tag", "java10.jvm"));
}

TEST_F(ExtractTest, TellsThatTheLauncherFileCannotBeRead) {
  const std::string text = "Unable to load the launcher file index. Cannot open launcher file.";
  const ScopedDirectory directory(run.tree.dir("work"));
  LauncherMain launcher(run.state);
  const StdoutCapture capture;
  EXPECT_EQ(launcher.run(ArgumentList({"-vs:extract"}), "/no/such/launcher"), -1);
  EXPECT_EQ(capture.text(), text + "\n");
  EXPECT_THAT(run.log(), HasSubstr(errorLine(text)));
  EXPECT_THAT(run.tree.list("work"), ElementsAre());
}

TEST_F(ExtractTest, TellsThatAFileCannotBeWritten) {
  run.file.add(kClassPathArchive, 30, "no/such/directory/cp.jar", "x");
  EXPECT_EQ(extract(), -1);
  const std::string text = std::string(kCannotExtract) +
                           "Error writing file = 2 There may not be enough temporary disk space. "
                           "Try using -vs:tempdir to use a temporary directory on a partition with "
                           "more disk space.";
  EXPECT_EQ(run.out, text + "\n");
  EXPECT_THAT(run.log(), HasSubstr(errorLine(text)));
  EXPECT_THAT(run.tree.list("work"), Not(testing::Contains("input.tag")));
}

TEST_F(ExtractTest, TellsThatTheUserCanceled) {
  run.jvmFile(10, "A: 1\n");
  run.state.cancelFlag.set();
  EXPECT_EQ(extract(), -1);
  EXPECT_EQ(run.out, std::string(kCannotExtract) + "Canceled by the user.\n");
}

TEST_F(ExtractTest, MakesFilesThatRunTheSameFlow) {
  run.script({"SET N5 = 7"}).launchScript("run", "DESC: Product\n").jvmFile(10, "DESC: A\n");
  ASSERT_EQ(extract(), 0);
  DriverRun plain;
  const ScopedDirectory directory(run.tree.path("work"));
  EXPECT_EQ(plain.run({"-vs:in", "input.tag"}), 0);
  EXPECT_EQ(plain.n(5), 7);
  EXPECT_EQ(plain.state.console.uiTitle, "Product");
}

}  // namespace
}  // namespace vessant::test
