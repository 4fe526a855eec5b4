// The search as a whole: the home that the user named, then hints, then, if allowed, the disk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kHintsBegin = "Initiating JVM search based on hints...";
constexpr const char* kDiskBegins = "Beginning exhaustive search";

class Find : public testing::Test {
 protected:
  Find() {
    // Nothing of the machine is searched.
    fixture.search.fileSystemRoot = text(fixture.tree.dir("root"));
    fixture.files.setVerificationClass(fixture.verification.verificationClass.classPath,
                                       fixture.verification.verificationClass.className);
  }
  std::vector<std::string> milestones() const {
    return fixture.logged({"Checking user", "Initiating", "Searching for", "Beginning"});
  }
  std::string found() const {
    const std::optional<JVMMatch>& match = fixture.files.foundMatch();
    return match ? str(match->home()) : "none";
  }

  JvmFixture fixture;
};

std::vector<std::string> hintLines(const std::string& version) {
  const std::string start = "Searching for Java " + version + " using ";
  return {start + "platform hints", start + "path hints",
          start + "platform specific JVM Path hints"};
}

std::vector<std::string> joined(const std::vector<std::vector<std::string>>& parts) {
  std::vector<std::string> all;
  for (const std::vector<std::string>& part : parts)
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST_F(Find, FindsNothingWithoutJvmFiles) {
  EXPECT_THAT(fixture.find(), IsEmpty());
  EXPECT_THAT(fixture.run.log.texts(),
              ElementsAre(kHintsBegin, "JVM search: 0 candidates, 0 existed, 0 ran, 0 differed"));
  EXPECT_EQ(found(), "none");
}

TEST_F(Find, TriesTheHomeOfTheUserFirst) {
  const std::string home = fixture.home("jdk", "17");
  fixture.javaHome = text(home);
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
  EXPECT_EQ(found(), home);
  EXPECT_EQ(fixture.run.log.texts().front(),
            "Checking user specified Java home directory => " + home);
  EXPECT_FALSE(fixture.run.log.contains(kHintsBegin));
  EXPECT_THAT(fixture.run.progress.phases,
              ElementsAre(std::pair(SearchPhase::Verifying, std::string("Java 17"))));
}

TEST_F(Find, TriesTheHomeOfTheUserWithEachFile) {
  const std::string home = fixture.home("jdk", "17");
  fixture.javaHome = text(home);
  fixture.add(jvmFileText("11", "SEARCH_ALL: 1\n"));
  JVMFile& second = fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("17"));
  JVMMatchPtrDeque matches;
  fixture.files.find(matches);
  ASSERT_THAT(homesOf(matches), ElementsAre(home));
  EXPECT_EQ(&matches.get(0)->tags(), &second.tags());
  EXPECT_THAT(fixture.verified(), ElementsAre(home, home));
}

TEST_F(Find, GoesOnToHintsWhenTheHomeOfTheUserDoesNotMatch) {
  fixture.javaHome = "/no/such/home";
  const std::string home = fixture.home("jdk", "17");
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\n"));
  fixture.run.platform.environment["HOMES"] = home;
  EXPECT_THAT(fixture.find(), ElementsAre(home));
  EXPECT_THAT(milestones(),
              ElementsAre("Checking user specified Java home directory => /no/such/home",
                          kHintsBegin, "Searching for Java 17 using platform hints"));
}

TEST_F(Find, WarnsOfAFileWithoutPropertiesAtEachStep) {
  fixture.javaHome = "/no/such/home";
  fixture.add("DESC: Java\nJVM_EXE: bin/java\n");
  EXPECT_THAT(fixture.find(), IsEmpty());
  EXPECT_EQ(fixture.logged({"Unable to verify "}).size(), 4U);
}

TEST_F(Find, TriesThreeKindsOfHintsFileByFile) {
  fixture.add(jvmFileText("21"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(fixture.find(), IsEmpty());
  EXPECT_EQ(milestones(), joined({{kHintsBegin}, hintLines("21"), hintLines("17")}));
  EXPECT_THAT(fixture.run.progress.phases,
              ElementsAre(std::pair(SearchPhase::Searching, std::string("Java 21")),
                          std::pair(SearchPhase::Searching, std::string("Java 17"))));
}

class FindByKind : public Find, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Kinds, FindByKind, testing::Values(0, 1, 2));

TEST_P(FindByKind, EndsWithTheFirstKindThatMatches) {
  const std::string home = fixture.home("app/jdk", "17");
  const std::string hint = GetParam() == 1 ? "jdk" : "missing";
  fixture.run.platform.environment["HOMES"] = GetParam() == 0 ? home : "/no";
  fixture.run.platform.environment["PATH"] = home + "/bin";
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\nPATH_HINT: " + hint + "\n"));
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\n"));
  EXPECT_THAT(fixture.find(), ElementsAre(GetParam() == 2 ? home + "/" : home));
  std::vector<std::string> expected = hintLines("17");
  expected.resize(static_cast<std::size_t>(GetParam()) + 1);
  EXPECT_EQ(milestones(), joined({{kHintsBegin}, expected}));
}

TEST_F(Find, DoesNotTryTheHintsBehindAFileThatMaySearchTheDisk) {
  fixture.run.platform.environment["HOMES"] = fixture.home("jdk", "17");
  fixture.add(jvmFileText("21", "SEARCH_ALL: 1\n"));
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\n"));
  EXPECT_THAT(fixture.find(), IsEmpty());
  EXPECT_EQ(milestones(), joined({{kHintsBegin}, hintLines("21"), {kDiskBegins}}));
}

TEST_F(Find, SearchesTheDiskOnceTheHintsOfAnAllowingFileFailed) {
  fixture.add(jvmFileText("21"));
  fixture.add(jvmFileText("17", "SEARCH_ALL: -3\n"));
  fixture.add(jvmFileText("11"));
  EXPECT_THAT(fixture.find(), IsEmpty());
  EXPECT_EQ(milestones(), joined({{kHintsBegin}, hintLines("21"), hintLines("17"), {kDiskBegins}}));
  EXPECT_EQ(fixture.run.progress.phases.back(), std::pair(SearchPhase::Scanning, std::string()));
}

TEST_F(Find, DoesNotSearchTheDiskWhenAHintOfAnAllowingFileMatched) {
  fixture.run.platform.environment["HOMES"] = fixture.home("jdk", "17");
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\nSEARCH_ALL: 1\n"));
  EXPECT_EQ(fixture.find().size(), 1U);
  EXPECT_FALSE(fixture.run.log.contains(kDiskBegins));
}

TEST_F(Find, KeepsAMatchOfTheDiskThatWasVerifiedAtOnce) {
  const std::string home = fixture.home("root/jdk", "17");
  fixture.add(jvmFileText("17", "SEARCH_ALL: 1\n"));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
  EXPECT_EQ(found(), home);
}

TEST_F(Find, KeepsAMatchOfTheDiskThatWasVerifiedLater) {
  const std::string home = fixture.home("root/jdk", "17");
  fixture.add(jvmFileText("21", "SEARCH_ALL: 1\n"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
  EXPECT_EQ(found(), home);
}

TEST_F(Find, AppendsToTheList) {
  const std::string home = fixture.home("root/jdk", "17");
  JVMFile& other = fixture.jvmFile(jvmFileText("11"));
  JVMMatchPtrDeque matches;
  matches.add(std::make_unique<JVMMatch>("/given", other.tags()));
  fixture.add(jvmFileText("21", "SEARCH_ALL: 1\n"));
  fixture.add(jvmFileText("17"));
  fixture.files.find(matches);
  EXPECT_THAT(homesOf(matches), ElementsAre("/given", home));
}

TEST_F(Find, ASecondSearchStartsAfresh) {
  const std::string home = fixture.home("jdk", "17");
  fixture.run.platform.environment["HOMES"] = home;
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\n"));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
  fixture.versions.clear();
  EXPECT_THAT(fixture.find(), IsEmpty());
  EXPECT_EQ(found(), "none");
}

TEST_F(Find, MatchesOfTwoSearchesLiveOnTheirOwn) {
  const std::string first = fixture.home("first", "17");
  const std::string second = fixture.home("root/second", "17");
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\nSEARCH_ALL: 1\n"));
  fixture.run.platform.environment["HOMES"] = first;
  auto firstMatches = std::make_unique<JVMMatchPtrDeque>();
  fixture.files.find(*firstMatches);
  fixture.run.platform.environment.clear();
  JVMMatchPtrDeque secondMatches;
  fixture.files.find(secondMatches);
  EXPECT_THAT(homesOf(*firstMatches), ElementsAre(first));
  firstMatches.reset();
  EXPECT_THAT(homesOf(secondMatches), ElementsAre(second));
  secondMatches.clear();
  EXPECT_EQ(found(), second);
  EXPECT_THAT(fixture.find(), ElementsAre(second));
}

TEST_F(Find, TheSecondSearchMayUseTheSameList) {
  const std::string home = fixture.home("root/jdk", "17");
  fixture.add(jvmFileText("21", "SEARCH_ALL: 1\n"));
  fixture.add(jvmFileText("17"));
  JVMMatchPtrDeque matches;
  fixture.files.find(matches);
  fixture.files.find(matches);
  EXPECT_THAT(homesOf(matches), ElementsAre(home, home));
  EXPECT_NE(matches.get(0), matches.get(1));
}

}  // namespace
}  // namespace vessant::test
