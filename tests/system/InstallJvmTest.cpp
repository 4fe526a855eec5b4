// Installing the JVM that the launcher carries, in all modes, and running the program with it.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* kPreparing = "\nPreparing Java(tm) Virtual Machine...\n";
constexpr const char* kQuestion =
    "Supply the destination directory for the Java Virtual Machine:\n";

struct InstallJvm : SystemTest {
  InstallJvm() { environment["PATH"] = "/usr/bin:/bin"; }

  /// An installer that unpacks a Java into the current directory. `jvmHome` goes into its JVM file.
  static std::string installer(const std::string& jvmHome = "", const std::string& more = "") {
    const std::string unpack =
        "#!/bin/sh\n"
        "echo installing\n"
        "mkdir -p jre/bin\n"
        "cat > jre/bin/java <<'END'\n"
        "#!/bin/sh\n"
        "echo \"Java at $0 with JAVA_HOME=$JAVA_HOME\"\n"
        "END\n"
        "chmod +x jre/bin/java\n"
        "cat > jvm <<'END'\n";
    return unpack + jvmFileText("17", jvmHome) + "END\n" + more;
  }
  /// Installs in this mode, launches with the installed JVM and shows what N1 and S1 hold.
  void addInstallation(const std::string& mode, const std::string& installerText) {
    addScript({"INSTALL_JVM " + mode, "JMP0 @N1@ end", "LAUNCH \"@S1@\" 0", ":end"});
    addLaunchScript("\"@JVM_HOME@/@JVM_EXE@\" \"@JVM_FILE@\"; cat \"@JVM_FILE@\"");
    file.add(kJvmInstaller, 9, "install-java.sh", installerText);
  }
  /// The JVM file as the launcher writes it.
  static std::string writtenJvmFile(const std::string& home, const std::string& path,
                                    const std::string& temporary) {
    return "DESC:  Java 17\nJVM_PROPERTIES:  java.version=17\nJVM_EXE:  bin/java\n"
           "CLASSPATH:  \"-cp \"\nCLASSPATH_SEPARATOR:  :\nSYSTEM:  -D\nSYSTEM_SEPARATOR:  =\n"
           "JVM_HOME:  " +
           home + "\nJVM_FILE:  " + path + "\nJVM_TEMP:  " + temporary + "\n";
  }
  static std::string javaOutput(const std::string& home) {
    return "Java at " + home + "/bin/java with JAVA_HOME=" + home + "\n";
  }
};

TEST_F(InstallJvm, QuietlyIntoATemporaryDirectory) {
  addInstallation("0", installer("JVM_HOME: jre\n"));
  const std::string directory = tempRoot + "/vsj";
  const ProcessResult result = runLogged();
  EXPECT_EQ(maskTempNames(result.out),
            "Demo\n" + javaOutput(directory + "/jre") +
                writtenJvmFile(directory + "/jre", directory + "/jvm", "1"));
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(log(), Not(HasSubstr("installing")));
}

TEST_F(InstallJvm, WithProgressIntoATemporaryDirectory) {
  addInstallation("1", installer("JVM_HOME: jre\n"));
  const std::string directory = tempRoot + "/vsj";
  const ProcessResult result = run();
  // One dot for the installer's only chunk, one for what it wrote.
  EXPECT_EQ(maskTempNames(result.out),
            std::string("Demo\n") + kPreparing + ".." + javaOutput(directory + "/jre") +
                writtenJvmFile(directory + "/jre", directory + "/jvm", "1"));
}

TEST_F(InstallJvm, WhereTheUserSaysAndLeavesItThere) {
  addInstallation("2", installer("JVM_HOME: jre\n"));
  const std::string directory = tree.dir("chosen");
  input = directory + " and more";
  EXPECT_THAT(run(), Ended(0, std::string("Demo\n") + kPreparing + kQuestion + ".." +
                                  javaOutput(directory + "/jre") +
                                  writtenJvmFile(directory + "/jre", directory + "/jvm", "0")));
  // The installer itself is gone.
  EXPECT_THAT(tree.list("chosen"), ElementsAre("jre", "jre/bin", "jre/bin/java", "jvm"));
}

TEST_F(InstallJvm, CountsARelativeAnswerFromWhereTheLauncherIsStarted) {
  addInstallation("2", installer("JVM_HOME: jre\n"));
  tree.dir("elsewhere/chosen");
  input = "\n  chosen/\n";
  const ProcessResult result = run();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr(javaOutput(startDirectory + "/chosen/jre")));
}

TEST_F(InstallJvm, TellsOfADirectoryThatIsNotThere) {
  addInstallation("2", installer());
  input = tree.path("missing");
  EXPECT_THAT(run(), Ended(255, std::string("Demo\n") + kPreparing + kQuestion +
                                    "No such file or directory\n"));
}

TEST_F(InstallJvm, DoesNothingWithoutAnAnswer) {
  addInstallation("2", installer());
  EXPECT_THAT(run(), Ended(0, std::string("Demo\n") + kPreparing + kQuestion + "\n"));
}

TEST_F(InstallJvm, AsksNothingInSilence) {
  addInstallation("2", installer());
  input = tree.dir("chosen");
  EXPECT_THAT(run({"-vs:silent"}), Ended(0, ""));
  EXPECT_THAT(tree.list("chosen"), IsEmpty());
}

TEST_F(InstallJvm, TakesTheDestinationForAHomeThatTheJvmFileDoesNotName) {
  addInstallation("0",
                  "#!/bin/sh\nmkdir bin\nprintf '#!/bin/sh\\necho found' > bin/java\n"
                  "chmod +x bin/java\ncat > jvm <<'END'\n" +
                      jvmFileText("17") + "END\n");
  const std::string directory = tempRoot + "/vsj";
  EXPECT_EQ(maskTempNames(run().out),
            "Demo\nfound\n" + writtenJvmFile(directory, directory + "/jvm", "1"));
}

TEST_F(InstallJvm, LeavesAnAbsoluteHomeAsItIs) {
  const std::string home = javaHome("system java", "17");
  addInstallation("0", installer(tag("JVM_HOME", home)));
  const ProcessResult result = run();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("\nJAVA_HOME=" + home + "\n"));
}

TEST_F(InstallJvm, LogsAnInstallerThatBringsNoJvmFile) {
  addInstallation("0", "#!/bin/sh\necho nothing here\n");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n"));
  EXPECT_THAT(logLines(), Contains("ERROR: Invalid bundled JVM. Missing 'jvm' file."));
}

TEST_F(InstallJvm, DoesNotMindTheInstallersStatus) {
  addInstallation("0", installer("JVM_HOME: jre\n", "exit 9\n"));
  EXPECT_THAT(run().out, HasSubstr("Java at "));
}

TEST_F(InstallJvm, EndsWithADamagedJvmFile) {
  addInstallation("0", "#!/bin/sh\necho no tags > jvm\n");
  const ProcessResult result = runLogged();
  EXPECT_EQ(maskTempNames(result.out), "Demo\nSyntax error in " + tempRoot +
                                           "/vsj/jvm at line 1 ==> Missing colon at the end of the "
                                           "tag name.\n");
  EXPECT_EQ(result.status, 255);
}

TEST_F(InstallJvm, UsesTheFirstInstallerThatIsPacked) {
  addInstallation("0", "#!/bin/sh\nexit\n");
  file.add(kJvmInstaller, 10, "second.sh", installer("JVM_HOME: jre\n"));
  EXPECT_THAT(run(), Ended(0, "Demo\n"));
}

TEST_F(InstallJvm, RunsTheInstallerInItsDirectoryWithBlanksInItsName) {
  tree.dir("elsewhere/destination");
  input = "destination";
  addScript({"INSTALL_JVM 2"});
  file.add(kJvmInstaller, 9, "my installer", "#!/bin/sh\npwd > " + tree.path("where") + "\n");
  EXPECT_EQ(run().status, 0);
  EXPECT_EQ(readFile(tree.path("where")), startDirectory + "/destination\n");
}

TEST_F(InstallJvm, ThatWillExpandToMoreThanFitsIsTold) {
  constexpr std::uintmax_t kMuch = std::uintmax_t{1} << 40;
  if (std::filesystem::space(tempRoot).available > kMuch) GTEST_SKIP() << "the disk is too large";
  addScript({"INSTALL_JVM 0"});
  file.addExpanding(kJvmInstaller, 9, "installer", installer(), 0x7FFFFFFEU, 0x7FFFFFF0U);
  EXPECT_THAT(run(), Ended(255,
                           "Error writing file =  There may not be enough temporary disk space. "
                           "Try using -vs:tempdir to use a temporary directory on a partition "
                           "with more disk space.\n"));
}

}  // namespace
}  // namespace vessant::test
