// The real vspack explain, on a machine of the test's own: what it says, to the letter, and that
// nothing happens.

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/BuildPaths.h"
#include "support/FakeJavaHome.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessRunner.h"
#include "support/RunningProcess.h"
#include "support/TempTree.h"
#include "unit/packer/check/JarBuilder.h"

namespace vessant::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kStatements =
    "INSTRUCTIONS:\n"
    "  // Find or tell.\n"
    "  INITIALIZE_UI\n"
    "  FIND_JVM 1 0\n"
    "  JMP0 @N1@ none\n"
    "  LAUNCH \"@S2@\" 1\n"
    "  GOTO end\n"
    "  :none\n"
    "  ILAUNCH 30 0\n"
    "  :end\n"
    "/:\n";

constexpr const char* kLaunch =
    "DESC: Hello\n"
    "COMMAND: @NO_JAVA@ \"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_SYSTEMPROP%() #WORD# Main\n";

constexpr const char* kMessage = "DESC: No Java\nNO_JAVA: echo none; exit 3;\n";

class ExplainTest : public testing::Test {
 protected:
  ExplainTest() {
    makeFakeJavaHome(tree, "jdk17", {{"java.version", "17.0.2"}, {"java.vendor", "me"}});
    makeFakeJavaHome(tree, "jdk8", {{"java.version", "1.8.0"}, {"java.vendor", "me"}});
    tree.file("broken/bin/java", "not executable");
    tree.dir("tmp");
    setup.modeByte(0);
    jvmFile =
        "DESC: Java 17\n"
        "JVM_PROPERTIES:\n  java.version=17...\n  java.vendor=me\n/:\n"
        "JVM_EXE: bin/java\n"
        "PLATFORM_HINT: MY_JAVA\n"
        "PATH_HINT:\n  jre\n  " +
        tree.path("jdk8") + "\n  " + tree.path("broken") + "\n  " + tree.path("jdk17") +
        "\n/:\n"
        "CLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\nSYSTEM: \"-D\"\n"
        "SYSTEM_SEPARATOR: \"=\"\nSET_ENV_FOR_WIZARD: COLOR=blue\n";
  }

  void build() {
    setup.add(FileKind::kScript, 1, "setup.instructions", kStatements);
    setup.add(kLaunchScript, 2, "setup.launch", kLaunch);
    setup.add(kVerificationClass, 3, "verify.jar", "a jar");
    setup.add(kClassPathArchive, 4, "app.jar", "a jar");
    setup.add(kJvmFile, 17, "java.jvm", jvmFile);
    setup.add(kJvmFile, 30, "no-java.jvm", kMessage);
    setup.write(tree.path("setup.bin"));
  }

  ProcessRequest requestFor(const std::vector<std::string>& more) {
    std::vector<std::string> command = {kVspack, "explain", tree.path("setup.bin")};
    command.insert(command.end(), more.begin(), more.end());
    ProcessRequest request{command};
    request.environment = {{"PATH", tree.path("none") + ":/bin"},
                           {"LANG", "C"},
                           {"TMPDIR", tree.path("tmp")},
                           {"WORD", "word"},
                           {"MY_JAVA", tree.path("gone")}};
    return request;
  }

  ProcessResult explain(const std::vector<std::string>& more = {}) {
    ProcessResult result = runProcess(requestFor(more));
    result.out = std::regex_replace(result.out, std::regex(tree.root()), "TREE");
    return result;
  }

  TempTree tree;
  LauncherFileBuilder setup;
  std::string jvmFile;
};

/// A Java that tells its process id through a pipe when it is asked, and then does not answer.
class InterruptedTryTest : public ExplainTest, public testing::WithParamInterface<int> {
 protected:
  InterruptedTryTest() {
    const std::string pipe = tree.path("pipe");
    EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string java =
        tree.file("slow/bin/java", "#!/bin/sh\necho $$ > " + pipe + "\nexec sleep 60\n");
    std::filesystem::permissions(java, std::filesystem::perms::owner_all);
    build();
  }

  pid_t idOfJava() {
    pid_t id = 0;
    std::ifstream(tree.path("pipe")) >> id;
    return id;
  }
};

TEST_P(InterruptedTryTest, LeavesNeitherTheVerificationClassNorAChild) {
  RunningProcess run(requestFor({"--try", "--java-home", tree.path("slow")}),
                     RunningProcess::Console::Pipe);
  const pid_t java = idOfJava();
  ASSERT_GT(java, 0);
  EXPECT_FALSE(std::filesystem::is_empty(tree.path("tmp"))) << "the class is there by now";
  run.send(GetParam());
  EXPECT_EQ(run.wait(), 128 + GetParam());
  EXPECT_TRUE(std::filesystem::is_empty(tree.path("tmp")));
  EXPECT_EQ(::kill(java, 0), -1);
  EXPECT_EQ(errno, ESRCH);
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptedTryTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

constexpr const char* kGolden =
    "TREE/setup.bin\n"
    "title: Hello\n"
    "\n"
    "The script\n"
    "   1  // Find or tell.\n"
    "   2  INITIALIZE_UI\n"
    "        show progress from here on\n"
    "   3  FIND_JVM 1 0\n"
    "        look for a JVM, showing progress; N1 is then 1 or 0, S1 the Java home, S2 a JVM file "
    "made for it\n"
    "   4  JMP0 @N1@ none\n"
    "        when @N1@ is 0, go on behind :none, with 8\n"
    "   5  LAUNCH \"@S2@\" 1\n"
    "        launch the program with the JVM file \"@S2@\", showing \"Running\"; its status "
    "becomes the result\n"
    "   6  GOTO end\n"
    "        go on behind :end, where the script ends\n"
    "   7  :none\n"
    "        the label none\n"
    "   8  ILAUNCH 30 0\n"
    "        launch the program with the embedded JVM file 30; its status becomes the result\n"
    "   9  :end\n"
    "        the label end\n"
    "\n"
    "The Java homes, in the order in which they are tried\n"
    "  java.jvm, \"Java 17\"\n"
    "    missing         TREE/gone  (PLATFORM_HINT MY_JAVA)\n"
    "    missing         TREE/jre  (PATH_HINT beside the installer)\n"
    "    exists          TREE/jdk8  (PATH_HINT)\n"
    "    not executable  TREE/broken  (PATH_HINT)\n"
    "    exists          TREE/jdk17  (PATH_HINT)\n"
    "    missing         TREE/none/  (PATH TREE/none)\n";

constexpr const char* kGoldenEnd =
    "  no-java.jvm, \"No Java\"\n"
    "    none: it names no JVM_PROPERTIES, so it is for ILAUNCH alone\n"
    "\n"
    "Launching with java.jvm and the Java at TREE/jdk8, if that is verified (--try tells)\n"
    "  command:      \"TREE/jdk8/bin/java\" -cp \"\":\"/tmp/vsjXXXXXX/app.jar\":\"\"  word Main\n"
    "  directory:   TREE\n"
    "  output:      collected for the log\n"
    "  environment: JAVA_HOME=TREE/jdk8\n"
    "  environment: COLOR=blue\n"
    "\n"
    "Launching with the embedded JVM file 30, no-java.jvm\n"
    "  command:     echo none; exit 3; \"/\" \"\"\"/tmp/vsjXXXXXX/app.jar\"\"\"  word Main\n"
    "  directory:   TREE\n"
    "  output:      collected for the log\n"
    "  environment: JAVA_HOME=\n"
    "\n"
    "Files beside the installer that a launch reads\n"
    "  missing  TREE/setup.cp1  (class path, in front)\n"
    "  missing  TREE/setup.cp  (class path, in the middle)\n"
    "  missing  TREE/setup.cp2  (class path, at the end)\n"
    "  missing  TREE/setup.sp  (system properties)\n"
    "  missing  TREE/setup.ja  (Java arguments)\n";

TEST_F(ExplainTest, TellsEverythingInOrder) {
  build();
  const ProcessResult result = explain();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  // What lies in /bin is the test machine's.
  const std::string out =
      std::regex_replace(result.out, std::regex("    .* /  \\(PATH /bin\\)\n"), "");
  EXPECT_EQ(out, std::string(kGolden) + kGoldenEnd);
}

TEST_F(ExplainTest, ChangesNothing) {
  build();
  const std::vector<std::string> before = tree.list();
  ASSERT_EQ(explain().status, 0);
  EXPECT_EQ(tree.list(), before);
  ASSERT_EQ(explain({"--try"}).status, 0);
  EXPECT_EQ(tree.list(), before) << "the verification class stays";
}

TEST_F(ExplainTest, TryShowsWantedGotAndVerdict) {
  build();
  const std::string out = explain({"--try"}).out;
  EXPECT_THAT(out, HasSubstr("    exists          TREE/jdk8  (PATH_HINT)\n"
                             "      refused\n"
                             "        wrong  java.version: wanted \"17...\", got \"1.8.0\"\n"
                             "        ok     java.vendor: wanted \"me\", got \"me\"\n"));
  EXPECT_THAT(out, HasSubstr("    not executable  TREE/broken  (PATH_HINT)\n"
                             "      refused: the verification class did not answer; the command "
                             "ended with status 126\n"));
  EXPECT_THAT(out, HasSubstr("    exists          TREE/jdk17  (PATH_HINT)\n"
                             "      taken\n"
                             "        ok     java.version: wanted \"17...\", got \"17.0.2\"\n"));
  EXPECT_THAT(out, HasSubstr("Launching with java.jvm and the Java at TREE/jdk17\n"));
}

TEST_F(ExplainTest, TakesTheUsersHomeVariablesAndArguments) {
  build();
  const std::string out = explain({"--java-home", tree.path("jdk17"), "--env", "WORD=other", "--",
                                   "-cp:p", "first.jar", "a \"b\"", "-console"})
                              .out;
  EXPECT_THAT(out, HasSubstr("    exists          TREE/jdk17  (-vs:javahome)\n"));
  EXPECT_THAT(out, HasSubstr("-cp \"first.jar\":\"/tmp/vsjXXXXXX/app.jar\":\"\"  other Main "
                             "\"a \\\"b\\\"\" \"-console\"\n"));
  EXPECT_THAT(out, HasSubstr("  output:      the user's console\n"));
}

TEST_F(ExplainTest, ReadsSideFiles) {
  build();
  tree.file("setup.sp", "a.b=c\n");
  const std::string out = explain().out;
  EXPECT_THAT(out, HasSubstr("-Da.b=c word Main"));
  EXPECT_THAT(out, HasSubstr("  read     TREE/setup.sp  (system properties)\n"));
}

TEST_F(ExplainTest, TellsWhatSearchingTheDiskHides) {
  jvmFile += "SEARCH_ALL: 1\n";
  build();
  setup.add(kJvmFile, 18, "second.jvm", jvmFile);
  setup.write(tree.path("setup.bin"));
  EXPECT_THAT(explain().out,
              AllOf(HasSubstr("    then, if no hint helps, the whole disk is searched\n"),
                    HasSubstr("  second.jvm, \"Java 17\"\n"
                              "    no hints: a file in front of it has SEARCH_ALL\n")));
}

TEST_F(ExplainTest, TellsOfALaunchThatFails) {
  setup.add(FileKind::kScript, 1, "s", "INSTRUCTIONS: ILAUNCH 30 0\n");
  setup.add(kLaunchScript, 2, "l", "COMMAND: %NOTHING%()\n");
  setup.add(kJvmFile, 30, "j", kMessage);
  setup.write(tree.path("setup.bin"));
  EXPECT_THAT(explain().out,
              HasSubstr("  fails: Launch script error: Invalid function name (NOTHING).\n"));
}

TEST_F(ExplainTest, TellsOfOtherActions) {
  build();
  EXPECT_THAT(explain({"--", "-vs:version"}).out,
              HasSubstr("With -vs:version the script does not run"));
}

TEST_F(ExplainTest, RefusesWhatItCannotRead) {
  tree.file("setup.bin", "no installer");
  EXPECT_EQ(explain().status, 2);
  build();
  const ProcessResult result = explain({"--env", "WORD"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr("write NAME=value"));
  EXPECT_THAT(result.out, IsEmpty());
}

/// An installer that unpacks what it brings and launches with that.
class BundledTest : public ExplainTest {
 protected:
  std::string explainWith(const std::string& mode, const std::string& runtime) {
    setup.add(FileKind::kScript, 1, "s",
              "INSTRUCTIONS:\nINSTALL_JVM " + mode + "\nLAUNCH \"@S1@\" 0\n/:\n");
    setup.add(kLaunchScript, 2, "l", "COMMAND: '@JVM_HOME@/@JVM_EXE@' @WORD@ Main\n");
    setup.add(kJvmInstaller, 3, "runtime", runtime);
    setup.write(tree.path("setup.bin"));
    return explain({"--", "-vs:tempdir", "/roomy"}).out;
  }
};

TEST_F(BundledTest, ReadsTheJvmFileThatABundledRuntimeLeaves) {
  const std::string runtime =
      "#!/bin/sh\nexit 0\n" +
      tarBytes({{"jre/bin/java", "x"}, {"jvm.new", "JVM_HOME: jre\nJVM_EXE: bin/j\nWORD: w\n"}});
  const std::string out = explainWith("0", runtime);
  EXPECT_THAT(out, HasSubstr("  runtime, which the installer brings\n"
                             "    to be unpacked  /roomy/vsjXXXXXX/jre  (INSTALL_JVM)\n"));
  EXPECT_THAT(out, HasSubstr("Launching with the Java of runtime, unpacked into /roomy/vsjXXXXXX\n"
                             "  command:     '/roomy/vsjXXXXXX/jre/bin/j' w Main\n"));
  EXPECT_THAT(out, HasSubstr("  environment: JAVA_HOME=/roomy/vsjXXXXXX/jre\n"));
}

TEST_F(BundledTest, SaysWhatOnlyARunTells) {
  const std::string out = explainWith("2", "#!/bin/sh\nexit 0\n");
  EXPECT_THAT(out, HasSubstr("    to be unpacked  /DIRECTORY  (INSTALL_JVM)\n"));
  EXPECT_THAT(
      out, HasSubstr("Launching with the Java of runtime, unpacked into /DIRECTORY\n"
                     "  /DIRECTORY stands for the directory that the user names\n"
                     "  only running runtime tells the JVM file that it leaves; this is with the "
                     "tags that most have\n"
                     "  command:     '/DIRECTORY/bin/java' "));
}

TEST_F(ExplainTest, EveryStatementHasWords) {
  setup.add(FileKind::kScript, 1, "s",
            "INSTRUCTIONS:\nSET S1 = end\nVERIFY 1 1 17\nINSTALL_JVM 2\nEXECUTE_LAUNCHER 9\n"
            "GOTO @S1@\nGOTO nowhere\nILAUNCH 0 0\nNONSENSE\n:end\n/:\n");
  setup.write(tree.path("setup.bin"));
  EXPECT_THAT(
      explain().out,
      AllOf(HasSubstr("set S1 to end\n"), HasSubstr("verify the JVM of the embedded JVM file 17"),
            HasSubstr("into a directory that the user is asked for"),
            HasSubstr("become the embedded launcher 9"),
            HasSubstr("go on behind the label that @S1@ names\n"),
            HasSubstr("nowhere: there is no label :nowhere"),
            HasSubstr("an unknown command, which ends the run with 255\n"),
            HasSubstr("There is no launch script"), Not(HasSubstr("Launching with"))));
}

}  // namespace
}  // namespace vessant::test
