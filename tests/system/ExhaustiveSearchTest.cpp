// The search of the whole disk, on a disk that the test has made.

#include <algorithm>
#include <sstream>

#include "system/SmallMachine.h"

namespace vessant::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kScanning = "\nScanning disk(s) for a Java(tm) Virtual Machine...\n";
constexpr const char* kSearchAll = "SEARCH_ALL: 1\n";

struct ExhaustiveSearch : SmallMachine {
  ExhaustiveSearch() {
    environment.erase("PATH");  // no hints at all
  }

  /// A script that finds a JVM and launches it, and the first JVM file.
  void addInstaller(const std::string& jvmTags = kSearchAll) {
    addScript({"FIND_JVM 1 1", "JMP0 @N1@ end", "LAUNCH \"@S2@\" 1", ":end"});
    addLaunchScript("echo \"launched @JVM_HOME@\"");
    addJvmFile("17.0.1", jvmTags);
  }
  void addSecondJvmFile(const std::string& version, const std::string& tags = "") {
    file.add(kJvmFile, 20, "second.jvm", jvmFileText(version, tags));
  }
  [[nodiscard]] std::vector<std::string> logLinesWith(const std::string& begin) const {
    std::vector<std::string> found;
    std::istringstream text(read("/setup.log"));
    for (std::string line; std::getline(text, line);) {
      if (line.starts_with(begin)) found.push_back(line);
    }
    return found;
  }
  [[nodiscard]] std::vector<std::string> verified() const {
    return logLinesWith("Verifying JVM at ");
  }
  /// Runs the action that lists every JVM; takes the JVM files that it leaves, and returns what was
  /// printed as the homes, in order of their names, with the home that the file of each names.
  std::vector<std::string> searchAll(const std::vector<std::string>& arguments = {}) {
    tree.file(inTree("/input.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /setup.log\n");
    std::vector<std::string> all = arguments;
    all.insert(all.end(), {"-vs:in", "/input.tag"});
    const ProcessResult result = runInside(all);
    EXPECT_EQ(result.status, 0);
    std::istringstream lines(result.out);
    std::string line;
    std::getline(lines, line);
    const std::string count = line;
    std::vector<std::string> homes;
    while (std::getline(lines, line)) homes.push_back(line + " " + takeJvmFile(lines));
    EXPECT_EQ(count, std::to_string(homes.size())) << result.out;
    std::sort(homes.begin(), homes.end());
    return homes;
  }

 private:
  std::string takeJvmFile(std::istringstream& lines) {
    std::string path;
    std::getline(lines, path);
    const std::string text = read(path);
    std::filesystem::remove(tree.path(inTree(path)));
    const std::size_t start = text.find("JVM_HOME:  ");
    const std::size_t end = text.find("\n", start);
    return start == std::string::npos ? "nothing" : text.substr(start + 11, end - start - 11);
  }
};

TEST_F(ExhaustiveSearch, FindsAJavaThatNoHintKnows) {
  addInstaller();
  addJava("/opt/vendor/java 17", "17.0.1");
  EXPECT_THAT(runInsideLogged(),
              Ended(0,
                    "Demo\n\nSearching for Java(tm) Virtual Machine...\n.\nSearching for Java "
                    "17.0.1\n" +
                        std::string(kScanning) +
                        "\nVerifying Java 17.0.1\n.......\nRunning Demo...\nlaunched "
                        "/opt/vendor/java 17\n"));
  EXPECT_THAT(logLinesWith("Beginning exhaustive search"),
              ElementsAre("Beginning exhaustive search"));
  // Verified during the walk: nothing is left for afterwards.
  EXPECT_THAT(logLinesWith("Processing unverified matches."), IsEmpty());
}

TEST_F(ExhaustiveSearch, IsNotDoneWhenTheJvmFileDoesNotAllowIt) {
  addJava("/opt/java17", "17.0.1");
  for (const char* setting : {"", "SEARCH_ALL: 0\n", "SEARCH_ALL: yes\n"}) {
    file = LauncherFileBuilder().launcherStub();
    addInstaller(setting);
    EXPECT_THAT(runInside().out, HasSubstr(kNoJvmFound)) << setting;
  }
  file = LauncherFileBuilder().launcherStub();
  addInstaller("SEARCH_ALL: -3\n");
  EXPECT_THAT(runInside().out, HasSubstr("launched /opt/java17\n"));
}

TEST_F(ExhaustiveSearch, TellsWhenThereIsNoJavaAnywhere) {
  addInstaller();
  EXPECT_THAT(runInsideLogged(),
              Ended(0,
                    "Demo\n\nSearching for Java(tm) Virtual Machine...\n.\nSearching for Java "
                    "17.0.1\n" +
                        std::string(kScanning) + std::string(kNoJvmFound) + "\n"));
  EXPECT_THAT(logLinesWith("Processing unverified"), ElementsAre("Processing unverified matches."));
}

TEST_F(ExhaustiveSearch, EndsAtTheFirstMatchOfTheFirstJvmFile) {
  addInstaller();
  addJava("/opt/a", "17.0.1");
  addJava("/opt/b", "17.0.1");
  addJava("/opt/c", "17.0.1");
  EXPECT_EQ(runInsideLogged().status, 0);
  EXPECT_EQ(verified().size(), 1U);
}

TEST_F(ExhaustiveSearch, VerifiesTheHomesOfLaterJvmFilesAfterTheWalk) {
  addInstaller();
  addSecondJvmFile("11.0.2");
  addJava("/opt/a", "1.4.2");
  addJava("/opt/b", "11.0.2");
  EXPECT_THAT(runInsideLogged().out, HasSubstr("launched /opt/b\n"));
  const std::string text = read("/setup.log");
  const std::size_t processing = text.find("Processing unverified matches.");
  ASSERT_NE(processing, std::string::npos);
  // The first JVM file's verdicts stand before, the second's behind.
  EXPECT_LT(text.rfind("for JVM: Java 17.0.1\n"), processing);
  EXPECT_GT(text.find("for JVM: Java 11.0.2\n"), processing);
}

TEST_F(ExhaustiveSearch, VerifiesALaterMatchOnceAndNoFurther) {
  addInstaller();
  addSecondJvmFile("11.0.2");
  addJava("/opt/b", "11.0.2");
  addJava("/opt/c", "11.0.2");
  EXPECT_EQ(runInsideLogged().status, 0);
  EXPECT_EQ(logLinesWith("   for JVM: Java 11.0.2").size(), 1U);
}

TEST_F(ExhaustiveSearch, PassesOverTheHintsOfTheJvmFilesBehind) {
  addInstaller();
  addSecondJvmFile("11.0.2", "PATH_HINT: /opt/b\n");
  addJava("/opt/b", "11.0.2");
  EXPECT_THAT(runInsideLogged().out, HasSubstr("launched /opt/b\n"));
  EXPECT_THAT(logLinesWith("Searching for Java 11.0.2"), IsEmpty());
}

TEST_F(ExhaustiveSearch, FollowsTheHintsOfTheJvmFilesAhead) {
  addInstaller("");
  addSecondJvmFile("11.0.2", kSearchAll);
  addJava("/opt/b", "11.0.2");
  EXPECT_THAT(runInsideLogged().out, HasSubstr("launched /opt/b\n"));
  EXPECT_THAT(logLinesWith("Searching for Java").size(), 6U);
}

TEST_F(ExhaustiveSearch, LeavesTheDefaultTempDirectoryOut) {
  addInstaller();
  javaHome(inTree("/tmp/java"), "17.0.1");
  EXPECT_THAT(runInside().out, HasSubstr(kNoJvmFound));
  std::filesystem::remove_all(tree.path(inTree("/tmp/java")));
  addJava("/var/tmp/java", "17.0.1");
  EXPECT_THAT(runInside().out, HasSubstr("launched /var/tmp/java\n"));
}

TEST_F(ExhaustiveSearch, SearchesATempDirectoryThatTheUserNames) {
  addInstaller();
  tree.dir(inTree("/scratch"));
  addJava("/scratch/java", "17.0.1");
  EXPECT_THAT(runInside({"-vs:tempdir", "/scratch"}).out, HasSubstr("launched /scratch/java\n"));
}

TEST_F(ExhaustiveSearch, SearchesNothingWhenTheTempDirectoryIsTheRoot) {
  addInstaller();
  addJava("/opt/java17", "17.0.1");
  EXPECT_THAT(runInside({"-vs:tempdir", "/"}).out, HasSubstr(kNoJvmFound));
}

TEST_F(ExhaustiveSearch, TakesALinkToAJavaButFollowsNoLinkToADirectory) {
  addJvmFile("17.0.1");
  addJava("/tmp/hidden", "17.0.1");  // not found where it lies
  tree.link(inTree("/opt/linked"), "/tmp/hidden");
  EXPECT_THAT(searchAll(), IsEmpty());
  tree.link(inTree("/opt/real/bin/java"), "/tmp/hidden/bin/java");
  tree.link(inTree("/opt/real/bin/java.steps"), "/tmp/hidden/bin/java.steps");
  EXPECT_THAT(searchAll(), ElementsAre("/opt/real /opt/real"));
  std::filesystem::remove_all(tree.path(inTree("/tmp/hidden")));
}

TEST_F(ExhaustiveSearch, TakesOnlyWholeComponentsForTheExecutable) {
  addInstaller();
  addJava("/opt/x", "17.0.1");
  std::filesystem::rename(tree.path(inTree("/opt/x/bin")), tree.path(inTree("/opt/x/xbin")));
  addJava("/opt/y", "17.0.1");
  std::filesystem::rename(tree.path(inTree("/opt/y/bin/java")),
                          tree.path(inTree("/opt/y/bin/javaw")));
  tree.dir(inTree("/opt/z/bin/java"));
  EXPECT_THAT(runInsideLogged().out, HasSubstr(kNoJvmFound));
  EXPECT_THAT(verified(), IsEmpty());
}

TEST_F(ExhaustiveSearch, ShowsADotForEveryThousandFiles) {
  addInstaller();
  for (int i = 0; i < 2500; ++i) tree.file(inTree("/many/" + std::to_string(i)));
  EXPECT_THAT(runInside().out, HasSubstr(std::string(kScanning) + ".." + std::string(kNoJvmFound)));
}

constexpr const char* kCanceled = "Canceled by the user.\n";

/// Java homes of another version that end the launcher when they are verified.
struct EndedSearch : ExhaustiveSearch {
#ifdef __SANITIZE_ADDRESS__
  void SetUp() override {
    GTEST_SKIP() << "without /proc AddressSanitizer reports its own look at the stack at a throw";
  }
#endif
  void addEndingJavas() {
    for (const char* home : {"/opt/a", "/opt/b", "/opt/c"}) {
      tree.program(inTree(std::string(home) + "/bin/java"),
                   "#!/bin/sh\nkill -TERM $LAUNCHER\nprintf '1739021872\\n16\\n'\n");
    }
  }
  /// Runs the launcher with its process id in the variable LAUNCHER.
  ProcessResult runWithId(const std::vector<std::string>& arguments) {
    pack();
    std::vector<std::string> command = {
        "/bin/sh", "-c", "LAUNCHER=$$; export LAUNCHER; exec \"$0\" \"$@\"", "/app/setup.bin"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runCommandInside(command);
  }
};

TEST_F(EndedSearch, StopsItsWalk) {
  addScript({"FIND_JVM 0 1"});
  addJvmFile("17.0.1", kSearchAll);
  addEndingJavas();
  EXPECT_THAT(runWithId({"-vs:log", "/setup.log"}), Ended(255, kCanceled));
  EXPECT_EQ(verified().size(), 1U);
}

TEST_F(EndedSearch, VerifiesNoFurtherCandidate) {
  addJvmFile("17.0.1");
  addEndingJavas();
  tree.file(inTree("/input.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /setup.log\n");
  EXPECT_THAT(runWithId({"-vs:in", "/input.tag"}), Ended(255, kCanceled));
  EXPECT_EQ(verified().size(), 1U);
}

TEST_F(ExhaustiveSearch, ListsEveryJavaOfTheMachine) {
  addJvmFile("17...");
  addSecondJvmFile("11.0.2");
  addJava("/opt/a", "17.0.1");
  addJava("/opt/b c", "17.0.9");
  addJava("/opt/d", "11.0.2");
  addJava("/usr/lib/jvm/e", "1.4.2");
  addJava("/var/tmp/f", "17");
  EXPECT_THAT(searchAll(), ElementsAre("/opt/a /opt/a", "/opt/b c /opt/b c", "/opt/d /opt/d",
                                       "/var/tmp/f /var/tmp/f"));
}

TEST_F(ExhaustiveSearch, ListsAHomeForEveryJvmFileThatItSatisfies) {
  addJvmFile("17...");
  addSecondJvmFile("17.0.1");
  addJava("/opt/a", "17.0.1");
  EXPECT_THAT(searchAll(), ElementsAre("/opt/a /opt/a", "/opt/a /opt/a"));
  EXPECT_EQ(verified().size(), 2U);
}

TEST_F(ExhaustiveSearch, ListsNothingOnAMachineWithoutJava) {
  addJvmFile("17");
  EXPECT_THAT(searchAll(), IsEmpty());
  EXPECT_THAT(searchAll({"-vs:silent"}), IsEmpty());
}

TEST_F(ExhaustiveSearch, ListsAHomeInTheRoot) {
  addJvmFile("17.0.1");
  addJava("", "17.0.1");
  // The home is what stands in front of the executable: nothing. No home has an empty name.
  EXPECT_THAT(searchAll(), IsEmpty());
}

TEST_F(ExhaustiveSearch, ShowsItsProgressAheadOfTheList) {
  addJvmFile("17.0.1");
  addJava("/opt/a", "17.0.1");
  tree.file(inTree("/input.tag"), "ACTION: SEARCH_ALL\nSHOW_PROGRESS: 1\n");
  const ProcessResult result = runInside({"-vs:in", "/input.tag"});
  EXPECT_EQ(maskTempNames(result.out),
            "\nSearching for Java(tm) Virtual Machine...\n." + std::string(kScanning) +
                "\nVerifying Java 17.0.1\n.......1\n/opt/a\n/tmp/vsj\n\n");
  for (const std::string& name : tree.list(inTree("/tmp"))) {
    std::filesystem::remove(tree.path(inTree("/tmp/" + name)));
  }
}

TEST_F(ExhaustiveSearch, AlsoWorksForALauncherStartedByItsBareNameInTheRoot) {
  addScript({"FIND_JVM 0 1", "LAUNCH \"@S2@\" 0"});
  addLaunchScript("echo %LAUNCHER_FILE%() in \"<$(pwd)>\"");
  addJvmFile("17.0.1", kSearchAll);
  addJava("/opt/a", "17.0.1");
  file.write(tree.path(inTree("/setup.bin")));
  EXPECT_THAT(runCommandInside({"/bin/sh", "-c", "PATH=.; exec setup.bin"}),
              Ended(0, "Demo\n/setup.bin in </>\n"));
}

}  // namespace
}  // namespace vessant::test
