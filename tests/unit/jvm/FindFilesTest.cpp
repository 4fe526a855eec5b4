#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/jvm/FindFiles.h"
#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class RecordingListener : public FileFindListener {
 public:
  bool fileFound(const SString& path) override {
    paths.push_back(str(path));
    return paths.size() >= stopAfter;
  }

  std::vector<std::string> paths;
  std::size_t stopAfter = 1000;
};

/// Lets a test ask what the walk asks.
class OpenFindFiles : public FindFiles {
 public:
  using FindFiles::FindFiles;
  using FindFiles::processFile;
  using FindFiles::skipDirectory;
};

class FindFilesTest : public testing::Test {
 protected:
  void lookFor(const std::vector<std::string>& names) {
    suffixes.clear();
    for (const std::string& name : names) suffixes.add(text(name));
  }
  OpenFindFiles walker(const SString& tempRoot = "/tmp") {
    return {run.services, suffixes, listener, tempRoot};
  }
  bool process(const std::string& path) {
    const std::size_t name = path.rfind('/') + 1;
    SString directory(path.substr(0, name));
    return walker().processFile(FoundFile(AT_FDCWD, path.c_str() + name, directory));
  }
  bool walk(const std::string& root) { return walker().navigate(text(root)); }

  FakeRun run;
  StringDeque suffixes;
  RecordingListener listener;
};

TEST_F(FindFilesTest, ReportsAPathThatEndsInTheName) {
  lookFor({"bin/java"});
  EXPECT_FALSE(process("/usr/jdk/bin/java"));
  EXPECT_FALSE(process("/bin/java"));
  EXPECT_THAT(listener.paths, ElementsAre("/usr/jdk/bin/java", "/bin/java"));
}

TEST_F(FindFilesTest, ReportsWholeComponentsOnly) {
  lookFor({"bin/java"});
  for (const char* path : {"/usr/jdk/xbin/java", "/usr/jdk/bin/javac", "/usr/jdk/bin/Java",
                           "bin/java", "/usr/java", "/usr/bin/java/x", "java"}) {
    process(path);
  }
  EXPECT_THAT(listener.paths, IsEmpty());
}

TEST_F(FindFilesTest, AnEmptyNameIsNeverFound) {
  lookFor({""});
  process("/usr/jdk/bin/java");
  EXPECT_THAT(listener.paths, IsEmpty());
}

TEST_F(FindFilesTest, ReportsAPathOnceForEachNameThatItEndsIn) {
  lookFor({"java", "bin/java", "bin/javaw", "jre/bin/java"});
  process("/jdk/jre/bin/java");
  EXPECT_THAT(listener.paths,
              ElementsAre("/jdk/jre/bin/java", "/jdk/jre/bin/java", "/jdk/jre/bin/java"));
}

TEST_F(FindFilesTest, StopsWhenTheListenerSaysSo) {
  lookFor({"java", "bin/java"});
  listener.stopAfter = 1;
  EXPECT_TRUE(process("/jdk/bin/java"));
  EXPECT_EQ(listener.paths.size(), 1U);
}

TEST_F(FindFilesTest, LeavesTheDefaultTemporaryDirectoryOut) {
  for (const char* root : {"/tmp", "/data/temp", "/"}) {
    EXPECT_TRUE(walker(root).skipDirectory("/tmp")) << root;
    EXPECT_FALSE(walker(root).skipDirectory("/var/tmp")) << root;
    EXPECT_FALSE(walker(root).skipDirectory("/tmp/sub")) << root;
    EXPECT_FALSE(walker(root).skipDirectory("/tmpx")) << root;
  }
}

TEST_F(FindFilesTest, LeavesAnotherTemporaryDirectoryOutOnlyWhenItIsTheRoot) {
  EXPECT_FALSE(walker("/data/temp").skipDirectory("/data/temp"));
  EXPECT_TRUE(walker("/data/temp").skipDirectory("/data/temp/"));
  EXPECT_TRUE(walker("/data/temp/").skipDirectory("/data/temp/"));
  EXPECT_TRUE(walker("/").skipDirectory("/"));
  EXPECT_FALSE(walker("/tmp").skipDirectory("/"));
}

TEST_F(FindFilesTest, WalksTheTree) {
  TempTree tree;
  lookFor({"bin/java"});
  const std::string one = tree.file("a/bin/java");
  const std::string two = tree.file("a/deep/er/bin/java");
  tree.file("b/bin/javac");
  tree.file("java");
  EXPECT_FALSE(walk(tree.root()));
  EXPECT_THAT(listener.paths, UnorderedElementsAre(one, two));
}

TEST_F(FindFilesTest, ADirectoryIsNoFile) {
  TempTree tree;
  lookFor({"bin/java"});
  tree.dir("jdk/bin/java/bin");
  EXPECT_FALSE(walk(tree.root()));
  EXPECT_THAT(listener.paths, IsEmpty());
}

TEST_F(FindFilesTest, ALinkIsAFileAndNotFollowed) {
  TempTree tree;
  lookFor({"bin/java"});
  tree.file("real/bin/other");
  const std::string toDirectory = tree.link("jdk/bin/java", tree.path("real"));
  const std::string toNothing = tree.link("jre/bin/java", "nowhere");
  tree.link("alias", tree.path("jdk"));
  EXPECT_FALSE(walk(tree.root()));
  EXPECT_THAT(listener.paths, UnorderedElementsAre(toDirectory, toNothing));
}

TEST_F(FindFilesTest, TheWalkEndsWithTheFileThatStopsIt) {
  TempTree tree;
  lookFor({"bin/java"});
  for (const char* home : {"a", "b", "c"}) tree.file(std::string(home) + "/bin/java");
  listener.stopAfter = 2;
  EXPECT_TRUE(walk(tree.root()));
  EXPECT_EQ(listener.paths.size(), 2U);
}

TEST_F(FindFilesTest, TheWalkEndsWhenItIsCancelled) {
  TempTree tree;
  lookFor({"bin/java"});
  tree.file("a/bin/java");
  run.cancelFlag.set();
  EXPECT_FALSE(walk(tree.root()));
  EXPECT_THAT(listener.paths, IsEmpty());
}

TEST_F(FindFilesTest, TheWalkEndsBetweenTwoEntriesWhenItIsCancelled) {
  class CancellingListener : public FileFindListener {
   public:
    explicit CancellingListener(CancelFlag& flag) : flag_(flag) {}
    bool fileFound(const SString& /*path*/) override {
      flag_.set();
      return ++count, false;
    }
    int count = 0;

   private:
    CancelFlag& flag_;
  };
  TempTree tree;
  lookFor({"java", "javaw"});
  tree.file("bin/java");
  tree.file("bin/javaw");
  CancellingListener cancelling(run.cancelFlag);
  EXPECT_FALSE(FindFiles(run.services, suffixes, cancelling, "/tmp").navigate(text(tree.root())));
  EXPECT_EQ(cancelling.count, 1);
}

TEST_F(FindFilesTest, TheDisplayMovesOnOnceAThousandFiles) {
  TempTree tree;
  lookFor({"bin/java"});
  for (int i = 0; i < 1001; ++i) tree.file("files/" + std::to_string(i));
  tree.dir("files/directory");
  EXPECT_FALSE(walk(tree.root()));
  EXPECT_EQ(run.progress.steps, 1);
}

}  // namespace
}  // namespace vessant::test
