#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using HintSearch = std::unique_ptr<JVMMatch> (JVMFile::*)(JVMSearch&);

class Hints : public testing::Test {
 protected:
  std::unique_ptr<JVMMatch> searchBy(HintSearch search, const std::string& jvmFile) {
    return (fixture.jvmFile(jvmFile).*search)(fixture.verification);
  }
  std::unique_ptr<JVMMatch> searchPlatform(const std::string& more) {
    return searchBy(&JVMFile::searchPlatformHints, jvmFileText("17", more));
  }
  std::unique_ptr<JVMMatch> searchPath(const std::string& more) {
    return searchBy(&JVMFile::searchPathHints, jvmFileText("17", more));
  }
  std::unique_ptr<JVMMatch> searchJvmPath(const std::string& path,
                                          const std::string& executable = "bin/java") {
    fixture.run.platform.environment["PATH"] = path;
    return searchBy(&JVMFile::searchPlatformJVMPathHints,
                    "DESC: Java\nJVM_PROPERTIES: a=17\nJVM_EXE: " + executable + "\n");
  }
  std::vector<std::string> checked() const { return fixture.logged({"Check", "MEDIA"}); }
  std::vector<std::string> triedPaths() const { return fixture.logged({"Verifying"}); }

  JvmFixture fixture;
};

std::string verifying(const std::string& path, const std::string& description = "Java 17") {
  return "Verifying JVM at " + path + "\n   for JVM: " + description;
}

std::string platformLine(const std::string& home, const std::string& hint) {
  return "Checking JVM at " + home + " which was resolved from platform hint " + hint;
}

std::string jvmPathLine(const std::string& home, const std::string& entry) {
  return "Checking JVM at " + home + " which was resolved from the platform JVM path " + entry;
}

struct Kind {
  const char* name;
  HintSearch search;
  const char* line;
};

void PrintTo(const Kind& item, std::ostream* out) {
  *out << item.name;
}

class EachKindOfHints : public Hints, public testing::WithParamInterface<Kind> {};

INSTANTIATE_TEST_SUITE_P(
    Kinds, EachKindOfHints,
    testing::Values(Kind{"Platform", &JVMFile::searchPlatformHints,
                         "Searching for Java 17 using platform hints"},
                    Kind{"Path", &JVMFile::searchPathHints,
                         "Searching for Java 17 using path hints"},
                    Kind{"PlatformJvmPath", &JVMFile::searchPlatformJVMPathHints,
                         "Searching for Java 17 using platform specific JVM Path hints"}),
    [](const auto& item) { return item.param.name; });

TEST_P(EachKindOfHints, FindsNothingWithoutHints) {
  EXPECT_EQ(searchBy(GetParam().search, jvmFileText("17")), nullptr);
  EXPECT_THAT(fixture.run.log.lines(),
              ElementsAre(RecordingLog::Line{GetParam().line, LogLevel::Information}));
}

TEST_P(EachKindOfHints, WarnsOfAFileWithoutProperties) {
  fixture.run.platform.environment["PATH"] = fixture.home("jdk", "17") + "/bin";
  EXPECT_EQ(searchBy(GetParam().search,
                     "DESC: Java 17\nJVM_EXE: bin/java\nPLATFORM_HINT: PATH\nPATH_HINT: jre\n"),
            nullptr);
  EXPECT_THAT(
      fixture.run.log.lines(),
      ElementsAre(RecordingLog::Line{"Unable to verify " + fixture.tree.path("tags/file.tag") +
                                         " because the JVM_PROPERTIES tag was not specified.",
                                     LogLevel::Warning}));
}

TEST_F(Hints, PlatformHintsAreTriedInOrder) {
  fixture.run.platform.environment["ONE"] = "/no/a:/no/b";
  fixture.run.platform.environment["TWO"] = "/no/c";
  EXPECT_EQ(searchPlatform("PLATFORM_HINT:\nTWO\nONE\n/:\n"), nullptr);
  EXPECT_THAT(checked(), ElementsAre(platformLine("/no/c", "TWO"), platformLine("/no/a", "ONE"),
                                     platformLine("/no/b", "ONE")));
  EXPECT_THAT(triedPaths(), ElementsAre(verifying("/no/c/bin/java"), verifying("/no/a/bin/java"),
                                        verifying("/no/b/bin/java")));
}

TEST_F(Hints, PlatformHintsEndWithTheFirstMatch) {
  const std::string wrong = fixture.home("wrong", "11");
  const std::string right = fixture.home("right", "17");
  const std::string further = fixture.home("further", "17");
  fixture.run.platform.environment["HOMES"] = wrong + ":" + right + ":" + further;
  const std::unique_ptr<JVMMatch> match = searchPlatform("PLATFORM_HINT: HOMES\n");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), right);
  EXPECT_FALSE(match->foundByRelativeHint());
  EXPECT_THAT(fixture.verified(), ElementsAre(wrong, right));
}

TEST_F(Hints, EmptyPlatformHintsAndPiecesArePassedOver) {
  fixture.run.platform.environment[""] = "/no/x";
  fixture.run.platform.environment["HOMES"] = ":/no/a::";
  EXPECT_EQ(searchPlatform("PLATFORM_HINT:\n\"\"\nUNSET\nHOMES\n/:\n"), nullptr);
  EXPECT_THAT(checked(), ElementsAre(platformLine("/no/a", "HOMES")));
}

TEST_F(Hints, AnAbsolutePathHintIsTheHome) {
  EXPECT_EQ(searchPath("PATH_HINT: /no/such/jre\n"), nullptr);
  EXPECT_THAT(checked(), ElementsAre("Checking path hint /no/such/jre"));
  EXPECT_THAT(triedPaths(), ElementsAre(verifying("/no/such/jre/bin/java")));
}

TEST_F(Hints, AnAbsolutePathHintMatches) {
  const std::string home = fixture.home("jdk", "17");
  const std::unique_ptr<JVMMatch> match = searchPath("PATH_HINT: " + home + "\n");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), home);
  EXPECT_FALSE(match->foundByRelativeHint());
}

TEST_F(Hints, AnAbsolutePathHintStartsAtTheRootOfTheSearch) {
  const std::string home = fixture.home("root/opt/jre", "17");
  for (const char* root : {"root", "root/"}) {
    fixture.search.fileSystemRoot = text(fixture.tree.path(root));
    const std::unique_ptr<JVMMatch> match = searchPath("PATH_HINT: /opt/jre\n");
    ASSERT_NE(match, nullptr);
    EXPECT_EQ(str(match->home()), home);
  }
}

TEST_F(Hints, ARelativePathHintLiesNextToTheLauncher) {
  const std::string home = fixture.home("app/jre", "17");
  const std::unique_ptr<JVMMatch> match = searchPath("PATH_HINT: jre\n");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), home);
  EXPECT_TRUE(match->foundByRelativeHint());
  EXPECT_THAT(checked(), ElementsAre("Check path hint Relative " + home));
}

TEST_F(Hints, ARelativePathHintCountsFromTheRunningLauncher) {
  fixture.originalLauncherFileName = "/elsewhere/original.bin";
  EXPECT_NE((fixture.home("app/jre", "17"), searchPath("PATH_HINT: jre\n")), nullptr);
}

TEST_F(Hints, PathHintsAreTriedInOrderUpToTheFirstMatch) {
  const std::string wrong = fixture.home("app/wrong", "11");
  const std::string right = fixture.home("right", "17");
  fixture.home("app/further", "17");
  const std::unique_ptr<JVMMatch> match =
      searchPath("PATH_HINT:\n/no/jre\nwrong\n" + right + "\nfurther\n/:\n");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), right);
  EXPECT_THAT(checked(),
              ElementsAre("Checking path hint /no/jre", "Check path hint Relative " + wrong,
                          "Checking path hint " + right));
}

struct LauncherPath {
  const char* name;
  const char* launcher;
  const char* hint;
  const char* candidate;
};

void PrintTo(const LauncherPath& item, std::ostream* out) {
  *out << item.name;
}

class RelativeHint : public Hints, public testing::WithParamInterface<LauncherPath> {};

INSTANTIATE_TEST_SUITE_P(
    Launchers, RelativeHint,
    testing::Values(LauncherPath{"Plain", "/mnt/cd/setup.bin", "jre", "/mnt/cd/jre"},
                    LauncherPath{"Upwards", "/mnt/cd/setup.bin", "../jre", "/mnt/cd/../jre"},
                    LauncherPath{"Empty", "/mnt/cd/setup.bin", "\"\"", "/mnt/cd/"},
                    LauncherPath{"Backslash", "/mnt/cd\\setup.bin", "jre", "/mnt/cd/jre"},
                    LauncherPath{"RootDirectory", "/setup.bin", "jre", "/jre"},
                    LauncherPath{"TwoSlashes", "//setup.bin", "jre", "/jre"},
                    LauncherPath{"NoDirectory", "setup.bin", "jre", "jre"}),
    [](const auto& item) { return item.param.name; });

TEST_P(RelativeHint, IsJoinedToTheDirectoryOfTheLauncher) {
  fixture.launcherFileName = GetParam().launcher;
  searchPath(std::string("PATH_HINT: ") + GetParam().hint + "\n");
  EXPECT_THAT(checked(),
              ElementsAre(std::string("Check path hint Relative ") + GetParam().candidate));
}

TEST_F(Hints, OfSpannedMediaTheFirstOneHasTheHome) {
  fixture.search.mediaSpanned = true;
  fixture.originalLauncherFileName = "/mnt/first/setup.bin";
  fixture.home("app/jre", "17");
  const std::unique_ptr<JVMMatch> match = searchPath("PATH_HINT: jre\n");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(match->home(), "/mnt/first/jvm");
  EXPECT_TRUE(match->foundByRelativeHint());
  const std::vector<std::string> lines = fixture.run.log.texts();
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines[lines.size() - 2], "/mnt/first/jvm");
  EXPECT_EQ(lines.back(), "MEDIA SPANNED : JVM Using :/mnt/first/jvm");
}

TEST_F(Hints, OfSpannedMediaInTheRootDirectoryTheHomeIsThere) {
  fixture.search.mediaSpanned = true;
  fixture.originalLauncherFileName = "/setup.bin";
  fixture.home("app/jre", "17");
  const std::unique_ptr<JVMMatch> match = searchPath("PATH_HINT: jre\n");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(match->home(), "/jvm");
}

TEST_F(Hints, SpannedMediaMatterForRelativeMatchesAlone) {
  fixture.search.mediaSpanned = true;
  const std::string home = fixture.home("jdk", "17");
  const std::unique_ptr<JVMMatch> match = searchPath("PATH_HINT:\nmissing\n" + home + "\n/:\n");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), home);
  EXPECT_THAT(fixture.logged({"MEDIA"}), IsEmpty());
}

TEST_F(Hints, ThePathLosesTheDirectoryOfTheExecutable) {
  EXPECT_EQ(searchJvmPath("/no/java/bin:/no/usr/bin/:/no/sbin:/no/plain"), nullptr);
  EXPECT_THAT(
      checked(),
      ElementsAre(jvmPathLine("/no/java/", "/no/java/bin"), jvmPathLine("/no/usr/", "/no/usr/bin/"),
                  jvmPathLine("/no/s", "/no/sbin"), jvmPathLine("/no/plain/", "/no/plain")));
  EXPECT_THAT(
      triedPaths(),
      ElementsAre(verifying("/no/java/bin/java", "Java"), verifying("/no/usr/bin/java", "Java"),
                  verifying("/no/s/bin/java", "Java"), verifying("/no/plain/bin/java", "Java")));
}

TEST_F(Hints, ThePathLosesALongDirectoryAsAWhole) {
  EXPECT_EQ(searchJvmPath("/no/x/jre/bin:/no/x/bin", "jre/bin/java"), nullptr);
  EXPECT_THAT(checked(), ElementsAre(jvmPathLine("/no/x/", "/no/x/jre/bin"),
                                     jvmPathLine("/no/x/bin/", "/no/x/bin")));
}

TEST_F(Hints, ThePathIsTheHomeOfAnExecutableWithoutADirectory) {
  EXPECT_EQ(searchJvmPath("/no/java/bin:/no/other/", "java"), nullptr);
  EXPECT_THAT(checked(), ElementsAre(jvmPathLine("/no/java/bin", "/no/java/bin"),
                                     jvmPathLine("/no/other/", "/no/other/")));
}

TEST_F(Hints, AnEmptyPathEntryGivesNoCandidate) {
  EXPECT_EQ(searchJvmPath(":/no/a::/no/b:"), nullptr);
  EXPECT_THAT(checked(),
              ElementsAre(jvmPathLine("/no/a/", "/no/a"), jvmPathLine("/no/b/", "/no/b")));
}

TEST_F(Hints, APathEntryThatIsTheDirectoryAloneHasNoHome) {
  EXPECT_EQ(searchJvmPath("bin"), nullptr);
  EXPECT_THAT(checked(), ElementsAre(jvmPathLine("", "bin")));
  EXPECT_THAT(triedPaths(), IsEmpty());
}

TEST_F(Hints, ThePathEndsWithTheFirstMatch) {
  const std::string right = fixture.home("right", "17");
  const std::string further = fixture.home("further", "17");
  const std::unique_ptr<JVMMatch> match =
      searchJvmPath("/no:" + right + "/bin:" + further + "/bin");
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(str(match->home()), right + "/");
  EXPECT_THAT(fixture.verified(), ElementsAre(right));
}

TEST_F(Hints, AFileWithoutAnExecutableHasNoCandidates) {
  fixture.run.platform.environment["PATH"] = fixture.home("jdk", "17") + "/bin";
  const std::string jvmFile = "DESC: Java\nJVM_PROPERTIES: a=17\nPATH_HINT: /no\n";
  EXPECT_EQ(searchBy(&JVMFile::searchPathHints, jvmFile), nullptr);
  EXPECT_EQ(searchBy(&JVMFile::searchPlatformJVMPathHints, jvmFile), nullptr);
  EXPECT_EQ(checked().size(), 2U);
  EXPECT_THAT(triedPaths(), IsEmpty());
}

}  // namespace
}  // namespace vessant::test
