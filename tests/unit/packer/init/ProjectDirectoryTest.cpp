// The directory of a new project: whole or not there, and never over what is there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/init/ProjectDirectory.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct ProjectDirectoryTest : testing::Test {
  void write(const std::string& path, bool force = false) {
    ProjectDirectory directory(path, force);
    writeFile(directory.stagePath("a"), "new");
    writeFile(directory.stagePath("b"), "new");
    directory.publish();
  }
  std::string refusal(const std::string& path) {
    return thrownMessage([&] { write(path); });
  }

  TempTree tree;
};

TEST_F(ProjectDirectoryTest, AppearsWhenItIsWhole) {
  {
    ProjectDirectory directory(tree.path("app"), false);
    writeFile(directory.stagePath("a"), "half");
    EXPECT_FALSE(std::filesystem::exists(tree.path("app")));
  }
  EXPECT_THAT(tree.list(), IsEmpty()) << "what was not published is removed";
  write(tree.path("app"));
  EXPECT_THAT(tree.list(), ElementsAre("app", "app/a", "app/b"));
  const std::filesystem::perms others =
      std::filesystem::status(tree.path("app")).permissions() & std::filesystem::perms::others_read;
  EXPECT_NE(others, std::filesystem::perms::none) << "the usual permissions, not a private one's";
}

TEST_F(ProjectDirectoryTest, TakesASlashAtTheEndAndAnEmptyDirectory) {
  write(tree.path("app") + "/");
  tree.dir("empty");
  write(tree.path("empty"));
  EXPECT_THAT(tree.list(), ElementsAre("app", "app/a", "app/b", "empty", "empty/a", "empty/b"));
}

TEST_F(ProjectDirectoryTest, LeavesAFullDirectoryAlone) {
  tree.file("app/a", "old");
  EXPECT_EQ(refusal(tree.path("app")),
            tree.path("app") + ": is not empty; --force writes into it all the same");
  EXPECT_EQ(readFile(tree.path("app/a")), "old");
  EXPECT_THAT(tree.list(), ElementsAre("app", "app/a"));
}

TEST_F(ProjectDirectoryTest, WritesIntoAFullOneWhenForced) {
  tree.file("app/a", "old");
  tree.file("app/mine", "old");
  write(tree.path("app"), true);
  EXPECT_EQ(readFile(tree.path("app/a")), "new");
  EXPECT_THAT(tree.list(), ElementsAre("app", "app/a", "app/b", "app/mine"));
}

TEST_F(ProjectDirectoryTest, RefusesWhatIsNoDirectory) {
  EXPECT_EQ(refusal(tree.file("app")), tree.path("app") + ": is no directory");
  EXPECT_EQ(refusal(""), "the directory must have a name");
  EXPECT_THAT(refusal(tree.path("no/such/place")), HasSubstr("no/such: No such file"));
}

}  // namespace
}  // namespace vessant::test
