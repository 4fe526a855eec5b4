// Input files: what they set, and what every action prints for the program that reads it.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kVerified = ".......";

struct InputFile : SystemTest {
  /// Runs the launcher with these arguments and an input file of this text behind them.
  ProcessResult runWith(const std::string& text, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.end(), {"-vs:in", tree.file("input.tag", text)});
    return runLogged(arguments);
  }
  [[nodiscard]] std::string logTag() const { return tag("LOGFILE", logName()); }
  /// A JVM file on disk for the fake Java in "java17".
  std::string jvmFile(const std::string& more = "") {
    return tree.file("17.jvm", jvmFileText("17.0.1", more));
  }
  std::string java17() { return javaHome("java17", "17.0.1"); }
  /// Takes the file that a search leaves for the program that asked for it.
  std::string takeFoundFile(const std::string& path) {
    EXPECT_THAT(path, StartsWith(tempRoot + "/vsj"));
    std::string text = readFile(path);
    std::filesystem::remove(path);
    return text;
  }
};

struct RunInstructions : InputFile {};

TEST_F(RunInstructions, RunsTheDefaultFlowWithoutProgressAndLog) {
  addScript({"INITIALIZE_UI", "FIND_JVM 0 0", "LAUNCH \"@S2@\" 0"});
  addLaunchScript("echo program");
  addJvmFile("17.0.1", tag("PATH_HINT", java17()));
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\n"), Ended(0, "Demo\nprogram\n"));
  EXPECT_EQ(log(), "------------------\nLoading input file " + tree.path("input.tag") + "\n");
}

TEST_F(RunInstructions, ShowsTheProgressThatIsAskedFor) {
  addScript({"INITIALIZE_UI"});
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: 1\nUI_TITLE: Product\n"),
              Ended(0, "Product\n\nInitializing Product...\n\n"));
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\nSHOW_FAIL_MSG: -1\n"),
              Ended(0, "\nInitializing ...\n\n"));
}

TEST_F(RunInstructions, TakesAWordForNoNumber) {
  addScript({"INITIALIZE_UI"});  // shows its stage, if any, before it turns the display on
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: true\n"), Ended(0, "\n"));
}

TEST_F(RunInstructions, ShowsNoProgressInSilence) {
  addScript({"INITIALIZE_UI"});
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: 1\n", {"-vs:silent"}),
              Ended(0, ""));
}

TEST_F(RunInstructions, RunsTheScriptsThatAreNamed) {
  addScript({"EMBEDDED_SCRIPT"});
  addLaunchScript("echo embedded");
  addJvmFile("11");
  const std::string script =
      tree.file("a.script", tagBlock("INSTRUCTIONS", {"FIND_JVM 0 0", "LAUNCH @S2@ 1"}));
  const std::string launch = tree.file(
      "b.launch", tag("DESC", "Named") + tag("COMMAND", "echo @DESC@") + "DISPLAY_CONSOLE: 1\n");
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: 1\nUI_TITLE: Title\n" +
                      tag("INSTRUCTIONS", script) + tag("LAUNCHSCRIPT", launch) +
                      tag("JVM", jvmFile(tag("PATH_HINT", java17())))),
              Ended(0, "Named\nTitle\nJava 17.0.1\n"));
}

TEST_F(RunInstructions, KeepsTheTitleThatIsNamedAndShowsTheEmbeddedOne) {
  addScript({"INITIALIZE_UI"});
  addLaunchScript("echo embedded");
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: 1\nUI_TITLE: Product\n"),
              Ended(0, "Product\nDemo\n\nInitializing Product...\n\n"));
}

TEST_F(RunInstructions, TriesTheNamedJvmFilesAheadOfTheEmbeddedOnes) {
  addScript({"FIND_JVM 0 0"});
  addJvmFile("11");
  const std::string first = tree.file("first.jvm", jvmFileText("1"));
  const std::string second = tree.file("second.jvm", jvmFileText("2"));
  EXPECT_THAT(
      runWith("ACTION: RUN_INSTRUCTIONS\n" + logTag() + tagBlock("JVM", {first, "", second})),
      Ended(0, ""));
  std::vector<std::string> searched;
  for (const std::string& line : logLines()) {
    if (line.ends_with("using path hints")) searched.push_back(line);
  }
  EXPECT_THAT(searched, ::testing::ElementsAre("Searching for Java 1 using path hints",
                                               "Searching for Java 2 using path hints",
                                               "Searching for Java 11 using path hints"));
}

TEST_F(RunInstructions, TakesANameInQuotes) {
  addScript({"SET N1 = 1"});
  const std::string quoted = "\"" + tree.file("in put.tag", "ACTION: RUN_INSTRUCTIONS\n") + "\"";
  EXPECT_THAT(runLogged({"-vs:in", quoted}), Ended(0, ""));
  EXPECT_THAT(logLines(), Contains("Loading input file " + quoted));
}

TEST_F(RunInstructions, ChangesTheLogOnceItIsRead) {
  addScript({"SET N1 = 1"});
  const std::string second = tree.path("second.log");
  EXPECT_THAT(runWith("ACTION: RUN_INSTRUCTIONS\n" + tag("LOGFILE", second)), Ended(0, ""));
  EXPECT_EQ(log(), "------------------\nLoading input file " + tree.path("input.tag") + "\n");
  // The separator is written once per run, not once per file.
  EXPECT_THAT(readFile(second), StartsWith("file type: 0\n"));
}

struct Search : InputFile {};

TEST_F(Search, PrintsTheHomeAndTheJvmFileThatItLeaves) {
  addJvmFile("17.0.1", tag("PATH_HINT", java17()));
  const ProcessResult result = runWith("ACTION: SEARCH\n");
  const std::string begin = "1\n" + tree.path("java17") + "\n";
  ASSERT_THAT(result.out, StartsWith(begin));
  EXPECT_EQ(result.status, 0);
  const std::string path = result.out.substr(begin.size(), result.out.size() - begin.size() - 1);
  EXPECT_EQ(result.out, begin + path + "\n");
  EXPECT_EQ(takeFoundFile(path),
            "DESC:  Java 17.0.1\nJVM_PROPERTIES:  java.version=17.0.1\nJVM_EXE:  bin/java\n"
            "CLASSPATH:  \"-cp \"\nCLASSPATH_SEPARATOR:  :\nSYSTEM:  -D\nSYSTEM_SEPARATOR:  =\n"
            "PATH_HINT:  " +
                tree.path("java17") + "\nJVM_HOME:  " + tree.path("java17") +
                "\nJVM_FILE:  " + path + "\nJVM_TEMP:  0\n");
}

TEST_F(Search, PrintsZeroWithoutAJvm) {
  addJvmFile("17.0.1");
  EXPECT_THAT(runWith("ACTION: SEARCH\n"), Ended(0, "0\n"));
}

TEST_F(Search, PrintsItsResultInSilenceToo) {
  addJvmFile("17.0.1", tag("PATH_HINT", java17()));
  const ProcessResult result = runWith("ACTION: SEARCH\nSHOW_PROGRESS: 1\n", {"-vs:silent"});
  EXPECT_EQ(maskTempNames(result.out), "1\n" + tree.path("java17") + "\n" + tempRoot + "/vsj\n");
  takeFoundFile(result.out.substr(result.out.find(tempRoot + "/vsj"), tempRoot.size() + 10));
  std::filesystem::remove_all(tree.path("java17"));
  EXPECT_THAT(runWith("ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n", {"-silent"}), Ended(0, "0\n"));
}

TEST_F(Search, ShowsProgressAheadOfItsResult) {
  addJvmFile("17.0.1", tag("PATH_HINT", java17()));
  const ProcessResult result = runWith("ACTION: SEARCH\nSHOW_PROGRESS: 1\n");
  EXPECT_EQ(maskTempNames(result.out),
            "\nSearching for Java(tm) Virtual Machine...\n.\nSearching for Java 17.0.1\n\n"
            "Verifying Java 17.0.1\n" +
                kVerified + "1\n" + tree.path("java17") + "\n" + tempRoot + "/vsj\n\n");
  takeFoundFile(result.out.substr(result.out.find(tempRoot + "/vsj"), tempRoot.size() + 10));
}

TEST_F(Search, TellsOfItsFailureAheadOfItsResult) {
  addJvmFile("17.0.1");
  EXPECT_THAT(runWith("ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n"),
              Ended(0, std::string(kNoJvmFound) + "0\n"));
}

TEST_F(Search, PrintsNothingWhenItFails) {
  addJvmFile("17.0.1");
  pack();
  EXPECT_THAT(runBare({"-vs:tempdir", tree.path("missing"), "-vs:in",
                       tree.file("input.tag", "ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n" + logTag())}),
              Ended(0, ""));
  EXPECT_THAT(log(), EndsWith("ERROR: Unexpected failure in search.\n"));
}

TEST_F(Search, CanBeDoneTwiceInOneRun) {
  addJvmFile("17.0.1", tag("PATH_HINT", java17()));
  const std::string second = tree.file("second.tag", "ACTION: SEARCH\n");
  const ProcessResult result = runWith("ACTION: SEARCH\n", {"-vs:in", second});
  const std::string once = "1\n" + tree.path("java17") + "\n" + tempRoot + "/vsj\n";
  EXPECT_EQ(maskTempNames(result.out), once + once);
  EXPECT_EQ(tree.list("temp").size(), 2U);
  for (const std::string& name : tree.list("temp")) takeFoundFile(tempRoot + "/" + name);
}

TEST_F(Search, IsNotSilencedByAnOptionBehindIt) {
  addJvmFile("17.0.1");
  const std::string path = tree.file("input.tag", "ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n");
  EXPECT_THAT(run({"-vs:in", path, "-vs:silent"}), Ended(0, std::string(kNoJvmFound) + "0\n"));
}

struct SearchAll : InputFile {};

TEST_F(SearchAll, PrintsZeroWhenItFails) {
  addJvmFile("17.0.1");
  pack();
  const std::string missing = tree.path("missing");
  const std::string error =
      "Unable to search for all JVMs.Cannot use " + missing +
      " as the temp directory because it does not exist. Please run the program again using the "
      "option -vs:tempdir <temp dir> to specify a different directory to use.";
  EXPECT_THAT(runBare({"-vs:tempdir", missing, "-vs:in",
                       tree.file("a.tag", "ACTION: SEARCH_ALL\n" + logTag())}),
              Ended(0, "0\n"));
  EXPECT_THAT(log(), EndsWith("ERROR: " + error + "\n"));
  EXPECT_THAT(runBare({"-vs:tempdir", missing, "-vs:in",
                       tree.file("b.tag", "ACTION: SEARCH_ALL\nSHOW_FAIL_MSG: 1\n")}),
              Ended(0, error + "\n0\n"));
}

struct VerifyJvm : InputFile {
  std::string action(const std::string& home, const std::string& more = "") {
    addJvmFile("17.0.1");  // brings the verification class
    return "ACTION: VERIFY_JVM\n" + tag("VERIFY_JVM_FILE", jvmFile()) +
           tag("VERIFY_JVM_HOME", home) + more;
  }
};

TEST_F(VerifyJvm, PrintsOneForAValidHome) {
  EXPECT_THAT(runWith(action(java17(), logTag())), Ended(0, "1\n"));
  EXPECT_THAT(logLines(), Contains("After VERIFY, the jvm home is " + tree.path("java17")));
}

TEST_F(VerifyJvm, PrintsZeroForAnotherOne) {
  EXPECT_THAT(runWith(action(javaHome("java16", "16"))), Ended(0, "0\n"));
}

TEST_F(VerifyJvm, TellsOfItsFailureWhenItIsAskedTo) {
  EXPECT_THAT(runWith(action("/missing", "SHOW_FAIL_MSG: 1\n")),
              Ended(0, ".\nVerifying Java 17.0.1\n..The JVM is not valid.\n0\n\n"));
}

TEST_F(VerifyJvm, PrintsItsResultInSilenceToo) {
  EXPECT_THAT(runWith(action(java17(), "SHOW_PROGRESS: 1\n"), {"-vs:silent"}), Ended(0, "1\n"));
}

TEST_F(VerifyJvm, ShowsProgressAheadOfItsResult) {
  EXPECT_THAT(
      runWith(action(java17(), "SHOW_PROGRESS: 1\n")),
      Ended(0, "\nVerifying Java 17.0.1\n.\nVerifying Java 17.0.1\n" + kVerified + "1\n\n"));
}

TEST_F(VerifyJvm, EndsWithoutItsJvmFile) {
  EXPECT_THAT(runWith("ACTION: VERIFY_JVM\nVERIFY_JVM_FILE: /missing\nVERIFY_JVM_HOME: /x\n"),
              Ended(255, "Unable to load input file: /missing\n"));
}

struct InstallJvmAction : InputFile {
  InstallJvmAction() { environment["PATH"] = "/usr/bin:/bin"; }
  /// An installer that says where it runs and brings a JVM file.
  std::string installer(const std::string& jvmTags = "JVM_HOME: jre\n") {
    return tree.program("installer dir/install",
                        "#!/bin/sh\necho installing in \"$(pwd)\"\n"
                        "cat > jvm <<'END'\nDESC: bundled\n" +
                            jvmTags + "END\n");
  }
  static std::string action(const std::string& installer, const std::string& destination) {
    return "ACTION: INSTALL_JVM\n" + tag("INSTALL_JVM_EXE", installer) +
           tag("INSTALL_JVM_DEST", destination);
  }
};

TEST_F(InstallJvmAction, PrintsThePathOfTheJvmFile) {
  const std::string destination = tree.dir("destination");
  EXPECT_THAT(runWith(action(installer(), destination)),
              Ended(0, "installing in " + destination + "\n" + destination + "/jvm\n"));
  EXPECT_EQ(readFile(destination + "/jvm"), "DESC:  bundled\nJVM_HOME:  " + destination +
                                                "/jre\nJVM_FILE:  " + destination +
                                                "/jvm\nJVM_TEMP:  0\n");
}

TEST_F(InstallJvmAction, PrintsItInSilenceToo) {
  const std::string destination = tree.dir("destination");
  EXPECT_THAT(runWith(action(installer(""), destination), {"-vs:silent"}),
              Ended(0, "installing in " + destination + "\n" + destination + "/jvm\n"));
  EXPECT_THAT(readFile(destination + "/jvm"), HasSubstr("JVM_HOME:  " + destination + "\n"));
}

TEST_F(InstallJvmAction, CountsARelativeInstallerFromWhereTheLauncherIsStarted) {
  installer();
  const std::string destination = tree.dir("destination") + "/";
  EXPECT_THAT(runWith(action("../installer dir/install", destination)),
              Ended(0, "installing in " + tree.path("destination") + "\n" + destination + "jvm\n"));
}

TEST_F(InstallJvmAction, EndsWithoutAJvmFile) {
  const std::string destination = tree.dir("destination");
  EXPECT_THAT(runWith(action(tree.program("install", "#!/bin/sh\n"), destination)),
              Ended(255, "Unable to load input file: " + destination + "/jvm\n"));
}

TEST_F(InstallJvmAction, EndsWithoutItsDestination) {
  EXPECT_THAT(runWith(action(installer(), "/no/such/directory")),
              Ended(255,
                    "Error setting working directory: /no/such/directory No such file or "
                    "directory\n"));
}

TEST_F(InstallJvmAction, BreaksTheLineOfAProgressDisplay) {
  const std::string destination = tree.dir("destination");
  EXPECT_THAT(runWith(action(installer(), destination) + "SHOW_PROGRESS: 1\n"),
              Ended(0, "installing in " + destination + "\n" + destination + "/jvm\n\n"));
}

}  // namespace
}  // namespace vessant::test
