#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Verification : public testing::Test {
 protected:
  std::unique_ptr<JVMMatch> verify(JVMFile& file, const std::string& home) {
    return file.verifyAt(text(home), fixture.verification);
  }
  std::string command() {
    EXPECT_EQ(fixture.run.platform.commands.size(), 1U);
    return str(fixture.run.platform.commands.back().command);
  }
  /// The command of a verification in "jdk", with the home in it replaced by "HOME".
  std::string commandOf(const std::string& jvmFile) {
    const std::string home = fixture.home("jdk", "17");
    EXPECT_NO_THROW(verify(fixture.jvmFile(jvmFile), home));
    const std::string line = command();
    EXPECT_EQ(line.find(home), 1U) << line;
    return "\"HOME" + line.substr(1 + home.size());
  }

  JvmFixture fixture;
};

TEST_F(Verification, GivesTheMatch) {
  JVMFile& file = fixture.jvmFile(jvmFileText("17"));
  const std::string home = fixture.home("jdk", "17");
  const std::unique_ptr<JVMMatch> match = verify(file, home);
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), home);
  EXPECT_FALSE(match->foundByRelativeHint());
  EXPECT_EQ(&match->tags(), &file.tags());
}

TEST_F(Verification, KeepsTheHomeAsItWasGiven) {
  JVMFile& file = fixture.jvmFile(jvmFileText("17"));
  const std::string home = fixture.home("jdk", "17");
  const std::unique_ptr<JVMMatch> match = verify(file, home + "/");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), home + "/");
  EXPECT_THAT(command(), StartsWith("\"" + home + "/bin/java\" "));
  EXPECT_TRUE(
      fixture.run.log.contains("Verifying JVM at " + home + "/bin/java\n   for JVM: Java 17"));
  EXPECT_TRUE(fixture.run.log.contains("Found matching JVM at " + home + "/"));
}

TEST_F(Verification, TellsTheLogAndTheDisplay) {
  const std::string home = fixture.home("jdk", "17");
  verify(fixture.jvmFile(jvmFileText("17")), home);
  const std::vector<std::string> lines = fixture.run.log.texts();
  EXPECT_EQ(lines.front(), "Verifying JVM at " + home + "/bin/java\n   for JVM: Java 17");
  EXPECT_EQ(lines.back(), "Found matching JVM at " + home);
  for (const RecordingLog::Line& line : fixture.run.log.lines()) {
    EXPECT_EQ(line.level, LogLevel::Information) << line.text;
  }
  EXPECT_THAT(fixture.run.progress.phases,
              ElementsAre(std::pair(SearchPhase::Verifying, std::string("Java 17"))));
  EXPECT_EQ(fixture.run.progress.steps, 6);
}

TEST_F(Verification, AMismatchIsNoMatch) {
  const std::string home = fixture.home("jdk", "11");
  EXPECT_EQ(verify(fixture.jvmFile(jvmFileText("17")), home), nullptr);
  EXPECT_FALSE(fixture.run.log.contains("Found matching JVM at " + home));
  EXPECT_EQ(fixture.run.progress.steps, 6);
}

TEST_F(Verification, AProgramThatIsNoJavaIsNoMatch) {
  const std::string home = fixture.home("jdk", "17");
  fixture.versions.clear();
  EXPECT_EQ(verify(fixture.jvmFile(jvmFileText("17")), home), nullptr);
  EXPECT_TRUE(fixture.run.log.contains("Invalid magic value: \n", LogLevel::Error));
  EXPECT_EQ(fixture.run.progress.steps, 6);
}

TEST_F(Verification, AMissingExecutableIsLoggedAndNothingRuns) {
  const std::string home = fixture.tree.dir("empty");
  JVMFile& file = fixture.jvmFile(jvmFileText("17"));
  EXPECT_EQ(verify(file, home), nullptr);
  EXPECT_THAT(fixture.run.log.texts(),
              ElementsAre("Verifying JVM at " + home + "/bin/java\n   for JVM: Java 17",
                          home + "/bin/java does not exist"));
  EXPECT_TRUE(fixture.run.log.contains(home + "/bin/java does not exist", LogLevel::Information));
  EXPECT_EQ(fixture.run.progress.steps, 2);
  EXPECT_EQ(fixture.run.progress.phases.size(), 1U);
  EXPECT_TRUE(fixture.run.platform.commands.empty());
  EXPECT_EQ(file.tag("JVM_HOME"), "");
}

TEST_F(Verification, ALinkWithoutATargetDoesNotExist) {
  fixture.tree.link("jdk/bin/java", "nowhere");
  const std::string home = fixture.tree.path("jdk");
  EXPECT_EQ(verify(fixture.jvmFile(jvmFileText("17")), home), nullptr);
  EXPECT_TRUE(fixture.run.log.contains(home + "/bin/java does not exist"));
}

TEST_F(Verification, ANamelessCandidateIsPassedOverSilently) {
  EXPECT_EQ(verify(fixture.jvmFile(jvmFileText("17")), ""), nullptr);
  EXPECT_EQ(verify(fixture.jvmFile("DESC: x\nJVM_PROPERTIES: a=b\n"), fixture.home("jdk", "17")),
            nullptr);
  EXPECT_EQ(verify(fixture.jvmFile("DESC: no properties either\n"), ""), nullptr);
  EXPECT_TRUE(fixture.run.log.lines().empty());
  EXPECT_TRUE(fixture.run.progress.phases.empty());
  EXPECT_EQ(fixture.run.progress.steps, 0);
}

TEST_F(Verification, AFileWithoutPropertiesNeverMatches) {
  const std::string home = fixture.home("jdk", "17");
  for (const char* properties :
       {"", "JVM_PROPERTIES: \"\"\n", "JVM_PROPERTIES:\n\"\"\na=b\n/:\n"}) {
    fixture.run.log.clear();
    JVMFile& file = fixture.jvmFile(std::string("JVM_EXE: bin/java\n") + properties);
    EXPECT_EQ(verify(file, home), nullptr);
    EXPECT_THAT(
        fixture.run.log.lines(),
        ElementsAre(RecordingLog::Line{"Unable to verify " + fixture.tree.path("tags/file.tag") +
                                           " because the JVM_PROPERTIES tag was not specified.",
                                       LogLevel::Warning}));
  }
  EXPECT_TRUE(fixture.run.platform.commands.empty());
  EXPECT_TRUE(fixture.run.progress.phases.empty());
}

TEST_F(Verification, BuildsTheCommand) {
  EXPECT_EQ(commandOf(jvmFileText("17")),
            R"("HOME/bin/java" -cp "":"/v/verify.jar":""   "Verify" java.version)");
}

TEST_F(Verification, PutsTheRequiredArgumentsIntoTheCommand) {
  EXPECT_EQ(commandOf(jvmFileText("17", "REQ_JAVA_ARGS: -Xmx64m -Da=@B@\nB: c\n")),
            R"("HOME/bin/java" -cp "":"/v/verify.jar":""  -Xmx64m -Da=c "Verify" java.version)");
}

TEST_F(Verification, NamesEveryPropertyInOrder) {
  EXPECT_THAT(commandOf("JVM_EXE: bin/java\n"
                        "JVM_PROPERTIES:\njava.version = 17\n os.arch=a=b \n\" user.dir \t= x\"\n"
                        "java.vendor=\n/:\n"),
              EndsWith(" \"Verify\" java.version os.arch user.dir java.vendor"));
}

TEST_F(Verification, DoublesTheOuterQuotesOfAClassPathAlone) {
  fixture.verification.verificationClass = {"\"a.jar\",\"b.jar\"", "Check"};
  EXPECT_EQ(commandOf(jvmFileText("17")),
            R"("HOME/bin/java" -cp "":"a.jar:b.jar":""   Check java.version)");
}

TEST_F(Verification, PutsAClassPathWithoutOuterQuotesInAsItIs) {
  fixture.verification.verificationClass = {"\"a.jar\", \"b.jar\" ", "Check"};
  EXPECT_EQ(commandOf(jvmFileText("17")),
            R"("HOME/bin/java" -cp "":a.jar:b.jar:""   Check java.version)");
}

TEST_F(Verification, AnEmptyClassPathIsAnEmptyList) {
  fixture.verification.verificationClass = {"", ""};
  EXPECT_EQ(commandOf(jvmFileText("17")), R"("HOME/bin/java" -cp "":""    java.version)");
}

TEST_F(Verification, PassesTheErrorOfABadClassPathOn) {
  fixture.verification.verificationClass = {"bare.jar", "Check"};
  const std::string home = fixture.home("jdk", "17");
  const std::string start = "\"" + home + "/@JVM_EXE@\" %CP%(";
  try {
    verify(fixture.jvmFile(jvmFileText("17")), home);
    FAIL() << "no exception";
  } catch (const LauncherException& error) {
    EXPECT_EQ(str(error.message()), "Launch script error: Expected string arg. (near character " +
                                        std::to_string(start.size()) + ")");
  }
  EXPECT_TRUE(fixture.run.platform.commands.empty());
}

TEST_F(Verification, PassesTheErrorOfAChildThatCannotStartOn) {
  fixture.run.platform.onExecute = [](FakePlatform&) { throw LauncherException("no fork"); };
  const std::string home = fixture.home("jdk", "17");
  EXPECT_THROW(verify(fixture.jvmFile(jvmFileText("17")), home), LauncherException);
}

TEST_F(Verification, CapturesTheOutputInTheDirectoryOfTheLauncher) {
  verify(fixture.jvmFile(jvmFileText("17")), fixture.home("jdk", "17"));
  ASSERT_EQ(fixture.run.platform.commands.size(), 1U);
  const ChildCommand& child = fixture.run.platform.commands[0];
  EXPECT_EQ(str(child.workingDirectory), fixture.tree.path("app"));
  EXPECT_TRUE(child.captureOutput);
  EXPECT_TRUE(child.redirectChildOutput);
  EXPECT_FALSE(child.runInBackground);
  EXPECT_FALSE(child.replaceProcess);
}

TEST_F(Verification, LeavesTheArchivesOfTheProgramOut) {
  fixture.file.add(kClassPathArchive, 1, "app.jar", "archive");
  fixture.load();
  EXPECT_THAT(commandOf(jvmFileText("17")), Not(HasSubstr("app.jar")));
  EXPECT_TRUE(fixture.tree.list("temp").empty());
}

TEST_F(Verification, SetsTheHomeForTheRunAndLeavesIt) {
  JVMFile& file = fixture.jvmFile(jvmFileText("17", "JVM_HOME: /old\n"));
  const std::string home = fixture.home("jdk", "11");
  EXPECT_EQ(verify(file, home), nullptr);
  EXPECT_EQ(str(file.tag("JVM_HOME")), home);
  EXPECT_THAT(fixture.run.platform.settings,
              ElementsAre(std::pair(std::string("JAVA_HOME"), home),
                          std::pair(std::string("JAVA_HOME"), std::string())));
}

TEST_F(Verification, ChecksTheOtherPropertiesWhenOneIsInvalid) {
  const std::string home = fixture.home("jdk", "17");
  const std::string wrong =
      "JVM_EXE: bin/java\nJVM_PROPERTIES:\njava.version\njava.version=11\n/:\n";
  EXPECT_EQ(verify(fixture.jvmFile(wrong), home), nullptr);
  EXPECT_TRUE(fixture.run.log.contains("Invalid JVM_PROPERTIES setting (java.version) in JVM File ",
                                       LogLevel::Warning));
  EXPECT_THAT(command(), EndsWith("\"Verify\" java.version"));
}

TEST_F(Verification, AnInvalidPropertyAddsNothing) {
  EXPECT_THAT(commandOf("JVM_EXE: bin/java\nJVM_PROPERTIES:\na=17\n\"\"\nb\n/:\n"),
              EndsWith("\"Verify\" a"));
  EXPECT_EQ(fixture.logged({"Invalid JVM_PROPERTIES", "Found matching"}),
            (std::vector<std::string>{"Invalid JVM_PROPERTIES setting () in JVM File ",
                                      "Invalid JVM_PROPERTIES setting (b) in JVM File ",
                                      "Found matching JVM at " + fixture.tree.path("jdk")}));
}

TEST_F(Verification, RequiresEveryProperty) {
  const std::string home = fixture.home("jdk", "17\namd64");
  const std::string start = "JVM_EXE: bin/java\nJVM_PROPERTIES:\njava.version=17\nos.arch=";
  EXPECT_NE(verify(fixture.jvmFile(start + "amd64\n/:\n"), home), nullptr);
  EXPECT_EQ(verify(fixture.jvmFile(start + "ppc\n/:\n"), home), nullptr);
}

class OwnHome : public Verification {
 protected:
  std::unique_ptr<JVMMatch> verifyOwn(const std::string& jvmFile) {
    return fixture.jvmFile(jvmFile).verifyOwnHome(fixture.verification);
  }
};

TEST_F(OwnHome, IsTheFirstHomeThatTheFileNames) {
  const std::string home = fixture.home("jdk", "17");
  const std::unique_ptr<JVMMatch> match =
      verifyOwn(jvmFileText("17", "JVM_HOME:\n" + home + "\n/other\n/:\n"));
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), home);
}

TEST_F(OwnHome, IsNoneWhenTheFileNamesNone) {
  EXPECT_EQ(verifyOwn(jvmFileText("17")), nullptr);
  EXPECT_TRUE(fixture.run.log.lines().empty());
}

TEST_F(OwnHome, IsNoneWithAWarningForAFileWithoutProperties) {
  for (const char* home : {"", "JVM_HOME: /jdk\n"}) {
    fixture.run.log.clear();
    EXPECT_EQ(verifyOwn(std::string("JVM_EXE: bin/java\n") + home), nullptr);
    EXPECT_THAT(
        fixture.run.log.lines(),
        ElementsAre(RecordingLog::Line{"Unable to verify " + fixture.tree.path("tags/file.tag") +
                                           " because the JVM_PROPERTIES tag was not specified.",
                                       LogLevel::Warning}));
  }
}

}  // namespace
}  // namespace vessant::test
