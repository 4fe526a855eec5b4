// The actions of the input file: the lines that they print for the program that asked.

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/tagfile/TagFile.h"
#include "support/FakeJavaHome.h"
#include "support/ProcessScope.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kNoJvm =
    "A suitable JVM could not be found. Please run the program again using the option -vs:javahome "
    "<JAVA HOME DIR>";

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

class ActionTest : public testing::Test {
 protected:
  ActionTest() { run.script({"SET N5 = 1"}); }

  std::int32_t act(const std::string& keys, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = options;
    arguments.insert(arguments.end(), {"-vs:in", run.inputFile(keys)});
    const std::int32_t result = run.run(arguments);
    EXPECT_EQ(run.n(5), 0) << "the script ran";
    return result;
  }
  /// An embedded JVM file whose hint leads to a home that verifies; returns the home.
  std::string addMatchingJvm() {
    const std::string home = run.javaHome("jdk", "17");
    run.verificationClass().jvmFile(10, jvmFileText("17", "PATH_HINT: " + home + "\n"));
    return home;
  }
  /// A verification class that cannot be extracted because there is no temporary root.
  std::string breakTempRoot() {
    run.verificationClass();
    run.state.tempDirectory = "/no/such/root";
    return "Cannot use /no/such/root as the temp directory because it does not exist. Please run "
           "the program again using the option -vs:tempdir <temp dir> to specify a different "
           "directory to use.";
  }

  DriverRun run;
};

using SearchActionTest = ActionTest;

TEST_F(SearchActionTest, PrintsOneTheHomeAndTheJvmFileWhichStays) {
  const std::string home = addMatchingJvm();
  EXPECT_EQ(act("ACTION: SEARCH\n"), 0);
  const std::vector<std::string> lines = linesOf(run.out);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], "1");
  EXPECT_EQ(lines[1], home);
  EXPECT_THAT(lines[2], testing::StartsWith(run.tree.path("temp/vsj")));
  run.end();
  EXPECT_THAT(run.tempFiles(),
              testing::ElementsAre(lines[2].substr(run.tree.path("temp/").size())));
  EXPECT_EQ(run.state.console.progressCount, 100);
}

TEST_F(SearchActionTest, WritesTheJvmFileForItsReader) {
  const std::string home = addMatchingJvm();
  act("ACTION: SEARCH\n");
  RecordingLog log;
  const std::string path = linesOf(run.out).at(2);
  const TagFile tags{SString(path), log};
  EXPECT_EQ(str(tags.getValue("JVM_HOME")), home);
  EXPECT_EQ(str(tags.getValue("JVM_FILE")), path);
  EXPECT_EQ(tags.getValue("JVM_TEMP"), "0");
  EXPECT_EQ(tags.getValue("DESC"), "Java 17");
}

TEST_F(SearchActionTest, PrintsItsResultAlsoInSilence) {
  const std::string home = addMatchingJvm();
  EXPECT_EQ(act("ACTION: SEARCH\nSHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 1\n", {"-vs:silent"}), 0);
  EXPECT_THAT(run.out, testing::StartsWith("1\n" + home + "\n"));
}

TEST_F(SearchActionTest, PrintsZeroWithoutAJvm) {
  EXPECT_EQ(act("ACTION: SEARCH\n"), 0);
  EXPECT_EQ(run.out, "0\n");
  EXPECT_THAT(run.log(), HasSubstr(std::string("\n") + kNoJvm + "\n"));
}

TEST_F(SearchActionTest, ShowsTheFailureWhenAsked) {
  EXPECT_EQ(act("ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n"), 0);
  EXPECT_EQ(run.out, std::string(kNoJvm) + "\n0\n");
}

TEST_F(SearchActionTest, ShowsItsStageWhenAsked) {
  EXPECT_EQ(act("ACTION: SEARCH\nSHOW_PROGRESS: 1\n"), 0);
  EXPECT_EQ(run.out, "\nSearching for Java(tm) Virtual Machine...\n0\n\n");
}

TEST_F(SearchActionTest, LogsAnInterruptionAndPrintsNothing) {
  breakTempRoot();
  EXPECT_EQ(act("ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n"), 0);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), EndsWith(errorLine("Unexpected failure in search.")));
  EXPECT_EQ(run.state.console.progressCount, 100);
}

/// The disk is a directory of the test.
class SearchAllActionTest : public ActionTest {
 protected:
  SearchAllActionTest() { run.state.fileSystemRoot = SString(run.tree.dir("disk")); }
};

TEST_F(SearchAllActionTest, PrintsZeroWithoutAJvm) {
  EXPECT_EQ(act("ACTION: SEARCH_ALL\n"), 0);
  EXPECT_EQ(run.out, "0\n");
  EXPECT_THAT(run.log(), HasSubstr("\nFinding all matching JVMs\nBeginning exhaustive search\n"));
  EXPECT_EQ(run.state.console.progressCount, 100);
}

TEST_F(SearchAllActionTest, PrintsItsResultAlsoInSilence) {
  EXPECT_EQ(act("ACTION: SEARCH_ALL\nSHOW_PROGRESS: 1\n", {"-vs:silent"}), 0);
  EXPECT_EQ(run.out, "0\n");
}

TEST_F(SearchAllActionTest, ShowsItsStageAndThePhaseWhenAsked) {
  EXPECT_EQ(act("ACTION: SEARCH_ALL\nSHOW_PROGRESS: 1\n"), 0);
  EXPECT_EQ(run.out,
            "\nSearching for Java(tm) Virtual Machine...\n"
            "\nScanning disk(s) for a Java(tm) Virtual Machine...\n0\n\n");
}

TEST_F(SearchAllActionTest, LogsAnInterruptionAndPrintsZero) {
  const std::string cause = breakTempRoot();
  EXPECT_EQ(act("ACTION: SEARCH_ALL\n"), 0);
  EXPECT_EQ(run.out, "0\n");
  EXPECT_THAT(run.log(), EndsWith(errorLine("Unable to search for all JVMs." + cause)));
}

TEST_F(SearchAllActionTest, PrintsEveryHomeAndItsJvmFileWhichStays) {
  const std::string home = run.javaHome("disk/jdk", "17");
  run.verificationClass().jvmFile(10, jvmFileText("17", "SEARCH_ALL: 1\n"));
  EXPECT_EQ(act("ACTION: SEARCH_ALL\n"), 0);
  const std::vector<std::string> lines = linesOf(run.out);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], "1");
  EXPECT_EQ(lines[1], home);
  run.end();
  EXPECT_THAT(run.tempFiles(),
              testing::ElementsAre(lines[2].substr(run.tree.path("temp/").size())));
}

/// A cancelled action has no result, not even "0".
TEST_F(SearchAllActionTest, EndsWithTheRunWhenItIsCancelled) {
  run.state.cancelFlag.set();
  EXPECT_EQ(act("ACTION: SEARCH_ALL\nSHOW_FAIL_MSG: 1\n"), -1);
  EXPECT_THAT(run.out, EndsWith("Canceled by the user.\n"));
  EXPECT_THAT(run.out, Not(HasSubstr("0\n")));
  EXPECT_THAT(run.log(), EndsWith("\n" + errorLine("Canceled by the user.")));
}

TEST_F(SearchActionTest, EndsWithTheRunWhenItIsCancelled) {
  addMatchingJvm();
  run.state.cancelFlag.set();
  EXPECT_EQ(act("ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n"), -1);
  EXPECT_THAT(run.out, EndsWith("Canceled by the user.\n"));
  EXPECT_THAT(run.log(), EndsWith("\n" + errorLine("Canceled by the user.")));
  EXPECT_THAT(run.log(), Not(HasSubstr("Unexpected failure")));
}

TEST_F(SearchAllActionTest, ShowsAnInterruptionWhenAsked) {
  const std::string cause = breakTempRoot();
  EXPECT_EQ(act("ACTION: SEARCH_ALL\nSHOW_FAIL_MSG: 1\n"), 0);
  EXPECT_EQ(run.out, "Unable to search for all JVMs." + cause + "\n0\n");
}

class VerifyActionTest : public ActionTest {
 protected:
  std::string keys(const std::string& jvmFile, const std::string& javaHome) {
    return "ACTION: VERIFY_JVM\nVERIFY_JVM_FILE: " + jvmFile + "\nVERIFY_JVM_HOME: " + javaHome +
           "\n";
  }

  std::string home = run.javaHome("jdk", "17");
  std::string matching = run.tree.file("17.jvm", jvmFileText("17"));
  std::string differing = run.tree.file("21.jvm", jvmFileText("21"));
};

TEST_F(VerifyActionTest, PrintsOneForAHomeThatVerifies) {
  run.verificationClass();
  EXPECT_EQ(act(keys(matching, home)), 0);
  EXPECT_EQ(run.out, "1\n");
  EXPECT_EQ(run.s(1), home);
  EXPECT_THAT(run.log(), HasSubstr("\nAfter VERIFY, the jvm home is " + home + "\n"));
  EXPECT_EQ(run.state.console.progressCount, 100);
}

TEST_F(VerifyActionTest, PrintsZeroForAHomeThatDoesNot) {
  run.verificationClass();
  EXPECT_EQ(act(keys(differing, home)), 0);
  EXPECT_EQ(run.out, "0\n");
  EXPECT_THAT(run.log(), EndsWith("\nIn VERIFY, the jvm is invalid.\n"));
}

TEST_F(VerifyActionTest, ShowsTheFailureWhenAsked) {
  EXPECT_EQ(act(keys(matching, "/no/such/home") + "SHOW_FAIL_MSG: 1\n"), 0);
  EXPECT_THAT(run.out, EndsWith("\n..The JVM is not valid.\n0\n\n"));
}

TEST_F(VerifyActionTest, PrintsItsResultAlsoInSilence) {
  run.verificationClass();
  EXPECT_EQ(act(keys(matching, home) + "SHOW_PROGRESS: 1\n", {"-silent"}), 0);
  EXPECT_EQ(run.out, "1\n");
}

TEST_F(VerifyActionTest, TellsThatTheJvmFileCannotBeRead) {
  EXPECT_EQ(act(keys("/no/such/file", home)), -1);
  EXPECT_EQ(run.out, "Unable to load input file: /no/such/file\n");
  EXPECT_EQ(run.state.console.progressCount, 0);
}

TEST_F(VerifyActionTest, OnlyLogsThatAKeyIsMissing) {
  const std::string text =
      "TO execute the VERIFY_JVM action, you must also provide values in the input file for "
      "VERIFY_JVM_FILE and VERIFY_JVM_HOME.";
  for (const std::string& given :
       {std::string(), "VERIFY_JVM_FILE: " + matching + "\n", "VERIFY_JVM_HOME: " + home + "\n"}) {
    DriverRun other;
    const std::string in =
        other.inputFile("ACTION: VERIFY_JVM\nSHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 1\n" + given);
    EXPECT_EQ(other.run({"-vs:in", in}), -1);
    EXPECT_EQ(other.out, "");
    EXPECT_THAT(other.log(), EndsWith(errorLine(text)));
    EXPECT_EQ(other.state.console.progressCount, 0);
  }
}

class InstallActionTest : public ActionTest {
 protected:
  std::int32_t install(const std::string& commands, const std::string& more = "",
                       const std::vector<std::string>& options = {}) {
    const std::string installer = run.tree.program("install er", "#!/bin/sh\n" + commands);
    return act("ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: " + installer +
                   "\nINSTALL_JVM_DEST: " + destination + "\n" + more,
               options);
  }
  [[nodiscard]] std::string jvmTags() const { return readFile(destination + "/jvm"); }

  std::string destination = run.tree.dir("new jvm");
};

TEST_F(InstallActionTest, RunsTheInstallerAndPrintsItsJvmFile) {
  EXPECT_EQ(install("pwd > where; echo 'DESC: New' > jvm\n"), 0);
  EXPECT_EQ(run.out, destination + "/jvm\n");
  EXPECT_EQ(readFile(destination + "/where"), destination + "\n");
  EXPECT_EQ(jvmTags(), "DESC:  New\nJVM_HOME:  " + destination + "\nJVM_FILE:  " + destination +
                           "/jvm\nJVM_TEMP:  0\n");
  EXPECT_EQ(run.state.console.progressCount, 100);
}

TEST_F(InstallActionTest, ResolvesTheHomeOfTheJvmFile) {
  install("echo 'JVM_HOME: jre' > jvm\n");
  EXPECT_THAT(jvmTags(), HasSubstr("JVM_HOME:  " + destination + "/jre\n"));
  install("echo 'JVM_HOME: /opt/jre' > jvm\n");
  EXPECT_THAT(jvmTags(), HasSubstr("JVM_HOME:  /opt/jre\n"));
}

TEST_F(InstallActionTest, LetsTheInstallerWriteToTheConsole) {
  install("echo installing; echo > jvm\n", "SHOW_PROGRESS: 1\n");
  EXPECT_EQ(run.out, "installing\n" + destination + "/jvm\n\n");
}

TEST_F(InstallActionTest, PrintsItsResultAlsoInSilence) {
  install("echo > jvm; exit 3\n", "", {"-vs:silent"});
  EXPECT_EQ(run.out, destination + "/jvm\n");
}

TEST_F(InstallActionTest, TellsThatTheInstallerMadeNoJvmFile) {
  EXPECT_EQ(install("exit 0\n"), -1);
  EXPECT_EQ(run.out, "Unable to load input file: " + destination + "/jvm\n");
}

TEST_F(InstallActionTest, TellsThatThereIsNoDestination) {
  destination = "/no/such/destination";
  EXPECT_EQ(install("exit 0\n"), -1);
  EXPECT_EQ(run.out,
            "Error setting working directory: /no/such/destination No such file or directory\n");
}

TEST_F(InstallActionTest, CountsRelativeNamesFromTheDirectoryOfTheStart) {
  run.tree.program("work/installer", "#!/bin/sh\necho > jvm\n");
  run.tree.dir("work/target");
  const ScopedDirectory directory(run.tree.path("work"));
  EXPECT_EQ(act("ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: installer\nINSTALL_JVM_DEST: target/\n"), 0);
  EXPECT_EQ(run.out, "target/jvm\n");
}

class RelativeDestinationTest : public InstallActionTest {
 protected:
  /// Installs into "target" of the directory "work", which is the current one.
  std::int32_t installIn(const std::string& directory, const std::string& commands) {
    run.tree.program("work/installer", "#!/bin/sh\n" + commands);
    const ScopedDirectory current(run.tree.path("work"));
    return act("ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: installer\nINSTALL_JVM_DEST: " + directory +
               "\n");
  }
};

TEST_F(RelativeDestinationTest, GetsAJvmFileThatWorksFromAnyDirectory) {
  const std::string target = run.tree.dir("work/target");
  EXPECT_EQ(installIn("target", "echo 'JVM_HOME: jre' > jvm\n"), 0);
  EXPECT_EQ(readFile(target + "/jvm"),
            "JVM_HOME:  " + target + "/jre\nJVM_FILE:  " + target + "/jvm\nJVM_TEMP:  0\n");
}

TEST_F(RelativeDestinationTest, StaysAsGivenInMessages) {
  EXPECT_EQ(installIn("missing", ""), -1);
  EXPECT_EQ(run.out, "Error setting working directory: missing No such file or directory\n");
  run.tree.dir("work/target");
  EXPECT_EQ(installIn("target", ""), -1);
  EXPECT_EQ(run.out, "Unable to load input file: target/jvm\n");
}

TEST_F(InstallActionTest, DoesNothingWithoutItsKeys) {
  const std::string marker = run.tree.path("marker");
  const std::string installer = run.tree.program("installer", "#!/bin/sh\n: > " + marker + "\n");
  for (const std::string& given : {std::string(), "INSTALL_JVM_EXE: " + installer + "\n",
                                   "INSTALL_JVM_DEST: " + destination + "\n"}) {
    DriverRun other;
    const std::string in = other.inputFile("ACTION: INSTALL_JVM\n" + given);
    EXPECT_EQ(other.run({"-vs:in", in}), 0);
    EXPECT_EQ(other.out, "");
    EXPECT_THAT(other.log(), Not(HasSubstr("ERROR")));
    EXPECT_EQ(other.state.console.progressCount, 100);
  }
  EXPECT_FALSE(std::filesystem::exists(marker));
}

}  // namespace
}  // namespace vessant::test
