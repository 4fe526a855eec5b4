// Deleting trees, what stays of them, and which warnings tell of it.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/DeleteFullDir.h"
#include "support/FakeRun.h"
#include "support/SpoiledErrno.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

class DeleteFullDirTest : public testing::Test {
 protected:
  bool deleteTree(const std::string& relative) { return deleteAt(tree.path(relative)); }
  bool deleteAt(const std::string& path) {
    DeleteFullDir deletion(run.services);
    return deletion.navigate(SString(std::string_view(path)));
  }
  bool deleteOne(const std::string& path) {
    return deletePath(SString(std::string_view(path)), run.services);
  }

  /// Something that no user can delete: stat takes it for the directory that it leads to.
  std::string undeletable(const std::string& relative) {
    return tree.link(relative, tree.dir("elsewhere"));
  }
  [[nodiscard]] std::string warning(const std::string& relative, int error) const {
    return "Could not delete " + tree.path(relative) + " :  " + std::strerror(error);
  }
  void expectWarnings(const Paths& expected) const {
    EXPECT_EQ(run.log.texts(), expected);
    for (const RecordingLog::Line& line : run.log.lines()) {
      EXPECT_EQ(line.level, LogLevel::Warning);
    }
  }

  TempTree tree;
  FakeRun run;
};

// One path.

TEST_F(DeleteFullDirTest, OnePathIsDeletedWhateverItsType) {
  const std::string file = tree.file("file", "text");
  const std::string dir = tree.dir("dir");
  const std::string fifo = tree.path("fifo");
  const std::string socket = tree.path("socket");
  ASSERT_EQ(::mknod(fifo.c_str(), S_IFIFO | 0600, 0), 0);
  ASSERT_EQ(::mknod(socket.c_str(), S_IFSOCK | 0600, 0), 0);
  for (const std::string& path : {file, dir, fifo, socket}) EXPECT_TRUE(deleteOne(path)) << path;
  EXPECT_TRUE(tree.list().empty());
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, ALinkToAFileGoesAndTheFileStays) {
  const std::string file = tree.file("file", "text");
  EXPECT_TRUE(deleteOne(tree.link("link", file)));
  EXPECT_EQ(tree.list(), Paths{"file"});
}

TEST_F(DeleteFullDirTest, ALinkToADirectoryStaysWithAWarning) {
  EXPECT_FALSE(deleteOne(undeletable("link")));
  EXPECT_EQ(tree.list(), (Paths{"elsewhere", "link"}));
  expectWarnings({warning("link", ENOTDIR)});
}

TEST_F(DeleteFullDirTest, WhatStatCannotFollowStaysSilently) {
  EXPECT_FALSE(deleteOne(tree.path("missing")));
  EXPECT_FALSE(deleteOne(tree.link("dangling", tree.path("missing"))));
  EXPECT_FALSE(deleteOne(""));
  EXPECT_EQ(tree.list(), Paths{"dangling"});
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, ADirectoryThatIsNotEmptyStaysWithAWarning) {
  tree.file("dir/file");
  EXPECT_FALSE(deleteOne(tree.path("dir")));
  EXPECT_EQ(tree.list(), (Paths{"dir", "dir/file"}));
  expectWarnings({warning("dir", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, AWarningNamesTheErrorOfTheDeletionWhateverRunsBehindIt) {
  tree.file("dir/file");
  {
    const SpoiledErrno spoiled;
    EXPECT_FALSE(deleteOne(tree.path("dir")));
  }
  expectWarnings({warning("dir", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, AFileThatMayNotBeDeletedStaysWithAWarning) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may delete everything";
  tree.file("closed/file");
  fs::permissions(tree.path("closed"), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_FALSE(deleteOne(tree.path("closed/file")));
  expectWarnings({warning("closed/file", EACCES)});
}

// Whole trees.

TEST_F(DeleteFullDirTest, AWholeTreeGoesWithoutAWord) {
  tree.file("top/a", "text");
  tree.file("top/one/b");
  tree.file("top/one/two/c");
  tree.dir("top/empty/deep/deeper");
  tree.link("top/one/link", tree.file("other"));
  ASSERT_EQ(::mknod(tree.path("top/one/socket").c_str(), S_IFSOCK | 0600, 0), 0);
  ASSERT_EQ(::mknod(tree.path("top/fifo").c_str(), S_IFIFO | 0600, 0), 0);
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list(), Paths{"other"});
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, ATrailingSeparatorMakesNoDifference) {
  tree.file("top/sub/a");
  EXPECT_FALSE(deleteTree("top/"));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(DeleteFullDirTest, ALargeTreeGoesToo) {
  for (int i = 0; i < 40; ++i) {
    for (int j = 0; j < 40; ++j) tree.file("top/" + std::to_string(i) + "/" + std::to_string(j));
  }
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_TRUE(tree.list().empty());
  EXPECT_EQ(run.progress.steps, 1);
}

TEST_F(DeleteFullDirTest, WhatIsMissingIsNoFailure) {
  EXPECT_FALSE(deleteTree("missing"));
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, AStartThatIsAFileIsDeleted) {
  tree.file("file");
  EXPECT_FALSE(deleteTree("file"));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(DeleteFullDirTest, CancellingDoesNotEndTheDeletion) {
  tree.file("top/sub/a");
  run.cancelFlag.set();
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_TRUE(tree.list().empty());
}

// What stays.

TEST_F(DeleteFullDirTest, AnUndeletableFileStaysWithTheDirectoriesAboveIt) {
  undeletable("top/one/two/kept");
  tree.file("top/one/two/a");
  tree.file("top/one/b");
  tree.file("top/other/deep/c");
  tree.file("top/d");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"one", "one/two", "one/two/kept"}));
}

TEST_F(DeleteFullDirTest, TheContentBehindALinkStays) {
  tree.file("elsewhere/precious", "text");
  undeletable("top/link");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(readFile(tree.path("elsewhere/precious")), "text");
}

TEST_F(DeleteFullDirTest, EachFailureIsLoggedAsAWarning) {
  undeletable("top/kept");
  EXPECT_FALSE(deleteTree("top"));
  expectWarnings({warning("top/kept", ENOTDIR), warning("top", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, ALinkToNothingStaysSilentlyAndItsDirectoryWithAWarning) {
  tree.link("top/dangling", tree.path("missing"));
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), Paths{"dangling"});
  expectWarnings({warning("top", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, ALinkToAFileOfTheTreeItselfStaysOnceItsFileIsGone) {
  tree.link("top/sub/link", tree.file("top/file"));
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"sub", "sub/link"}));
  expectWarnings({warning("top/sub", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, ADirectoryIsNotTriedWhenTheLeftoverAtItsPositionLiesBelowIt) {
  undeletable("top/a/kept");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"a", "a/kept"}));
  expectWarnings({warning("top/a/kept", ENOTDIR), warning("top/a", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, ADirectoryIsTriedWhenNoLeftoverIsAtItsPosition) {
  // Visited: top, top/a, top/a/b. The list of leftovers is [top/a/b, top/a] in the end: at the
  // position of "top/a" it had nothing yet, at that of "top" it has "top/a/b".
  undeletable("top/a/b/kept");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"a", "a/b", "a/b/kept"}));
  expectWarnings({warning("top/a/b/kept", ENOTDIR), warning("top/a/b", ENOTEMPTY),
                  warning("top/a", ENOTEMPTY)});
}

/// The order in which the system tells the two directories decides which is visited first.
bool isToldBefore(const std::string& directory, const std::string& first) {
  for (const auto& entry : fs::directory_iterator(directory)) {
    if (entry.is_directory()) return entry.path().filename() == first;
  }
  return false;
}

TEST_F(DeleteFullDirTest, ALeftoverWhoseNameOnlyBeginsAlikeKeepsADirectoryToo) {
  // Visited: top, top/x, top/xy, top/xy/z. When the turn comes to "top/x", the leftovers are
  // [top/xy/z, top/xy], and the one at its position begins with its text.
  int attempt = 0;
  std::string name;
  std::string top;
  do {
    ASSERT_LT(attempt, 64) << "the system tells every pair in the same order";
    top = std::string("top") + std::to_string(attempt);
    name = std::string("x") + std::to_string(attempt);
    tree.dir(top + "/" + (attempt % 2 == 0 ? name : name + "y"));
    tree.dir(top + "/" + (attempt % 2 == 0 ? name + "y" : name));
    ++attempt;
  } while (!isToldBefore(tree.path(top), name + "y"));
  undeletable(top + "/" + name + "y/z/kept");
  EXPECT_FALSE(deleteTree(top));
  EXPECT_EQ(tree.list(top), (Paths{name, name + "y", name + "y/z", name + "y/z/kept"}));
}

TEST_F(DeleteFullDirTest, SiblingsOfALeftoverGo) {
  undeletable("top/a/kept");
  for (const char* name : {"b", "c", "d", "e"}) tree.file(std::string("top/") + name + "/file");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"a", "a/kept"}));
}

TEST_F(DeleteFullDirTest, WhatAClosedDirectoryHoldsStays) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may delete everything";
  tree.file("top/closed/file");
  tree.file("top/open/file");
  fs::permissions(tree.path("top/closed"), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"closed", "closed/file"}));
  EXPECT_TRUE(run.log.contains(warning("top/closed/file", EACCES), LogLevel::Warning));
  EXPECT_TRUE(run.log.contains(warning("top/closed", ENOTEMPTY), LogLevel::Warning));
}

}  // namespace
}  // namespace vessant::test
