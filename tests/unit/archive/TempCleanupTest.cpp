// What the clean-up at the end of a run deletes, and in which order.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "TempFixture.h"
#include "launcher/base/Exceptions.h"
#include "support/ProcessScope.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class TempCleanup : public TempFixture {
 protected:
  /// A new path with a link to an empty directory in its place: what cannot be deleted, not even
  /// by root, because it counts as a directory.
  std::string stubborn(const std::string& path) {
    fs::remove(path);
    fs::create_directory_symlink(tree.dir("elsewhere"), path);
    return path;
  }
  static std::string warning(const std::string& path) {
    return "Could not delete " + path + " :  Not a directory";
  }
};

TEST_F(TempCleanup, DeletesFilesAndDirectoriesWithAllTheyHold) {
  writeFile(makeFile(), "content");
  const std::string directory = makeDir();
  writeFile(directory + "/file", "x");
  fs::create_directories(directory + "/a/b/c");
  writeFile(directory + "/a/b/file", "x");
  static_cast<void>(makeDir());
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(tree.list("root").empty());
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(TempCleanup, LeavesEverythingElse) {
  tree.file("root/other");
  static_cast<void>(makeFile());
  temp.cleanupTempFiles();
  EXPECT_EQ(tree.list("root"), (Names{"other"}));
}

TEST_F(TempCleanup, DeletesWhatWasRegisteredByPath) {
  const std::string file = tree.file("somewhere/file", "x");
  const std::string directory = tree.dir("somewhere/directory");
  tree.file("somewhere/directory/inside");
  temp.registerTempFile(SString(file));
  temp.registerTempFile(SString(directory));
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(tree.list("somewhere").empty());
}

TEST_F(TempCleanup, TakesFilesFirstAndEachKindInItsOrder) {
  const std::string directory1 = stubborn(makeDir());
  const std::string file1 = stubborn(makeFile());
  const std::string directory2 = stubborn(makeDir());
  const std::string file2 = stubborn(makeFile());
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_EQ(run.log.lines(),
            (std::vector<RecordingLog::Line>{{warning(file1), LogLevel::Warning},
                                             {warning(file2), LogLevel::Warning},
                                             {warning(directory1), LogLevel::Warning},
                                             {warning(directory2), LogLevel::Warning}}));
}

TEST_F(TempCleanup, GoesOnBehindWhatCannotBeDeleted) {
  const std::string stays = stubborn(makeFile());
  static_cast<void>(makeFile());
  static_cast<void>(makeDir());
  EXPECT_TRUE(temp.cleanupTempFiles()) << "a leftover was handled, too";
  EXPECT_EQ(tree.list("root"), (Names{fs::path(stays).filename().string()}));
}

TEST_F(TempCleanup, SaysNothingOfWhatIsGoneAlready) {
  fs::remove(makeFile());
  fs::remove(makeDir());
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(TempCleanup, DoesNothingWithoutPaths) {
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(TempCleanup, HappensOnce) {
  const std::string file = makeFile();
  const std::string directory = makeDir();
  temp.cleanupTempFiles();
  writeFile(file, "somebody's new file");
  fs::create_directory(directory);
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_EQ(tree.list("root").size(), 2U);
}

TEST_F(TempCleanup, IsNotCancelled) {
  writeFile(makeDir() + "/file", "x");
  run.cancelFlag.set();
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(TempCleanup, SparesAnUnregisteredFile) {
  const std::string stays = makeFile();
  static_cast<void>(makeFile());
  temp.unregisterTempFile(SString(stays));
  temp.cleanupTempFiles();
  EXPECT_EQ(tree.list("root"), (Names{fs::path(stays).filename().string()}));
}

TEST_F(TempCleanup, SparesAnUnregisteredDirectory) {
  const std::string stays = makeDir();
  static_cast<void>(makeDir());
  temp.unregisterTempDir(SString(stays));
  temp.cleanupTempFiles();
  EXPECT_EQ(tree.list("root"), (Names{fs::path(stays).filename().string()}));
}

TEST_F(TempCleanup, ForgetsOnlyOneOfTwoEqualPaths) {
  const SString path = temp.createTempFile();
  temp.registerTempFile(path);
  temp.unregisterTempFile(path);
  temp.cleanupTempFiles();
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(TempCleanup, ForgetsNothingForAnotherPathOrKind) {
  const std::string file = makeFile();
  const std::string directory = makeDir();
  temp.unregisterTempFile("");
  temp.unregisterTempFile(SString(file + "/"));
  temp.unregisterTempFile(SString(directory));
  temp.unregisterTempDir(SString(directory + "/"));
  temp.unregisterTempDir(SString(file));
  temp.cleanupTempFiles();
  EXPECT_TRUE(tree.list("root").empty());
}

/// A log that is as full as the disk.
class ThrowingLog : public LogSink {
 public:
  explicit ThrowingLog(int kind) : kind_(kind) {}
  void log(const SString& /*text*/, LogLevel /*level*/) override {
    if (kind_ == 0) throw LauncherException("full");
    if (kind_ == 1) throw std::runtime_error("full");
    throw RangeException();
  }

 private:
  int kind_;
};

class TempCleanupException : public TempCleanup, public ::testing::WithParamInterface<int> {};

TEST_P(TempCleanupException, StopsAtItsPathAndGoesNoFurther) {
  ThrowingLog log(GetParam());
  const RunServices services{log, run.progress, run.messages, run.cancelFlag, run.platform};
  TempFiles throwing(services, root);
  const std::string first = str(throwing.createTempFile());
  const std::string second = stubborn(str(throwing.createTempFile()));
  const std::string third = str(throwing.createTempFile());
  const std::string fourth = str(throwing.createTempDir());
  EXPECT_FALSE(throwing.cleanupTempFiles());
  EXPECT_FALSE(fs::exists(first));
  EXPECT_TRUE(fs::is_symlink(second));
  EXPECT_TRUE(fs::exists(third));
  EXPECT_TRUE(fs::exists(fourth));
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, TempCleanupException, ::testing::Values(0, 1, 2));

class OwnExecutable : public ::testing::Test {
 protected:
  TempTree tree;
};

TEST_F(OwnExecutable, GoesWithItsEmptyDirectory) {
  deleteOwnExecutable(SString(tree.file("home/launcher")));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(OwnExecutable, GoesAloneFromADirectoryWithOtherFiles) {
  tree.file("home/other");
  deleteOwnExecutable(SString(tree.file("home/launcher")));
  EXPECT_EQ(tree.list("home"), (Names{"other"}));
}

TEST_F(OwnExecutable, MayBeGoneAlready) {
  tree.dir("home");
  deleteOwnExecutable(SString(tree.path("home/launcher")));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(OwnExecutable, IsNotADirectory) {
  tree.dir("home/launcher");
  deleteOwnExecutable(SString(tree.path("home/launcher")));
  EXPECT_EQ(tree.list(), (Names{"home", "home/launcher"}));
}

TEST_F(OwnExecutable, GoesWithoutADirectoryInItsName) {
  tree.file("home/launcher");
  const ScopedDirectory inside(tree.path("home"));
  deleteOwnExecutable("launcher");
  EXPECT_EQ(tree.list(), (Names{"home"}));
}

TEST_F(OwnExecutable, IsItselfWhenItIsALink) {
  const std::string file = tree.file("elsewhere/file");
  deleteOwnExecutable(SString(tree.link("home/launcher", file)));
  EXPECT_EQ(tree.list(), (Names{"elsewhere", "elsewhere/file"}));
}

}  // namespace
}  // namespace vessant::test
