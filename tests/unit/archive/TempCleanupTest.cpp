// What the clean-up at the end of a run deletes, and in which order.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "TempFixture.h"
#include "launcher/base/Exceptions.h"
#include "support/ProcessScope.h"
#include "support/StubbornEntries.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class TempCleanup : public TempFixture {
 protected:
  /// What cannot be deleted, not even by root.
  std::string stubborn(const std::string& path) {
    entries.add(fs::path(path).filename().string());
    return path;
  }
  static std::string warning(const std::string& path) {
    return "Could not delete " + path + " :  Operation not permitted";
  }
  static std::string strangerWarning(const std::string& path) {
    return "Could not delete " + path + " :  something else has taken its place";
  }

  StubbornEntries entries;
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

// Whoever may write to the temporary root may put something in the place of what lies there.

TEST_F(TempCleanup, LeavesADirectoryThatTookTheOldOnesPlace) {
  const std::string path = makeDir();
  fs::rename(path, path + ".moved");
  tree.file("root/" + fs::path(path).filename().string() + "/precious");
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(fs::exists(path + "/precious"));
  EXPECT_TRUE(run.log.contains(strangerWarning(path), LogLevel::Warning));
}

TEST_F(TempCleanup, LeavesALinkThatTookADirectorysPlace) {
  tree.file("elsewhere/precious");
  const std::string path = makeDir();
  fs::rename(path, path + ".moved");
  fs::create_directory_symlink(tree.path("elsewhere"), path);
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(fs::exists(tree.path("elsewhere/precious")));
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_TRUE(run.log.contains(strangerWarning(path), LogLevel::Warning));
}

TEST_F(TempCleanup, LeavesWhatTookAFilesPlace) {
  tree.file("elsewhere/precious");
  const std::string file = makeFile();
  const std::string other = makeFile();
  fs::rename(file, file + ".moved");
  fs::rename(other, other + ".moved");
  fs::create_directory_symlink(tree.path("elsewhere"), file);
  writeFile(other, "somebody else's");
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(readFile(other), "somebody else's");
  EXPECT_EQ(run.log.texts(), (Names{strangerWarning(file), strangerWarning(other)}));
}

// The directory above is exchanged for a link to one that holds the same names.
TEST_F(TempCleanup, IsNotLedAstrayByTheDirectoriesAbove) {
  const std::string directory = makeDir();
  const std::string file = makeFile();
  fs::rename(tree.path("root"), tree.path("moved"));
  tree.file("elsewhere/" + fs::path(directory).filename().string() + "/precious");
  tree.file("elsewhere/" + fs::path(file).filename().string());
  tree.link("root", tree.path("elsewhere"));
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(fs::exists(directory + "/precious"));
  EXPECT_TRUE(fs::exists(file));
  EXPECT_EQ(run.log.texts(), (Names{strangerWarning(file), strangerWarning(directory)}));
}

TEST_F(TempCleanup, DeletesAFileThatWasWrittenAnew) {
  writeFile(makeFile(), "longer than nothing");
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(TempCleanup, DeletesWhatIsMadeUnderAPathOnlyLater) {
  temp.registerTempFile(SString(tree.path("root/later")));
  tree.file("root/later");
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(TempCleanup, LeavesNothingOfAnUnpackedRuntimeFullOfLinks) {
  const std::string home = makeDir();
  fs::create_directories(home + "/jre/lib/security");
  writeFile(home + "/jre/lib/libjvm.so", "x");
  fs::create_symlink("libjvm.so", home + "/jre/lib/libjvm.so.1");
  fs::create_symlink("missing", home + "/jre/lib/dangling");
  fs::create_directory_symlink("../lib", home + "/jre/again");
  fs::permissions(home + "/jre/lib/security", fs::perms(0500));
  EXPECT_TRUE(temp.cleanupTempFiles());
  EXPECT_TRUE(tree.list("root").empty());
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
  EXPECT_TRUE(fs::exists(second));
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
