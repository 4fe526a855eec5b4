// What a walk visits, and in which order.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <dirent.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "support/FakeRun.h"
#include "support/TempTree.h"
#include "unit/base/RecordingWalk.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

class FileNavigatorTest : public testing::Test {
 protected:
  /// The names in a directory, in the order in which the system tells them.
  [[nodiscard]] Paths namesIn(const std::string& relative) const {
    Paths names;
    DIR* stream = ::opendir(tree.path(relative).c_str());
    while (const dirent* entry = ::readdir(stream)) {
      const std::string name = entry->d_name;
      if (name != "." && name != "..") names.push_back(name);
    }
    ::closedir(stream);
    return names;
  }

  /// The events of a whole walk, by the plainest means: a directory's files in order, then its
  /// subdirectories, the last first.
  void appendExpected(const std::string& directory, Paths& events) const {
    events.push_back("enter " + (directory.empty() ? "." : directory));
    Paths subdirectories;
    for (const std::string& name : namesIn(directory)) {
      const std::string path = directory.empty() ? name : directory + "/" + name;
      if (fs::is_directory(fs::symlink_status(tree.path(path)))) {
        subdirectories.insert(subdirectories.begin(), path);
      } else {
        events.push_back("file " + path);
      }
    }
    for (const std::string& path : subdirectories) appendExpected(path, events);
  }

  void makeBushyTree() {
    for (const char* top : {"a", "b", "c"}) {
      for (const char* middle : {"x", "y", "z"}) {
        const std::string path = std::string(top) + "/" + middle;
        tree.file(path + "/1");
        tree.file(path + "/2");
        tree.dir(path + "/empty");
        tree.file(path + "/deep/3");
      }
      tree.file(std::string(top) + "/0");
    }
    tree.file("top");
  }

  TempTree tree;
  FakeRun run;
  RecordingWalk walk{run, tree};
};

TEST_F(FileNavigatorTest, HandsEveryFileBelowTheStartOver) {
  tree.file("a");
  tree.file("dir/b");
  tree.file("dir/sub/c");
  tree.dir("dir/empty");
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.sortedFiles(), (Paths{"a", "dir/b", "dir/sub/c"}));
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(FileNavigatorTest, PassesOverOnlyTheTwoDotEntries) {
  tree.file(".hidden");
  tree.file("...");
  tree.file("..a");
  tree.file(".dir/.b");
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.sortedFiles(), (Paths{"...", "..a", ".dir/.b", ".hidden"}));
}

TEST_F(FileNavigatorTest, VisitsSubdirectoriesAfterTheirDirectoryTheLastFoundFirst) {
  makeBushyTree();
  Paths expected;
  appendExpected("", expected);
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.events, expected);
}

TEST_F(FileNavigatorTest, RemembersTheVisitedDirectoriesInTheirOrder) {
  makeBushyTree();
  walk.walk();
  Paths entered;
  for (const std::string& event : walk.events) {
    if (event.starts_with("enter ")) entered.push_back(event.substr(6));
  }
  EXPECT_EQ(walk.visited, entered);
  EXPECT_EQ(walk.visited.size(), 1U + 3U + 3U * 3U * 3U);
  EXPECT_EQ(walk.visited.front(), ".");
}

TEST_F(FileNavigatorTest, AddsASeparatorOnlyWhenTheDirectoryHasNone) {
  tree.file("dir/a");
  tree.file("dir/sub/b");
  EXPECT_FALSE(walk.walkFrom(tree.path("dir/")));
  EXPECT_EQ(walk.sortedFiles(), (Paths{"dir/a", "dir/sub/b"}));
  EXPECT_EQ(walk.visited, (Paths{"dir/", "dir/sub"})) << "the start stands as it was given";
}

TEST_F(FileNavigatorTest, ARelativeStartGivesRelativePaths) {
  tree.file("dir/a");
  const fs::path before = fs::current_path();
  fs::current_path(tree.root());
  walk.walkFrom("dir");
  fs::current_path(before);
  EXPECT_EQ(walk.files, Paths{"dir/a"});
}

TEST_F(FileNavigatorTest, ALinkToADirectoryIsAFileAndIsNotDescendedInto) {
  tree.file("real/inside");
  tree.link("link", tree.path("real"));
  tree.link("real/loop", tree.root());
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.sortedFiles(), (Paths{"link", "real/inside", "real/loop"}));
}

TEST_F(FileNavigatorTest, ALinkToNothingIsAFile) {
  tree.link("dangling", tree.path("missing"));
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{"dangling"});
}

TEST_F(FileNavigatorTest, AStartThatIsALinkIsFollowed) {
  tree.file("real/inside");
  EXPECT_FALSE(walk.walkFrom(tree.link("link", tree.path("real"))));
  EXPECT_EQ(walk.files, Paths{"link/inside"});
}

TEST_F(FileNavigatorTest, AStartThatIsNotADirectoryIsPassedOverSilently) {
  const std::string file = tree.file("file");
  for (const std::string& start : {file, tree.path("missing"), std::string()}) {
    EXPECT_FALSE(walk.walkFrom(start));
    EXPECT_EQ(walk.visited.size(), 1U);
  }
  EXPECT_TRUE(walk.files.empty());
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(FileNavigatorTest, ADirectoryThatIsGoneWhenItsTurnComesIsPassedOverSilently) {
  tree.dir("gone");
  tree.file("stays/a");
  walk.onDirectory = [&](const std::string& path) {
    if (path == "gone") fs::remove(tree.path("gone"));
    return false;
  };
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{"stays/a"});
  EXPECT_EQ(walk.visited.size(), 3U);
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(FileNavigatorTest, ADirectoryThatMayNotBeReadIsPassedOverSilently) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every directory";
  tree.file("closed/a");
  tree.file("open/b");
  fs::permissions(tree.path("closed"), fs::perms::none);
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{"open/b"});
  EXPECT_EQ(walk.visited.size(), 3U);
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(FileNavigatorTest, ASkippedDirectoryIsVisitedButNotRead) {
  tree.file("skipped/a");
  tree.file("skipped/sub/b");
  tree.file("read/c");
  walk.onDirectory = [](const std::string& path) { return path == "skipped"; };
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{"read/c"});
  Paths visited = walk.visited;
  std::sort(visited.begin(), visited.end());
  EXPECT_EQ(visited, (Paths{".", "read", "skipped"}));
}

TEST_F(FileNavigatorTest, TheStartCanBeSkippedToo) {
  tree.file("a");
  walk.onDirectory = [](const std::string&) { return true; };
  EXPECT_FALSE(walk.walk());
  EXPECT_TRUE(walk.files.empty());
  EXPECT_EQ(walk.visited, Paths{"."});
}

TEST_F(FileNavigatorTest, ADeepTreeNeedsNoRecursion) {
  std::string path = "d";
  for (int depth = 1; depth < 300; ++depth) path += "/d";
  tree.file(path + "/a");
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{path + "/a"});
  EXPECT_EQ(walk.visited.size(), 301U);
}

TEST_F(FileNavigatorTest, EveryWalkStartsAnew) {
  tree.file("one/a");
  tree.file("two/b");
  walk.walkFrom(tree.path("one"));
  walk.walkFrom(tree.path("two"));
  EXPECT_EQ(walk.files, (Paths{"one/a", "two/b"}));
  EXPECT_EQ(walk.visited, Paths{"two"});
}

TEST_F(FileNavigatorTest, FilesMayBeDeletedWhileTheWalkRuns) {
  for (int i = 0; i < 300; ++i) tree.file("dir/" + std::to_string(i));
  walk.onFile = [&](const std::string& path) { return !fs::remove(tree.path(path)); };
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files.size(), 300U);
  EXPECT_EQ(tree.list(), Paths{"dir"});
}

}  // namespace
}  // namespace vessant::test
