// The temporary root: where it comes from and what it says when it is no directory.

#include <filesystem>
#include <string>

#include "TempFixture.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

std::string unusable(const std::string& root) {
  return "Cannot use " + root +
         " as the temp directory because it does not exist. Please run the program again using the "
         "option -vs:tempdir <temp dir> to specify a different directory to use.";
}

class TempRoot : public TempFixture {};

TEST_F(TempRoot, IsTheOneThatWasSet) {
  EXPECT_EQ(temp.getTempRoot(), tree.path("root").c_str());
  temp.setTempRoot(SString(tree.dir("other")));
  EXPECT_EQ(temp.getTempRoot(), tree.path("other").c_str());
  EXPECT_EQ(root, tree.path("other").c_str());
}

TEST_F(TempRoot, BecomesTheDefaultWhenNoneWasSet) {
  if (!fs::is_directory("/tmp")) GTEST_SKIP() << "no /tmp here";
  root = "";
  EXPECT_EQ(temp.getTempRoot(), "/tmp");
  EXPECT_EQ(root, "/tmp");
}

TEST_F(TempRoot, HoldsTheNewPathsOfTheDefault) {
  if (!fs::is_directory("/tmp")) GTEST_SKIP() << "no /tmp here";
  root = "";
  EXPECT_TRUE(makeDir().starts_with("/tmp/vsj"));
  EXPECT_TRUE(makeFile().starts_with("/tmp/vsj"));
}

TEST_F(TempRoot, CanBeToldWithoutBeingUsed) {
  EXPECT_EQ(temp.tempRootSetting(), tree.path("root").c_str());
  root = "/no/such/directory";
  EXPECT_EQ(temp.tempRootSetting(), "/no/such/directory");
  root = "";
  EXPECT_EQ(temp.tempRootSetting(), "/tmp");
  EXPECT_EQ(root, "");
}

TEST_F(TempRoot, MustExist) {
  const std::string missing = tree.path("missing");
  root = SString(missing);
  EXPECT_EQ(thrownMessage([&] { temp.getTempRoot(); }), unusable(missing));
  EXPECT_EQ(thrownMessage([&] { temp.createTempDir(); }), unusable(missing));
  EXPECT_EQ(thrownMessage([&] { temp.createTempFile(); }), unusable(missing));
  EXPECT_FALSE(fs::exists(missing));
}

TEST_F(TempRoot, MustBeADirectory) {
  const std::string file = tree.file("file");
  root = SString(file);
  EXPECT_EQ(thrownMessage([&] { temp.getTempRoot(); }), unusable(file));
}

TEST_F(TempRoot, IsNamedAsItWasGiven) {
  root = "no/such directory/";
  EXPECT_EQ(thrownMessage([&] { temp.getTempRoot(); }), unusable("no/such directory/"));
}

TEST_F(TempRoot, MayBeALinkToADirectory) {
  root = SString(tree.link("link", tree.path("root")));
  EXPECT_TRUE(makeDir().starts_with(tree.path("link/vsj")));
}

TEST_F(TempRoot, IsLookedAtOnEveryUse) {
  static_cast<void>(temp.getTempRoot());
  fs::remove(tree.path("root"));
  EXPECT_EQ(thrownMessage([&] { temp.createTempDir(); }), unusable(tree.path("root")));
  tree.dir("root");
  EXPECT_EQ(temp.getTempRoot(), tree.path("root").c_str());
}

}  // namespace
}  // namespace vessant::test
