// Copies of files and directory trees.

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/archive/DirectoryCopy.h"
#include "support/FakeRun.h"
#include "support/ProcessScope.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class CopyFixture : public ::testing::Test {
 protected:
  int copyOne(const std::string& from, const std::string& to) {
    return copyFile(SString(from), SString(to));
  }
  int copyTree() { return copyDirectory(SString(source), SString(target), run.log); }
  /// Once, with the two paths of what could not be copied and the reason.
  void expectOneFailure(const std::string& of, const std::string& reason) {
    const std::string text = "Could not copy " + source + of + " to " + target + of + " :  ";
    EXPECT_EQ(run.log.lines(),
              (std::vector<RecordingLog::Line>{{"Error while copying file", LogLevel::Information},
                                               {text + reason, LogLevel::Error}}));
  }

  TempTree tree;
  FakeRun run;
  ScopedUmask mask{0022};
  std::string source = tree.path("source");
  std::string target = tree.path("target");
};

class FileCopy : public CopyFixture {};

TEST_F(FileCopy, HasTheBytesOfTheSource) {
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 8192U, 100'000U}) {
    std::string bytes(size, 'x');
    if (size > 0) bytes.back() = '\0';
    EXPECT_EQ(copyOne(tree.file("a", bytes), tree.path("b" + std::to_string(size))), 0);
    EXPECT_EQ(readFile(tree.path("b" + std::to_string(size))), bytes);
  }
}

TEST_F(FileCopy, HasThePermissionsOfTheSource) {
  tree.file("a", "x");
  for (const mode_t mode : {0400U, 0666U, 0755U, 0777U}) {
    ASSERT_EQ(::chmod(tree.path("a").c_str(), mode), 0);
    EXPECT_EQ(copyOne(tree.path("a"), tree.path("b" + std::to_string(mode))), 0);
    EXPECT_EQ(permissionsOf(tree.path("b" + std::to_string(mode))), mode);
  }
}

TEST_F(FileCopy, ChangesThePermissionsOfAnOlderTarget) {
  tree.program("a", "x");
  EXPECT_EQ(copyOne(tree.path("a"), tree.file("b", "y")), 0);
  EXPECT_EQ(permissionsOf(tree.path("b")), 0755U);
}

TEST_F(FileCopy, KeepsTheTailOfALongerTarget) {
  EXPECT_EQ(copyOne(tree.file("a", "new"), tree.file("b", "old and longer")), 0);
  EXPECT_EQ(readFile(tree.path("b")), "new and longer");
}

TEST_F(FileCopy, FailsWithoutASource) {
  EXPECT_EQ(copyOne(tree.path("missing"), tree.path("b")), -1);
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(FileCopy, FailsWhenTheTargetCannotBeOpened) {
  tree.file("a", "x");
  EXPECT_EQ(copyOne(tree.path("a"), tree.path("missing/b")), -1);
  EXPECT_EQ(copyOne(tree.path("a"), tree.dir("directory")), -1);
}

TEST_F(FileCopy, FailsWhenTheSourceCannotBeRead) {
  EXPECT_EQ(copyOne(tree.dir("directory"), tree.path("b")), -1);
}

TEST_F(FileCopy, FailsOnAFullDisk) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
  tree.link("full", "/dev/full");
  EXPECT_EQ(copyOne(tree.file("a", "x"), tree.path("full")), -1);
}

TEST_F(FileCopy, LeavesNoDescriptorOpen) {
  const std::size_t before = openDescriptors();
  EXPECT_EQ(copyOne(tree.file("a", "x"), tree.path("b")), 0);
  EXPECT_EQ(copyOne(tree.path("a"), tree.path("missing/b")), -1);
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(FileCopy, SucceedsOverAFileOfSomebodyElse) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root";
  tree.program("a", "new");
  tree.file("b", "old");
  ASSERT_EQ(::chmod(tree.root().c_str(), 0755), 0);
  ASSERT_EQ(::chmod(tree.path("b").c_str(), 0666), 0);
  int result = 0;
  {
    const ScopedOrdinaryUser user;
    result = copyOne(tree.path("a"), tree.path("b"));
  }
  EXPECT_EQ(result, 0);
  EXPECT_EQ(readFile(tree.path("b")), "new");
  EXPECT_EQ(permissionsOf(tree.path("b")), 0666U);
}

class DirectoryCopy : public CopyFixture {};

TEST_F(DirectoryCopy, HasTheWholeTree) {
  tree.file("source/a", "A");
  tree.file("source/d/b", "B");
  tree.file("source/d/e/c", "C");
  tree.dir("source/empty");
  EXPECT_EQ(copyTree(), 0);
  EXPECT_EQ(tree.list("target"), tree.list("source"));
  EXPECT_EQ(readFile(tree.path("target/d/e/c")), "C");
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DirectoryCopy, HasThePermissionsOfTheTree) {
  tree.program("source/bin/java", "x");
  ASSERT_EQ(::chmod(tree.path("source/bin").c_str(), 0700), 0);
  ASSERT_EQ(::chmod(source.c_str(), 0750), 0);
  EXPECT_EQ(copyTree(), 0);
  EXPECT_EQ(permissionsOf(target), 0750U);
  EXPECT_EQ(permissionsOf(tree.path("target/bin")), 0700U);
  EXPECT_EQ(permissionsOf(tree.path("target/bin/java")), 0755U);
}

TEST_F(DirectoryCopy, JoinsATargetThatIsThereAndGivesItTheSourcesPermissions) {
  tree.file("source/d/new", "x");
  tree.file("target/d/old", "y");
  ASSERT_EQ(::chmod(source.c_str(), 0711), 0);
  ASSERT_EQ(::chmod(target.c_str(), 0777), 0);
  EXPECT_EQ(copyTree(), 0);
  EXPECT_EQ(permissionsOf(target), 0711U);
  EXPECT_EQ(tree.list("target/d"), (Names{"new", "old"}));
}

TEST_F(DirectoryCopy, TakesPathsWithATrailingSeparator) {
  tree.file("source/a", "x");
  source += "/";
  target += "/";
  EXPECT_EQ(copyTree(), 0);
  EXPECT_EQ(tree.list("target"), (Names{"a"}));
}

TEST_F(DirectoryCopy, SkipsWhatIsNeitherFileNorDirectory) {
  tree.file("source/file", "x");
  tree.link("source/link", "file");
  tree.link("source/up", "..");
  ASSERT_EQ(::mkfifo(tree.path("source/pipe").c_str(), 0600), 0);
  EXPECT_EQ(copyTree(), 0);
  EXPECT_EQ(tree.list("target"), (Names{"file"}));
}

TEST_F(DirectoryCopy, TakesALinkToADirectoryAsItsSource) {
  tree.file("real/a", "x");
  ASSERT_EQ(::chmod(tree.path("real").c_str(), 0711), 0);
  tree.link("source", tree.path("real"));
  EXPECT_EQ(copyTree(), 0);
  EXPECT_EQ(tree.list("target"), (Names{"a"}));
  EXPECT_EQ(permissionsOf(target), 0711U);
}

TEST_F(DirectoryCopy, FailsAtAFileThatCannotBeCopied) {
  tree.file("source/d/e/file", "x");
  tree.dir("target/d/e/file");
  EXPECT_EQ(copyTree(), -1);
  expectOneFailure("/d/e/file", "Is a directory");
}

TEST_F(DirectoryCopy, FailsAtADirectoryThatCannotBeMade) {
  tree.dir("source/d/e");
  tree.file("target/d/e");
  EXPECT_EQ(copyTree(), -1);
  expectOneFailure("/d/e", "File exists");
}

TEST_F(DirectoryCopy, FailsWhenTheTargetCannotBeMade) {
  tree.dir("source");
  tree.file("target");
  EXPECT_EQ(copyTree(), -1);
  expectOneFailure("", "File exists");
}

TEST_F(DirectoryCopy, LeavesTheTargetAloneWithoutASource) {
  tree.dir("target");
  EXPECT_EQ(copyTree(), -1);
  EXPECT_EQ(permissionsOf(target), 0755U);
  expectOneFailure("", "No such file or directory");
}

TEST_F(DirectoryCopy, EndsAtTheFirstFailure) {
  for (const char* name : {"a", "b", "c"}) {
    tree.file(std::string("source/") + name, "x");
    tree.dir(std::string("target/") + name);
  }
  EXPECT_EQ(copyTree(), -1);
  EXPECT_EQ(run.log.lines().size(), 2U);
}

TEST_F(DirectoryCopy, SucceedsIntoADirectoryOfSomebodyElse) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root";
  tree.file("source/a", "x");
  ASSERT_EQ(::chmod(tree.root().c_str(), 0755), 0);
  ASSERT_EQ(::chmod(tree.dir("target").c_str(), 0777), 0);
  int result = 0;
  {
    const ScopedOrdinaryUser user;
    result = copyTree();
  }
  EXPECT_EQ(result, 0);
  EXPECT_EQ(tree.list("target"), (Names{"a"}));
  EXPECT_EQ(permissionsOf(target), 0777U);
}

TEST_F(DirectoryCopy, LeavesNoDescriptorOpen) {
  tree.file("source/d/file", "x");
  const std::size_t before = openDescriptors();
  EXPECT_EQ(copyTree(), 0);
  EXPECT_EQ(openDescriptors(), before);
}

class DirectorySize : public CopyFixture {
 protected:
  void expectSize(std::uint64_t bytes, std::uint64_t files) {
    const TreeSize size = directorySize(SString(source));
    EXPECT_EQ(size.bytes, bytes);
    EXPECT_EQ(size.files, files);
  }
};

TEST_F(DirectorySize, IsTheSumOfAllFilesBelow) {
  tree.file("source/a", "12345");
  tree.file("source/d/b", std::string(10'000, 'x'));
  tree.file("source/d/e/c", "");
  tree.dir("source/empty");
  expectSize(10'005, 3);
}

TEST_F(DirectorySize, LeavesOutWhatIsNeitherFileNorDirectory) {
  tree.file("source/a", "12345");
  tree.link("source/link", "a");
  tree.link("source/up", "..");
  tree.link("source/broken", "nowhere");
  ASSERT_EQ(::mkfifo(tree.path("source/pipe").c_str(), 0600), 0);
  expectSize(5, 1);
}

TEST_F(DirectorySize, IsNothingForAnEmptyOrMissingDirectory) {
  expectSize(0, 0);
  tree.dir("source");
  expectSize(0, 0);
}

TEST_F(DirectorySize, CountsBeyondFourGibibytes) {
  constexpr std::uint64_t kSize = 5ULL << 30;
  std::error_code error;
  fs::resize_file(tree.file("source/sparse"), kSize, error);
  if (error) GTEST_SKIP() << "no large files here: " << error.message();
  tree.file("source/small", "x");
  expectSize(kSize + 1, 2);
}

class CheckedCopy : public CopyFixture {
 protected:
  void copy() { copyDirectoryChecked(SString(source), SString(target), run.services); }
};

TEST_F(CheckedCopy, AsksForTheSpaceAndCopies) {
  tree.file("source/a", "12345");
  tree.file("source/d/b", "123");
  copy();
  EXPECT_EQ(run.platform.spaceQuestions,
            (std::vector<FakePlatform::SpaceQuestion>{{target, 8, 2}}));
  EXPECT_EQ(tree.list("target"), tree.list("source"));
  EXPECT_EQ(run.log.lines(),
            (std::vector<RecordingLog::Line>{{"COPYING THE DIR", LogLevel::Information}}));
}

TEST_F(CheckedCopy, CopiesNothingWithoutTheSpace) {
  tree.file("source/a", "12345");
  run.platform.enoughSpace = false;
  EXPECT_EQ(thrownMessage([&] { copy(); }),
            " There may not be enough temporary disk space. Try using -vs:tempdir to use a "
            "temporary directory on a partition with more disk space.");
  EXPECT_FALSE(fs::exists(target));
  EXPECT_EQ(run.log.texts(), (Names{"COPYING THE DIR"}));
}

TEST_F(CheckedCopy, TellsAFailure) {
  tree.file("source/a", "x");
  tree.dir("target/a");
  EXPECT_EQ(thrownMessage([&] { copy(); }), "Error writing file = ");
  EXPECT_EQ(run.log.texts(),
            (Names{"COPYING THE DIR", "Error while copying file",
                   "Could not copy " + source + "/a to " + target + "/a :  Is a directory"}));
}

}  // namespace
}  // namespace vessant::test
