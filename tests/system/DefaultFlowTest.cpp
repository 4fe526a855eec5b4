// The main job: find a JVM by its hints, run the program with it, end as the program ended.

#include "support/BuildPaths.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

struct DefaultFlow : SystemTest {
  /// What the fake program prints when it runs with this home and these arguments.
  [[nodiscard]] std::string programOutput(const std::string& home,
                                          const std::string& arguments = "") const {
    return "PROGRAM\nHOME=" + home + "\nJAVA_HOME=" + home + "\nCWD=" + tree.path("app") +
           "\nARG=-cp\nARG=:\nARG=Main\n" + arguments;
  }
  /// The fixture's installer with this hint in its JVM file instead of its own.
  void addInstallerWithHint(const std::string& hint) {
    addScript({"FIND_JVM 0 0", "JMP0 @N1@ end", "LAUNCH \"@S2@\" 0", ":end"});
    addLaunchScript(std::string(kJavaCommand) + " 2>/dev/null");
    addJvmFile("17.0.1", hint);
  }
};

TEST_F(DefaultFlow, FindsTheJavaThatAnEnvironmentVariableNames) {
  const std::string home = javaHome("jvm one", "17.0.1");
  environment["PRODUCT_JAVA"] = tree.path("missing") + "::" + home + ":/never";
  addInstallerWithHint("PLATFORM_HINT: PRODUCT_JAVA\n");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n" + programOutput(home)));
  const std::string missing = tree.path("missing");
  const std::string resolved = " which was resolved from platform hint PRODUCT_JAVA";
  EXPECT_THAT(log(),
              HasSubstr("Searching for Java 17.0.1 using platform hints\n"
                        "Checking JVM at " +
                        missing + resolved + "\nVerifying JVM at " + missing +
                        "/bin/java\n   for JVM: Java 17.0.1\n" + missing +
                        "/bin/java does not exist\nChecking JVM at " + home + resolved +
                        "\nVerifying JVM at " + home + "/bin/java\n   for JVM: Java 17.0.1\n"));
  EXPECT_THAT(log(), Not(HasSubstr("/never")));
}

TEST_F(DefaultFlow, FindsTheJavaAtAnAbsolutePathHint) {
  const std::string home = javaHome("jvms/17", "17.0.1");
  addInstallerWithHint(tagBlock("PATH_HINT", {tree.path("jvms/16"), home}));
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n" + programOutput(home)));
  EXPECT_THAT(logLines(), Contains("Searching for Java 17.0.1 using path hints"));
  EXPECT_THAT(logLines(), Contains("Checking path hint " + home));
}

TEST_F(DefaultFlow, FindsTheJavaNextToTheLauncher) {
  const std::string home = javaHome("app/jre", "17.0.1");
  addInstallerWithHint("PATH_HINT: jre\n");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n" + programOutput(home)));
  EXPECT_THAT(logLines(), Contains("Check path hint Relative " + home));
}

TEST_F(DefaultFlow, FindsTheJavaOnThePath) {
  const std::string home = javaHome("jvms/17", "17.0.1");
  environment["PATH"] += "::" + home + "/bin";
  addInstallerWithHint("");
  // The home is what stands in front of the executable's directory, its separator included.
  const std::string output = "PROGRAM\nHOME=" + home + "\nJAVA_HOME=" + home +
                             "/\nCWD=" + tree.path("app") + "\nARG=-cp\nARG=:\nARG=Main\n";
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n" + output));
  EXPECT_THAT(logLines(),
              Contains("Checking JVM at " + home +
                       "/ which was resolved from the platform JVM path " + home + "/bin"));
}

TEST_F(DefaultFlow, TakesAnEntryOfThePathItselfForAnExecutableWithoutADirectory) {
  const std::string home = javaHome("jvms/17", "17.0.1") + "/bin";
  environment["PATH"] += ":" + home;
  addScript({"FIND_JVM 0 0", "LAUNCH \"@S2@\" 0"});
  addLaunchScript("echo @JVM_HOME@");
  file.add(kJvmFile, kJvmFileId, "java.jvm",
           "DESC: any\nJVM_PROPERTIES: java.version=17.0.1\nJVM_EXE: java\n");
  file.add(kVerificationClass, kVerificationClassId, "verify.jar", "verification class");
  EXPECT_THAT(run(), Ended(0, "Demo\n" + home + "\n"));
}

TEST_F(DefaultFlow, TriesTheHomeOfTheCommandLineFirst) {
  const std::string home = javaHome("chosen", "17.0.1");
  addInstallerWithHint(tag("PATH_HINT", javaHome("hinted", "17.0.1")));
  EXPECT_THAT(runLogged({"-vs:javahome", home}), Ended(0, "Demo\n" + programOutput(home)));
  EXPECT_THAT(logLines(), Contains("Checking user specified Java home directory => " + home));
  EXPECT_THAT(log(), Not(HasSubstr("Initiating JVM search based on hints...")));
}

TEST_F(DefaultFlow, CountsARelativeHomeOfTheCommandLineFromTheUsersDirectory) {
  const std::string home = javaHome("elsewhere/jdk", "17.0.1");
  javaHome("app/jdk", "16");
  addInstallerWithHint("");
  EXPECT_THAT(runLogged({"-vs:javahome", "jdk"}), Ended(0, "Demo\n" + programOutput(home)));
  for (const char* line :
       {"Checking user specified Java home directory => jdk", "Verifying JVM at jdk/bin/java",
        "Found matching JVM at jdk", "Matching JVM home is jdk"}) {
    EXPECT_THAT(logLines(), Contains(line));
  }
}

TEST_F(DefaultFlow, SaysThatARelativeHomeOfTheCommandLineDoesNotExist) {
  javaHome("app/jdk", "17.0.1");
  addInstallerWithHint("");
  EXPECT_THAT(runLogged({"-vs:javahome", "jdk"}), Ended(0, "Demo\n"));
  EXPECT_THAT(logLines(), Contains("jdk/bin/java does not exist"));
}

TEST_F(DefaultFlow, GoesOnWithTheHintsWhenTheHomeOfTheCommandLineIsWrong) {
  const std::string home = javaHome("hinted", "17.0.1");
  addInstallerWithHint(tag("PATH_HINT", home));
  EXPECT_THAT(run({"-vs:javahome", javaHome("old", "1.4.2")}),
              Ended(0, "Demo\n" + programOutput(home)));
}

TEST_F(DefaultFlow, PrefersEnvironmentThenPathHintsThenThePath) {
  environment["PRODUCT_JAVA"] = javaHome("by-variable", "16");
  environment["PATH"] += ":" + javaHome("on-path", "17.0.1") + "/bin";
  const std::string home = javaHome("by-hint", "17.0.1");
  addInstallerWithHint("PLATFORM_HINT: PRODUCT_JAVA\n" + tag("PATH_HINT", home));
  EXPECT_THAT(run(), Ended(0, "Demo\n" + programOutput(home)));
}

TEST_F(DefaultFlow, TakesTheFirstJvmFileThatMatches) {
  const std::string home = javaHome("jvms/11", "11.0.2");
  addInstallerWithHint(tag("PATH_HINT", home));
  file.add(kJvmFile, 9, "java11.jvm", jvmFileText("11...", tag("PATH_HINT", home)));
  EXPECT_THAT(run(), Ended(0, "Demo\n" + programOutput(home)));
}

TEST_F(DefaultFlow, TellsTheUserWhenThereIsNoJava) {
  addScript({"FIND_JVM 0 1", "JMP0 @N1@ end", "LAUNCH \"@S2@\" 0", ":end"});
  addLaunchScript(kJavaCommand);
  addJvmFile("17.0.1");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n" + std::string(kNoJvmFound)));
  EXPECT_THAT(log(), HasSubstr(kNoJvmFound));
}

TEST_F(DefaultFlow, HandsTheArgumentsOnAsTheyAre) {
  addInstaller(std::string(kJavaCommand) + " 2>/dev/null");
  const ProcessResult result = run({"two words", "a\"b", "it's", "", "-foo", "-vs:unknown",
                                    "-vs:Version", "tab\there", "\xFF\x80"});
  EXPECT_THAT(result,
              Ended(0, "Demo\n" + programOutput(tree.path("java17"),
                                                "ARG=two words\nARG=a\"b\nARG=it's\nARG=\n"
                                                "ARG=-foo\nARG=-vs:unknown\n"
                                                "ARG=-vs:Version\nARG=tab\there\nARG=\xFF\x80\n")));
}

TEST_F(DefaultFlow, HandsTheConsoleOptionsOnInTheProgramsWords) {
  addInstaller(kPrintArguments);
  EXPECT_THAT(run({"-accessibility", "-console", "-vs:javaconsole", "last"}),
              Ended(0, "Demo\n<-console>\n<-console>\n<last>\n"));
}

TEST_F(DefaultFlow, HandsTheSilentOptionOnButNotTheLaunchersOwn) {
  addInstaller(kPrintArguments);
  EXPECT_THAT(run({"-vs:silent", "-silent"}), Ended(0, "<-silent>\n"));
}

TEST_F(DefaultFlow, RunsTheProgramWhereTheLauncherLies) {
  addInstaller("pwd");
  EXPECT_THAT(run(), Ended(0, "Demo\n" + tree.path("app") + "\n"));
}

TEST_F(DefaultFlow, RunsTheProgramInTheCurrentDirectoryWhenTheScriptSaysSo) {
  addScript({"FIND_JVM 0 0", "LAUNCH \"@S2@\" 0"});
  addLaunchScript("pwd", "DISPLAY_CONSOLE: 1\nAUTO_SET_WORKING_DIR: 0\n");
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n" + startDirectory + "\n"));
  EXPECT_THAT(logLines(), Contains("Executing launch script command: pwd in current working "
                                   "directory"));
}

TEST_F(DefaultFlow, LeavesItsInputToTheProgram) {
  addInstaller("read first; read second; echo \"$second $first\"");
  input = "one\ntwo\n";
  EXPECT_THAT(run(), Ended(0, "Demo\ntwo one\n"));
}

TEST_F(DefaultFlow, StartsByARelativeName) {
  addInstaller("pwd; echo %LAUNCHER_FILE%()");
  pack();
  startDirectory = tree.path("app");
  EXPECT_THAT(runCommand({"./setup.bin", "-vs:tempdir", "../temp"}),
              Ended(0, "Demo\n" + tree.path("app") + "\n" + tree.path("app/./setup.bin") + "\n"));
  startDirectory = tree.root();
  EXPECT_THAT(runCommand({"app/setup.bin", "-vs:tempdir", "temp"}),
              Ended(0, "Demo\n" + tree.path("app") + "\n" + tree.path("app/setup.bin") + "\n"));
}

TEST_F(DefaultFlow, RunsFromAPathWithBlanks) {
  launcher = tree.path("my app/my setup.bin");
  tree.dir("my app");
  addInstaller("pwd; echo \"%LAUNCHER_DIR%()\"");
  EXPECT_THAT(run(), Ended(0, "Demo\n" + tree.path("my app") + "\n" + tree.path("my app") + "\n"));
}

TEST_F(DefaultFlow, LogsTheWholeRun) {
  const std::string home = javaHome("java17", "17.0.1");
  addScript({"FIND_JVM 0 0", "ILAUNCH 3 0"});
  addLaunchScript("echo hello; echo trouble >&2; exit 7", "");
  addJvmFile("17.0.1", tag("PATH_HINT", home));
  EXPECT_THAT(runLogged({"-vs:silent"}), Ended(7, ""));
  const std::string text = maskTempNames(log());
  const std::string started = " in working directory " + tree.path("app") +
                              "\nOutput from the launch script execution\nStdOut:\n";
  EXPECT_EQ(text.substr(text.find("Finding a JVM")),
            "Finding a JVM\n"
            "Initiating JVM search based on hints...\n"
            "Searching for Java 17.0.1 using platform hints\n"
            "Searching for Java 17.0.1 using path hints\n"
            "Checking path hint " +
                home + "\nVerifying JVM at " + home +
                "/bin/java\n   for JVM: Java 17.0.1\n"
                "Executing launch script command: \"" +
                home + "/bin/java\" -cp \"\":\"" + tempRoot +
                "/vsj/verify.jar\":\"\"   \"Verify\" java.version" + started +
                "noise\n1739021872\n17.0.1\n\nErrOut:\n\n"
                "Found matching JVM at " +
                home + "\nMatching JVM home is " + home + "\nMatching JVM file is " + tempRoot +
                "/vsj\nExecuting launch script command: echo hello; echo trouble >&2; exit 7" +
                started + "hello\n\nErrOut:\ntrouble\n\n");
}

TEST_F(DefaultFlow, ListsItsFilesInTheLogFirst) {
  file.add(kApplicationArchive, 0xFFFFFFFFU, "a b", "12345");
  addScript({"SET N1 = 1"});
  pack();
  EXPECT_THAT(runLogged(), Ended(0, "\n"));
  const std::size_t stub = std::filesystem::file_size(kLauncher);
  EXPECT_EQ(log(),
            "------------------\nfile type: 6\n  file id: 4294967295\n  length: 5\n  offset: " +
                std::to_string(stub) +
                "\n  file name: a b\nfile type: 0\n  file id: 1\n  length: " +
                std::to_string(tagBlock("INSTRUCTIONS", {"SET N1 = 1"}).size()) +
                "\n  offset: " + std::to_string(stub + 5) + "\n  file name: install.script\n");
}

}  // namespace
}  // namespace vessant::test
