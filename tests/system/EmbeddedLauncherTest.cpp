// A launcher that carries a second launcher and hands the run over to it.

#include <algorithm>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

constexpr std::uint32_t kInnerId = 7;
constexpr const char* kNotExecuted = "ERROR: Unable to execute the embedded launcher.";

struct EmbeddedLauncher : SystemTest {
  /// The outer launcher, which hands over first and launches with Java 17 afterwards.
  void addOuter(const std::string& command = std::string(kPrintArguments)) {
    addScript({"EXECUTE_LAUNCHER 7", "FIND_JVM 0 0", "LAUNCH \"@S2@\" 0"});
    addLaunchScript(command);
    addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  }
  /// A real second launcher with files of its own, which must not be used.
  static LauncherFileBuilder inner() {
    LauncherFileBuilder result;
    result.launcherStub()
        .add(kScript, 1, "inner.script", tagBlock("INSTRUCTIONS", {"INNER_SCRIPT"}))
        .add(kApplicationArchive, 2, "inner.zip", "inner archive\n");
    return result;
  }
  void addInner(int mode = 0) {
    const std::string bytes = inner().modeByte(mode).bytes();
    file.add(kEmbeddedLauncher, kInnerId, "inner.bin", bytes);
    handedOver = "Demo\n" + dotsOfExtraction(bytes.size()) + "Demo\n";
  }
  /// A dot for each chunk; 35 of them fill a line.
  static std::string dotsOfExtraction(std::size_t size) {
    constexpr std::size_t kChunk = 61439;
    constexpr std::size_t kDotsOfALine = 35;
    std::string dots;
    for (std::size_t count = 1; (count - 1) * kChunk < size; ++count) {
      dots += count % kDotsOfALine == 0 ? ".\n" : ".";
    }
    return dots;
  }

  /// What is shown until the inner launcher runs the script: the titles of both, and the dots.
  std::string handedOver;
};

TEST_F(EmbeddedLauncher, RunsTheOuterFilesWithTheOuterArguments) {
  addOuter();
  addInner();
  EXPECT_THAT(runLogged({"two words", "-foo", "-console"}),
              Ended(0, handedOver + "<two words>\n<-foo>\n<-console>\n"));
  EXPECT_TRUE(std::filesystem::exists(launcher));
  // Both wrote into the one log; the inner one did not start itself again.
  const std::vector<std::string> lines = logLines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "------------------"), 2);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), kNotExecuted), 1);
}

TEST_F(EmbeddedLauncher, PassesTheExitStatusOn) {
  addOuter("exit");
  addInner();
  EXPECT_THAT(run({"42"}), Ended(42, handedOver));
}

TEST_F(EmbeddedLauncher, RunsWhereItIsAndReadsFromTheOuterFile) {
  addOuter("pwd; echo %LAUNCHER_FILE%(); echo %LAUNCHER_DIR%(); cat %APPLICATION_ARCHIVE%()");
  addInner();
  file.add(kApplicationArchive, 30, "outer.zip", "outer archive\n");
  environment["PATH"] = "/usr/bin:/bin";
  const ProcessResult result = run();
  const std::string directory = tempRoot + "/vsj";
  EXPECT_EQ(maskTempNames(result.out), handedOver + directory + "\n" + directory + "/inner.bin\n" +
                                           tree.path("app") + "\nouter archive\n");
}

TEST_F(EmbeddedLauncher, ReadsTheSideFilesOfTheOuterOne) {
  addOuter("echo %RUNTIME_JAVAARGS%()");
  addInner();
  tree.file("app/setup.ja", "-Xmx64m\n");
  EXPECT_THAT(run(), Ended(0, handedOver + "-Xmx64m\n"));
}

TEST_F(EmbeddedLauncher, TakesTheModeByteOfItsOwnFile) {
  addScript({"EXECUTE_LAUNCHER 7", "FIND_JVM 0 0", "LAUNCH \"@S2@\" 0"});
  addLaunchScript(kJavaCommand, "");
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  file.modeByte(0);
  addInner(1);
  EXPECT_THAT(run({"--exit=232"}), Ended(232, handedOver + "program error\n\n"));
}

TEST_F(EmbeddedLauncher, LooksForRelativeHintsWhereItIs) {
  addScript({"EXECUTE_LAUNCHER 7", "FIND_JVM 0 1"});
  addLaunchScript(kPrintArguments);
  javaHome("app/jre", "17.0.1");
  addJvmFile("17.0.1", "PATH_HINT: jre\n");
  addInner();
  EXPECT_THAT(runLogged(), Ended(0, handedOver + std::string(kNoJvmFound)));
  EXPECT_THAT(maskTempNames(log()),
              HasSubstr("Check path hint Relative " + tempRoot + "/vsj/jre\n"));
}

TEST_F(EmbeddedLauncher, GetsArgumentsWithQuotesAsTheCommandLineIsSplit) {
  addOuter();
  addInner();
  // The quote inside an argument is not escaped, and an empty argument is dropped.
  EXPECT_THAT(run({"two words", "", "a\"b", "end"}),
              Ended(0, handedOver + "<two words>\n<a>\n<b end>\n"));
}

TEST_F(EmbeddedLauncher, StartsFromAPathWithBlanks) {
  launcher = tree.path("my app/my setup.bin");
  tree.dir("my app");
  addOuter("echo %LAUNCHER_DIR%()");
  addInner();
  EXPECT_THAT(run(), Ended(0, handedOver + tree.path("my app") + "\n"));
}

TEST_F(EmbeddedLauncher, GoesAwayFromTheSystemsTempDirectoryToo) {
  environment["TMPDIR"] = tree.dir("system-temp");
  addOuter("pwd");
  addInner();
  EXPECT_EQ(maskTempNames(run().out), handedOver + tree.path("system-temp") + "/vsj\n");
  EXPECT_THAT(tree.list("system-temp"), ::testing::IsEmpty());
}

TEST_F(EmbeddedLauncher, LeavesWhatTheOuterOneHadMadeBefore) {
  // The outer process is replaced, not ended: nobody is left to clean up after it.
  addScript({"FIND_JVM 0 0", "EXECUTE_LAUNCHER 7", "LAUNCH \"@S2@\" 0"});
  addLaunchScript(kPrintArguments);
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  addInner();
  // The search has turned the display off: no dots.
  EXPECT_THAT(run({"last"}), Ended(0, "Demo\nDemo\n<last>\n"));
  EXPECT_EQ(tree.list("temp").size(), 3U);  // the JVM file, and the verifier in its directory
  std::filesystem::remove_all(tempRoot);
  tree.dir("temp");
}

TEST_F(EmbeddedLauncher, ThatCannotStartLeavesTheRunToTheOuterOne) {
  addOuter();
  file.add(kEmbeddedLauncher, kInnerId, "inner.bin", "#!/no/such/interpreter\n");
  EXPECT_THAT(runLogged({"last"}), Ended(0, "Demo\n.<last>\n"));
  EXPECT_THAT(logLines(), Contains(kNotExecuted).Times(1));
}

TEST_F(EmbeddedLauncher, ThatIsNotThereLeavesTheRunToTheOuterOne) {
  addOuter();
  EXPECT_THAT(runLogged({"last"}), Ended(0, "Demo\n<last>\n"));
  EXPECT_THAT(logLines(), Contains(kNotExecuted).Times(1));
}

TEST_F(EmbeddedLauncher, ThatIsAFileOfAnotherTypeIsNotRun) {
  addOuter();
  file.add(kApplicationArchive, kInnerId, "inner.bin", inner().bytes());
  EXPECT_THAT(runLogged({"last"}), Ended(0, "Demo\n<last>\n"));
  EXPECT_THAT(logLines(), Contains(kNotExecuted).Times(1));
}

TEST_F(EmbeddedLauncher, GetsTheOptionsOfTheOuterOne) {
  addOuter("echo %CP%()");
  addInner();
  EXPECT_THAT(run({"-vs:silent", "-cp:p", "first.jar"}), Ended(0, "-cp first.jar:\n"));
}

}  // namespace
}  // namespace vessant::test
