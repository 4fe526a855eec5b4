// Paths: joining, taking apart, asking the file system.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/base/PathUtil.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

SString text(const std::string& path) {
  return SString(std::string_view(path));
}

/// Goes back to where it was, also from a directory that is gone.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) : before_(fs::current_path()) {
    fs::current_path(path);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;
  ~WorkingDirectory() { fs::current_path(before_); }

 private:
  fs::path before_;
};

TEST(PathUtil, ATrailingSeparatorIsAddedOnlyWhenMissing) {
  const std::pair<const char*, const char*> table[] = {
      {"/tmp", "/tmp/"}, {"/tmp/", "/tmp/"}, {"", ""}, {"/", "/"}, {"a", "a/"}, {"a\\", "a\\/"}};
  for (const auto& [path, expected] : table) {
    SString changed(path);
    ensureTrailingSeparator(changed);
    EXPECT_EQ(changed, expected) << path;
  }
}

TEST(PathUtil, JoinsWithOneSeparator) {
  EXPECT_EQ(joinPath("/tmp", "a"), "/tmp/a");
  EXPECT_EQ(joinPath("/tmp/", "a"), "/tmp/a");
  EXPECT_EQ(joinPath("/", "a"), "/a");
  EXPECT_EQ(joinPath("", "a"), "a");
  EXPECT_EQ(joinPath("/tmp", ""), "/tmp/");
}

TEST(PathUtil, JoiningLeavesTheGivenDirectoryAsItIs) {
  const SString directory("/tmp");
  EXPECT_EQ(joinPath(directory, "a"), "/tmp/a");
  EXPECT_EQ(directory, "/tmp");
}

struct Parts {
  const char* path;
  const char* directory;
  const char* name;
};

TEST(PathUtil, TakesAPathApartAtItsLastSeparatorOfEitherKind) {
  const Parts table[] = {{"/a/b.txt", "/a", "b.txt"},
                         {"a/b/c", "a/b", "c"},
                         {"plain", "", "plain"},
                         {"/root", "", "root"},
                         {"a/", "a", ""},
                         {"C:\\dir\\x", "C:\\dir", "x"},
                         {"a\\b/c", "a\\b", "c"},
                         {"a/b\\c", "a/b", "c"},
                         {"", "", ""},
                         {"/", "", ""}};
  for (const Parts& parts : table) {
    EXPECT_EQ(directoryOf(parts.path), parts.directory) << parts.path;
    EXPECT_EQ(fileNameOf(parts.path), parts.name) << parts.path;
  }
}

TEST(PathUtil, TheSeparatorsAreThoseOfThisPlatform) {
  EXPECT_EQ(kPathSeparator, '/');
  EXPECT_EQ(kPathListSeparator, ':');
}

TEST(PathUtil, WhatStatCanFollowExists) {
  TempTree tree;
  const std::string file = tree.file("dir/file");
  const std::string dir = tree.path("dir");
  EXPECT_TRUE(fileExists(text(file)));
  EXPECT_TRUE(fileExists(text(dir)));
  EXPECT_TRUE(fileExists(text(tree.link("to file", file))));
  EXPECT_FALSE(fileExists(text(tree.link("to nothing", tree.path("missing")))));
  EXPECT_FALSE(fileExists(text(tree.path("missing"))));
  EXPECT_FALSE(fileExists(text(file + "/below")));
  EXPECT_FALSE(fileExists(""));
}

TEST(PathUtil, ADirectoryIsOneAlsoBehindALink) {
  TempTree tree;
  const std::string file = tree.file("dir/file");
  const std::string dir = tree.path("dir");
  EXPECT_TRUE(isDirectory(text(dir)));
  EXPECT_TRUE(isDirectory(text(dir + "/")));
  EXPECT_TRUE(isDirectory(text(tree.link("to dir", dir))));
  EXPECT_FALSE(isDirectory(text(file)));
  EXPECT_FALSE(isDirectory(text(tree.link("to file", file))));
  EXPECT_FALSE(isDirectory(text(tree.path("missing"))));
  EXPECT_FALSE(isDirectory(""));
}

TEST(PathUtil, ARelativePathCountsFromTheCurrentDirectory) {
  TempTree tree;
  const std::string dir = tree.dir("work here");
  const WorkingDirectory inside(dir);
  EXPECT_EQ(currentDirectory(), text(dir));
  EXPECT_EQ(absolutePath("setup.bin"), text(dir + "/setup.bin"));
  EXPECT_EQ(absolutePath("./setup.bin"), text(dir + "/./setup.bin"));
  EXPECT_EQ(absolutePath(""), text(dir + "/"));
  EXPECT_EQ(absolutePath("/usr/setup.bin"), "/usr/setup.bin");
}

TEST(PathUtil, InTheRootDirectoryNoSeparatorIsDoubled) {
  const WorkingDirectory inside("/");
  EXPECT_EQ(absolutePath("setup.bin"), "/setup.bin");
}

TEST(PathUtil, ADirectoryThatIsGoneHasNoName) {
  TempTree tree;
  const std::string dir = tree.dir("gone");
  const WorkingDirectory inside(dir);
  fs::remove(dir);
  EXPECT_EQ(currentDirectory(), "");
  EXPECT_EQ(absolutePath("setup.bin"), "setup.bin");
}

/// A directory below the tree whose path has exactly `length` bytes.
std::string directoryOfLength(TempTree& tree, std::size_t length) {
  std::string relative;
  while (tree.path(relative).size() + 200 < length) relative += std::string(99, 'd') + "/";
  const std::size_t missing = length - tree.path(relative).size() - (relative.empty() ? 1 : 0);
  return tree.dir(relative + std::string(missing, 'e'));
}

TEST(PathUtil, TheCurrentDirectoryIsToldInUpTo1023Bytes) {
  TempTree tree;
  const std::string longest = directoryOfLength(tree, 1023);
  const std::string tooLong = directoryOfLength(tree, 1024);
  ASSERT_EQ(longest.size(), 1023U);
  {
    const WorkingDirectory inside(longest);
    EXPECT_EQ(currentDirectory(), text(longest));
  }
  const WorkingDirectory inside(tooLong);
  EXPECT_EQ(currentDirectory(), "");
}

}  // namespace
}  // namespace vessant::test
