// New temporary files and directories: their names, their making and what stands in the way.

#include <cstring>
#include <deque>
#include <filesystem>
#include <set>
#include <string>

#include <unistd.h>

#include "ChosenNames.h"
#include "TempFixture.h"
#include "support/ProcessScope.h"
#include "support/SpoiledErrno.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

class TempNames : public TempFixture {};

TEST_F(TempNames, LieBelowTheRootWithTheirPrefix) {
  EXPECT_TRUE(makeDir().starts_with(tree.path("root/vsj")));
  EXPECT_TRUE(makeFile().starts_with(tree.path("root/vsj")));
}

TEST_F(TempNames, DoNotDoubleTheSeparatorOfTheRoot) {
  root = SString(tree.path("root/"));
  EXPECT_TRUE(makeDir().starts_with(tree.path("root/vsj")));
}

TEST_F(TempNames, AreAllDifferent) {
  std::set<std::string> names;
  for (int i = 0; i < 200; ++i) names.insert(i % 2 == 0 ? makeDir() : makeFile());
  EXPECT_EQ(names.size(), 200U);
  EXPECT_EQ(tree.list("root").size(), 200U);
}

TEST_F(TempNames, BecomeDirectoriesForEverybodyWithinTheMask) {
  {
    const ScopedUmask mask(0);
    EXPECT_EQ(permissionsOf(makeDir()), 0777U);
  }
  const ScopedUmask mask(0027);
  const std::string path = makeDir();
  EXPECT_TRUE(fs::is_directory(path));
  EXPECT_TRUE(fs::is_empty(path));
  EXPECT_EQ(permissionsOf(path), 0750U);
}

TEST_F(TempNames, BecomeEmptyFilesWithinTheMask) {
  {
    const ScopedUmask mask(0);
    EXPECT_EQ(permissionsOf(makeFile()), 0666U);
  }
  const ScopedUmask mask(0027);
  const std::string path = makeFile();
  EXPECT_TRUE(fs::is_regular_file(path));
  EXPECT_EQ(fs::file_size(path), 0U);
  EXPECT_EQ(permissionsOf(path), 0640U);
}

TEST_F(TempNames, LeaveNoDescriptorOpen) {
  const std::size_t before = openDescriptors();
  static_cast<void>(makeFile());
  static_cast<void>(makeDir());
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(TempNames, PreferTheDirectoryOfTmpdir) {
  const ScopedEnvironment tmpdir("TMPDIR", tree.dir("preferred"));
  EXPECT_TRUE(makeDir().starts_with(tree.path("preferred/vsj")));
  EXPECT_TRUE(makeFile().starts_with(tree.path("preferred/vsj")));
  EXPECT_TRUE(tree.list("root").empty());
  EXPECT_EQ(temp.getTempRoot(), tree.path("root").c_str());
}

TEST_F(TempNames, FallBackToTheRootWhenTmpdirIsNoDirectory) {
  const ScopedEnvironment tmpdir("TMPDIR", tree.path("missing"));
  EXPECT_TRUE(makeDir().starts_with(tree.path("root/vsj")));
}

TEST_F(TempNames, NeedTheRootEvenWithTmpdir) {
  const ScopedEnvironment tmpdir("TMPDIR", tree.dir("preferred"));
  root = SString(tree.path("missing"));
  EXPECT_FALSE(thrownMessage([&] { temp.createTempDir(); }).empty());
  EXPECT_TRUE(tree.list("preferred").empty());
}

TEST_F(TempNames, AreAbsoluteBelowARelativeRoot) {
  const ScopedDirectory inside(tree.root());
  root = "root";
  EXPECT_TRUE(makeDir().starts_with(tree.path("root/vsj")));
  EXPECT_TRUE(makeFile().starts_with(tree.path("root/vsj")));
}

TEST_F(TempNames, AreAbsoluteBelowARelativeTmpdir) {
  const ScopedDirectory inside(tree.root());
  tree.dir("preferred");
  const ScopedEnvironment tmpdir("TMPDIR", "preferred");
  EXPECT_TRUE(makeDir().starts_with(tree.path("preferred/vsj")));
}

TEST_F(TempNames, AreFoundAgainAfterAChangeOfDirectory) {
  {
    const ScopedDirectory inside(tree.root());
    root = "root";
    static_cast<void>(makeFile());
    writeFile(makeDir() + "/file", "x");
  }
  EXPECT_EQ(tree.list("root").size(), 3U);
  temp.cleanupTempFiles();
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(TempNames, FailBelowARootThatIsReadOnly) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  fs::permissions(tree.path("root"), fs::perms(0500));
  const std::string chosen = tree.path("root/vsjChosen");
  ChosenNames names({chosen, chosen});
  EXPECT_EQ(thrownMessage([&] { temp.createTempDir(); }), std::strerror(EACCES));
  EXPECT_EQ(thrownMessage([&] { temp.createTempFile(); }), "Error creating tmp file " + chosen);
}

class TakenNames : public TempFixture {
 protected:
  std::string taken = tree.path("root/vsjTaken");
  std::string vacant = tree.path("root/vsjFree");
};

TEST_F(TakenNames, AreLeftAloneForADirectory) {
  writeFile(taken, "someone else's");
  ChosenNames names({taken, vacant});
  EXPECT_EQ(makeDir(), vacant);
  EXPECT_EQ(readFile(taken), "someone else's");
  temp.cleanupTempFiles();
  EXPECT_EQ(tree.list("root"), (std::vector<std::string>{"vsjTaken"}));
}

TEST_F(TakenNames, AreLeftAloneForAFile) {
  tree.file("root/vsjTaken", "someone else's");
  tree.dir("root/vsjTaken2");
  ChosenNames names({taken, taken + "2", vacant});
  EXPECT_EQ(makeFile(), vacant);
  EXPECT_EQ(readFile(taken), "someone else's");
}

// A link laid under a name that was guessed must not lead the launcher anywhere.
TEST_F(TakenNames, AreNotFollowedAsLinks) {
  tree.link("root/vsjTaken", tree.path("victim"));
  {
    ChosenNames names({taken, vacant});
    EXPECT_EQ(makeFile(), vacant);
  }
  ChosenNames names({taken, vacant + "2"});
  EXPECT_EQ(makeDir(), vacant + "2");
  EXPECT_FALSE(fs::exists(tree.path("victim")));
}

TEST_F(TakenNames, EndTheAttemptsSomeTime) {
  tree.file("root/vsjTaken");
  {
    ChosenNames names(std::deque<std::string>(10'000, taken));
    EXPECT_EQ(thrownMessage([&] { temp.createTempDir(); }), std::strerror(EEXIST));
    EXPECT_LT(names.asked(), 10'000);
    EXPECT_GT(names.asked(), 1);
  }
  ChosenNames names(std::deque<std::string>(10'000, taken));
  EXPECT_EQ(thrownMessage([&] { temp.createTempFile(); }), "Error creating tmp file " + taken);
}

TEST_F(TakenNames, EndTheAttemptsAtAnotherError) {
  const std::string nowhere = tree.path("root/missing/vsj");
  {
    ChosenNames names({nowhere, vacant});
    EXPECT_EQ(thrownMessage([&] { temp.createTempDir(); }), std::strerror(ENOENT));
    EXPECT_EQ(names.asked(), 1);
  }
  ChosenNames names({nowhere, vacant});
  EXPECT_EQ(thrownMessage([&] { temp.createTempFile(); }), "Error creating tmp file " + nowhere);
  EXPECT_EQ(names.asked(), 1);
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(TakenNames, FailWithTheErrorOfTheirMakingWhateverRunsBehindIt) {
  const std::string nowhere = tree.path("root/missing/vsj");
  ChosenNames names({nowhere});
  const SpoiledErrno spoiled;
  EXPECT_EQ(thrownMessage([&] { temp.createTempDir(); }), std::strerror(ENOENT));
}

TEST_F(TakenNames, AreNotRegistered) {
  tree.file("root/vsjTaken");
  {
    ChosenNames names(std::deque<std::string>(10'000, taken));
    static_cast<void>(thrownMessage([&] { temp.createTempFile(); }));
    static_cast<void>(thrownMessage([&] { temp.createTempDir(); }));
  }
  temp.cleanupTempFiles();
  EXPECT_TRUE(fs::exists(taken));
}

TEST_F(TakenNames, FailWithTheSystemsTextWhenThereIsNoName) {
  ChosenNames none({});
  EXPECT_EQ(thrownMessage([&] { temp.createTempDir(); }), std::strerror(ENOMEM));
  EXPECT_EQ(thrownMessage([&] { temp.createTempFile(); }), std::strerror(ENOMEM));
}

}  // namespace
}  // namespace vessant::test
