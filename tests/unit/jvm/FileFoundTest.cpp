// What the collection makes of one file that the walk found.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Reports files behind a search of an empty tree: what is verified then is verified at once.
class FileFound : public testing::Test {
 protected:
  FileFound() { fixture.search.fileSystemRoot = text(fixture.tree.dir("empty")); }

  /// Searches an empty tree, so that the collection knows whether one match is enough.
  void startSearch(bool stopAtFirst) {
    JVMMatchPtrDeque matches;
    fixture.files.findAll(matches, stopAtFirst);
  }
  bool report(const std::string& path) { return fixture.files.fileFound(text(path)); }

  JvmFixture fixture;
};

TEST_F(FileFound, AMatchOfTheFirstFileStopsTheWalk) {
  fixture.add(jvmFileText("17"));
  startSearch(true);
  const std::string home = fixture.home("jdk", "17");
  EXPECT_TRUE(report(home + "/bin/java"));
  ASSERT_TRUE(fixture.files.foundMatch());
  EXPECT_EQ(str(fixture.files.foundMatch()->home()), home);
}

TEST_F(FileFound, ARefusedHomeOfTheFirstFileLetsTheWalkGoOn) {
  fixture.add(jvmFileText("17"));
  startSearch(true);
  EXPECT_FALSE(report(fixture.home("jdk", "11") + "/bin/java"));
  EXPECT_FALSE(fixture.files.foundMatch());
  EXPECT_EQ(fixture.verified().size(), 1U);
}

TEST_F(FileFound, TheFirstFileWaitsWhenAllMatchesAreWanted) {
  fixture.add(jvmFileText("17"));
  startSearch(false);
  EXPECT_FALSE(report(fixture.home("jdk", "17") + "/bin/java"));
  EXPECT_THAT(fixture.verified(), IsEmpty());
}

TEST_F(FileFound, TheOtherFilesWait) {
  fixture.add("JVM_EXE: bin/other\nJVM_PROPERTIES: a=17\n");
  fixture.add(jvmFileText("17"));
  startSearch(true);
  EXPECT_FALSE(report(fixture.home("jdk", "17") + "/bin/java"));
  EXPECT_THAT(fixture.verified(), IsEmpty());
}

TEST_F(FileFound, NoFileBehindAMatchingFirstOneIsConsidered) {
  fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("17"));
  startSearch(true);
  const std::string home = fixture.home("jdk", "17");
  EXPECT_TRUE(report(home + "/bin/java"));
  EXPECT_TRUE(report(fixture.home("other", "17") + "/bin/java"));
  EXPECT_THAT(fixture.verified(), ElementsAre(home));
}

TEST_F(FileFound, APathShorterThanTheExecutableIsNone) {
  fixture.add("JVM_EXE: a/very/long/path/to/bin/java\nJVM_PROPERTIES: a=17\n");
  startSearch(true);
  EXPECT_FALSE(report("/bin/java"));
  EXPECT_FALSE(report("bin/java"));
  EXPECT_FALSE(report(""));
  EXPECT_THAT(fixture.logged({"Verifying"}), IsEmpty());
}

TEST_F(FileFound, APathThatIsTheExecutableHasNoHome) {
  fixture.add("JVM_EXE: bin/java\nJVM_PROPERTIES: a=17\n");
  startSearch(true);
  EXPECT_FALSE(report("/bin/java"));
  EXPECT_FALSE(report("bin/java"));
  EXPECT_THAT(fixture.logged({"Verifying"}), IsEmpty());
}

TEST_F(FileFound, AFileWithoutAnExecutableTakesNoPart) {
  fixture.add("DESC: none\nJVM_PROPERTIES: a=17\n");
  startSearch(true);
  EXPECT_FALSE(report("/usr/jdk/bin/java"));
  EXPECT_THAT(fixture.logged({"Verifying"}), IsEmpty());
}

}  // namespace
}  // namespace vessant::test
