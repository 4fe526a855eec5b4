#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kProcessing = "Processing unverified matches.\n";
constexpr const char* kOtherExecutable = "JVM_PROPERTIES: a=17\nDESC: Java\nJVM_EXE: ";

/// The walk visits nested homes from the outside in: a chain of directories gives a known order.
class ExhaustiveSearch : public testing::Test {
 protected:
  ExhaustiveSearch() { fixture.search.fileSystemRoot = text(fixture.tree.dir("root")); }

  std::vector<std::string> findAll(bool stopAtFirst = false) {
    JVMMatchPtrDeque matches;
    fixture.files.findAll(matches, stopAtFirst);
    return homesOf(matches);
  }
  /// Homes within one another; the index is the order in which the walk finds them.
  std::vector<std::string> chainOfHomes(const std::vector<std::string>& versions) {
    std::vector<std::string> homes;
    std::string path = "root";
    for (const std::string& version : versions) {
      path += "/jdk";
      homes.push_back(fixture.home(path, version));
    }
    return homes;
  }

  JvmFixture fixture;
};

TEST_F(ExhaustiveSearch, TellsTheLogAndTheDisplay) {
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), IsEmpty());
  EXPECT_THAT(
      fixture.run.log.lines(),
      ElementsAre(RecordingLog::Line{"Beginning exhaustive search", LogLevel::Information},
                  RecordingLog::Line{kProcessing, LogLevel::Information},
                  RecordingLog::Line{"JVM search: 0 candidates, 0 existed, 0 ran, 0 differed",
                                     LogLevel::Information}));
  EXPECT_THAT(fixture.run.progress.phases,
              ElementsAre(std::pair(SearchPhase::Scanning, std::string())));
}

TEST_F(ExhaustiveSearch, FindsEveryHomeThatVerifies) {
  const std::vector<std::string> homes = chainOfHomes({"17", "11", "17", "17"});
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), ElementsAre(homes[0], homes[2], homes[3]));
  EXPECT_EQ(fixture.verified(), homes);
  EXPECT_FALSE(fixture.files.foundMatch());
}

TEST_F(ExhaustiveSearch, VerifiesFileByFileInTheOrderOfFirstFinding) {
  const std::vector<std::string> homes = chainOfHomes({"17", "11", "17", "11"});
  fixture.add(kOtherExecutable + std::string("never/java\n"));
  fixture.add(jvmFileText("11"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), ElementsAre(homes[1], homes[3], homes[0], homes[2]));
}

TEST_F(ExhaustiveSearch, AFileThatFindsFirstIsVerifiedFirst) {
  const std::string outer = fixture.home("root/a", "17");
  fixture.tree.program("root/a/jre/sub/java", "");
  fixture.versions[fixture.tree.path("root/a/jre")] = "17";
  fixture.add(kOtherExecutable + std::string("sub/java\n"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), ElementsAre(outer));
  EXPECT_THAT(fixture.logged({"Verifying"}),
              ElementsAre("Verifying JVM at " + outer + "/bin/java\n   for JVM: Java 17",
                          "Verifying JVM at " + outer + "/jre/sub/java\n   for JVM: Java"));
}

TEST_F(ExhaustiveSearch, AHomeIsVerifiedOnceForEachFile) {
  const std::string home = fixture.home("root/jdk", "17");
  fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("17"));
  fixture.add(kOtherExecutable + std::string("java\n"));
  // The path ends in two executables and is reported for each.
  EXPECT_THAT(findAll(), ElementsAre(home, home, home + "/bin"));
  EXPECT_EQ(fixture.verified().size(), 3U);
}

TEST_F(ExhaustiveSearch, AFileTakesAPathByItsEndAlone) {
  // Another file's executable lets the walk report the path; the ends are then compared bytewise.
  fixture.tree.program("root/jdk/xbin/java", "");
  fixture.add(kOtherExecutable + std::string("xbin/java\n"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), IsEmpty());
  const std::string home = fixture.tree.path("root/jdk");
  EXPECT_THAT(fixture.logged({"Verifying"}),
              ElementsAre("Verifying JVM at " + home + "/xbin/java\n   for JVM: Java",
                          "Verifying JVM at " + home + "/bin/java\n   for JVM: Java 17"));
}

TEST_F(ExhaustiveSearch, ALinkIsACandidate) {
  fixture.home("jdk", "17");
  fixture.tree.link("root/linked/bin/java", fixture.tree.path("jdk/bin/java"));
  fixture.versions[fixture.tree.path("root/linked")] = "17";
  fixture.tree.link("root/jdk", fixture.tree.path("jdk"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), ElementsAre(fixture.tree.path("root/linked")));
}

TEST_F(ExhaustiveSearch, FilesNeedNotAllowTheSearchThemselves) {
  const std::string home = fixture.home("root/jdk", "17");
  fixture.add(jvmFileText("17", "SEARCH_ALL: 0\n"));
  EXPECT_THAT(findAll(), ElementsAre(home));
}

TEST_F(ExhaustiveSearch, AFileWithoutPropertiesIsWarnedOfForEachHome) {
  chainOfHomes({"17", "17"});
  fixture.add("JVM_EXE: bin/java\n");
  EXPECT_THAT(findAll(), IsEmpty());
  EXPECT_EQ(fixture.logged({"Unable to verify "}).size(), 2U);
}

TEST_F(ExhaustiveSearch, LeavesTheRootOutWhenItIsTheTemporaryDirectory) {
  fixture.home("root/jdk", "17");
  fixture.tempRoot = text(fixture.tree.path("root"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), IsEmpty());
}

TEST_F(ExhaustiveSearch, SearchesATemporaryDirectoryBelowTheRoot) {
  const std::string home = fixture.home("root/temp/jdk", "17");
  fixture.tempRoot = text(fixture.tree.path("root/temp"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), ElementsAre(home));
}

TEST_F(ExhaustiveSearch, ForgetsTheCandidatesOfAnEarlierSearch) {
  const std::string home = fixture.home("root/jdk", "17");
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(), ElementsAre(home));
  EXPECT_THAT(findAll(), ElementsAre(home));
  EXPECT_EQ(fixture.verified().size(), 2U);
  fixture.search.fileSystemRoot = text(fixture.tree.dir("other"));
  EXPECT_THAT(findAll(), IsEmpty());
}

TEST_F(ExhaustiveSearch, AMatchOfTheFirstFileEndsTheWalk) {
  const std::vector<std::string> homes = chainOfHomes({"11", "17", "17"});
  fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("11"));
  EXPECT_THAT(findAll(true), ElementsAre(homes[1]));
  EXPECT_THAT(fixture.verified(), ElementsAre(homes[0], homes[1]));
  EXPECT_FALSE(fixture.run.log.contains(kProcessing));
  ASSERT_TRUE(fixture.files.foundMatch());
  EXPECT_EQ(str(fixture.files.foundMatch()->home()), homes[1]);
}

TEST_F(ExhaustiveSearch, ARefusedHomeIsNotVerifiedAgainForTheFirstFile) {
  const std::vector<std::string> homes = chainOfHomes({"11", "11"});
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(findAll(true), IsEmpty());
  EXPECT_EQ(fixture.verified(), homes);
  EXPECT_TRUE(fixture.run.log.contains(kProcessing));
}

TEST_F(ExhaustiveSearch, OtherFilesWaitForTheEndOfTheWalk) {
  const std::vector<std::string> homes = chainOfHomes({"11", "11", "8"});
  fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("11"));
  EXPECT_THAT(findAll(true), ElementsAre(homes[0]));
  EXPECT_THAT(fixture.verified(), ElementsAre(homes[0], homes[1], homes[2], homes[0]));
  EXPECT_EQ(fixture.logged({"Verifying", "Processing"})[3], kProcessing);
}

TEST_F(ExhaustiveSearch, OneMatchOfTheWaitingFilesIsEnough) {
  const std::vector<std::string> homes = chainOfHomes({"8", "11", "8", "11"});
  fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("11"));
  fixture.add(jvmFileText("8"));
  EXPECT_THAT(findAll(true), ElementsAre(homes[1]));
  EXPECT_EQ(fixture.verified().size(), homes.size() + 2);
}

TEST_F(ExhaustiveSearch, AllMatchesOfTheWaitingFilesAreAppended) {
  const std::vector<std::string> homes = chainOfHomes({"8", "11"});
  fixture.add(jvmFileText("11"));
  fixture.add(jvmFileText("8"));
  EXPECT_THAT(findAll(false), ElementsAre(homes[1], homes[0]));
}

TEST_F(ExhaustiveSearch, EachMatchKnowsItsFile) {
  chainOfHomes({"8", "11"});
  JVMFile& first = fixture.add(jvmFileText("11"));
  JVMFile& second = fixture.add(jvmFileText("8"));
  JVMMatchPtrDeque matches;
  fixture.files.findAll(matches, false);
  ASSERT_EQ(matches.count(), 2);
  EXPECT_EQ(&matches.get(0)->tags(), &first.tags());
  EXPECT_EQ(&matches.get(1)->tags(), &second.tags());
}

TEST_F(ExhaustiveSearch, FindsNothingWithoutJvmFiles) {
  chainOfHomes({"17"});
  EXPECT_THAT(findAll(), IsEmpty());
  EXPECT_TRUE(fixture.run.log.contains(kProcessing));
}

}  // namespace
}  // namespace vessant::test
