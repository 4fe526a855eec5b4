// Why a candidate is refused, and what a search that found nothing tells of its candidates.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Refusal : public testing::Test {
 protected:
  Refusal() { fixture.search.fileSystemRoot = text(fixture.tree.dir("root")); }

  /// The reasons that the log gives for a home, behind "Refused JVM at HOME: ".
  std::vector<std::string> reasons(const std::string& home) const {
    const std::string beginning = "Refused JVM at " + home + ": ";
    std::vector<std::string> found;
    for (const std::string& line : fixture.logged({beginning})) {
      EXPECT_TRUE(fixture.run.log.contains(line, LogLevel::Information));
      found.push_back(line.substr(beginning.size()));
    }
    return found;
  }
  /// The reason against a home whose Java prints this and ends so.
  std::string reasonAgainst(const std::string& output, const ChildResult& end,
                            const std::string& jvmFile = jvmFileText("17...")) {
    fixture.run.log.clear();
    fixture.run.platform.executor = [&](const ChildCommand& command, ProgressSink& /*progress*/) {
      command.stdoutText->append(output);
      return end;
    };
    const std::string home = fixture.home("jdk", "");
    EXPECT_EQ(fixture.jvmFile(jvmFile).verifyAt(text(home), fixture.verification), nullptr);
    const std::vector<std::string> found = reasons(home);
    return found.size() == 1 ? found.front() : "not one reason";
  }
  /// The reason against a real program.
  std::string reasonAgainstProgram(const std::string& program) {
    fixture.runForReal();
    fixture.tree.program("jdk/bin/java", program);
    return reasonAgainstHome("jdk");
  }
  std::string reasonAgainstHome(const std::string& relative) {
    fixture.runForReal();
    const std::string home = fixture.tree.path(relative);
    JVMFile& file = fixture.jvmFile(jvmFileText("17..."));
    EXPECT_EQ(file.verifyAt(text(home), fixture.verification), nullptr);
    const std::vector<std::string> found = reasons(home);
    return found.size() == 1 ? found.front() : "not one reason";
  }
  std::vector<std::string> summary() const { return fixture.logged({"JVM search: "}); }

  JvmFixture fixture;
};

TEST_F(Refusal, NamesTheFirstPropertyThatDiffers) {
  const std::string two = "JVM_EXE: bin/java\nJVM_PROPERTIES:\nos.arch=amd64\na=1\n/:\n";
  EXPECT_EQ(reasonAgainst("1739021872\n1.8.0_292\n", {}),
            "java.version is 1.8.0_292, wanted 17...");
  EXPECT_EQ(reasonAgainst("1739021872\namd64\n2\n", {}, two), "a is 2, wanted 1");
  EXPECT_EQ(reasonAgainst("1739021872\nppc\n2\n", {}, two), "os.arch is ppc, wanted amd64");
  EXPECT_EQ(reasonAgainst("1739021872\n\n", {}), "java.version is empty, wanted 17...");
  EXPECT_EQ(reasonAgainst("1739021872\n11\n", {.exitCode = 1}), "java.version is 11, wanted 17...");
}

TEST_F(Refusal, ShowsTheBeginningOfALongValue) {
  EXPECT_EQ(reasonAgainst("1739021872\n" + std::string(5000, 'x') + "\n", {}),
            "java.version is " + std::string(200, 'x') + ", wanted 17...");
}

TEST_F(Refusal, NamesTheStatusOfAProgramThatDoesNotAnswer) {
  EXPECT_EQ(reasonAgainst("", {.exitCode = 3}), "ended with status 3");
  EXPECT_EQ(reasonAgainst("Error: no VM\n", {.exitCode = 137}), "ended with status 137");
  EXPECT_EQ(reasonAgainst("hello\n", {}), "no magic line");
}

TEST_F(Refusal, NamesTheLimitThatACandidateBroke) {
  const std::string right = "1739021872\n17.0.1\n";
  EXPECT_EQ(reasonAgainst(right, {.end = ChildEnd::TimeLimit}), "too slow");
  EXPECT_EQ(reasonAgainst(right, {.end = ChildEnd::OutputLimit}), "too much output");
}

TEST_F(Refusal, LogsTheBeginningOfTooMuchOutput) {
  reasonAgainst(std::string(1 << 20, 'x'), {.end = ChildEnd::OutputLimit});
  for (const RecordingLog::Line& line : fixture.run.log.lines()) {
    EXPECT_LE(line.text.size(), 64U << 10);
  }
  EXPECT_TRUE(fixture.run.log.contains(std::string(64 << 10, 'x')));
}

TEST_F(Refusal, ComesAfterOneMinuteOr64Mebibytes) {
  reasonAgainst("", {.exitCode = 1});
  ASSERT_EQ(fixture.run.platform.commands.size(), 1U);
  const ChildCommand& command = fixture.run.platform.commands[0];
  EXPECT_EQ(command.limits.seconds, 60U);
  EXPECT_EQ(command.limits.outputBytes, 64U << 20);
  EXPECT_TRUE(command.emptyInput);
}

TEST_F(Refusal, TellsRealProgramsApart) {
  EXPECT_EQ(reasonAgainstProgram("#!/bin/sh\nexit 3\n"), "ended with status 3");
  fixture.run.log.clear();
  EXPECT_EQ(reasonAgainstProgram("#!/bin/sh\necho hello\n"), "no magic line");
  fixture.run.log.clear();
  EXPECT_EQ(reasonAgainstProgram("#!/bin/sh\necho 1739021872\necho 11.0.1\n"),
            "java.version is 11.0.1, wanted 17...");
  fixture.tree.file("data/bin/java", "no program");
  EXPECT_EQ(reasonAgainstHome("data"), "not executable");
  fixture.tree.dir("directory/bin/java");
  EXPECT_EQ(reasonAgainstHome("directory"), "not executable");
}

TEST_F(Refusal, ComesToARealProgramThatWritesTooMuchOrTakesTooLong) {
  fixture.search.candidateLimits = {.outputBytes = 10000, .seconds = 60};
  EXPECT_EQ(reasonAgainstProgram("#!/bin/sh\necho 1739021872\necho 17.0.1\n"
                                 "while :; do echo more and more and more; done\n"),
            "too much output");
  fixture.run.log.clear();
  fixture.search.candidateLimits = {.outputBytes = 0, .seconds = 1};
  EXPECT_EQ(reasonAgainstProgram("#!/bin/sh\necho 1739021872\necho 17.0.1\n"
                                 "while :; do :; done\n"),
            "too slow");
}

TEST_F(Refusal, LeavesACandidateNothingToRead) {
  EXPECT_EQ(reasonAgainstProgram("#!/bin/sh\nread line && exit 5\nexit 6\n"),
            "ended with status 6");
}

TEST_F(Refusal, IsNoneOfAMatch) {
  const std::string home = fixture.home("jdk", "17");
  EXPECT_NE(fixture.jvmFile(jvmFileText("17")).verifyAt(text(home), fixture.verification), nullptr);
  EXPECT_THAT(fixture.logged({"Refused"}), IsEmpty());
}

TEST_F(Refusal, IsCountedByASearchThatFindsNothing) {
  fixture.runForReal();
  const std::string older = makeFakeJavaHome(fixture.tree, "older", {{"java.version", "11"}});
  fixture.tree.file("data/bin/java", "no program");
  fixture.tree.program("broken/bin/java", "#!/bin/sh\nexit 1\n");
  std::string homes;
  for (const char* home : {"missing", "100%", "older", "data", "broken"}) {
    homes += ":" + fixture.tree.path(home);
  }
  fixture.run.platform.environment["HOMES"] = homes;
  fixture.files.setVerificationClass("", "Verify");
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\nSEARCH_ALL: 1\n"));
  EXPECT_THAT(fixture.find(), IsEmpty());
  EXPECT_THAT(summary(), ElementsAre("JVM search: 5 candidates, 3 existed, 2 ran, 1 differed"));
  EXPECT_EQ(fixture.run.log.texts().back(), summary().front());
}

TEST_F(Refusal, IsCountedAnewByEachSearch) {
  fixture.home("root/jdk", "11");
  fixture.add(jvmFileText("17"));
  for (int i = 0; i < 2; ++i) {
    JVMMatchPtrDeque matches;
    fixture.run.log.clear();
    fixture.files.findAll(matches, false);
    EXPECT_THAT(summary(), ElementsAre("JVM search: 1 candidates, 1 existed, 1 ran, 1 differed"));
  }
}

TEST_F(Refusal, IsNotSummedUpBySearchesThatFindSomething) {
  fixture.home("root/old", "11");
  const std::string home = fixture.home("root/jdk", "17");
  fixture.add(jvmFileText("17", "SEARCH_ALL: 1\n"));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
  JVMMatchPtrDeque matches;
  fixture.files.findAll(matches, false);
  EXPECT_EQ(matches.count(), 1);
  EXPECT_THAT(summary(), IsEmpty());
}

}  // namespace
}  // namespace vessant::test
