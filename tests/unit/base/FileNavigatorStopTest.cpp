// What ends a walk early, and how its progress shows.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "support/FakeRun.h"
#include "support/TempTree.h"
#include "unit/base/RecordingWalk.h"

namespace vessant::test {
namespace {

class FileNavigatorStopTest : public testing::Test {
 protected:
  void makeFiles(const std::string& directory, int count) {
    tree.dir(directory);
    for (int i = 0; i < count; ++i) {
      writeFile(tree.path(directory + "/" + std::to_string(i)), "");
    }
  }

  TempTree tree;
  FakeRun run;
  RecordingWalk walk{run, tree};
};

TEST_F(FileNavigatorStopTest, TheSubclassStopsTheWalkAtOnce) {
  makeFiles("a", 3);
  makeFiles("b", 3);
  walk.onFile = [](const std::string&) { return true; };
  EXPECT_TRUE(walk.walk());
  EXPECT_EQ(walk.files.size(), 1U);
  EXPECT_EQ(walk.visited.size(), 2U) << "the start and one of its two directories";
}

TEST_F(FileNavigatorStopTest, AStopAtTheVeryLastFileIsAStopToo) {
  makeFiles("a", 3);
  int seen = 0;
  walk.onFile = [&](const std::string&) { return ++seen == 3; };
  EXPECT_TRUE(walk.walk());
}

TEST_F(FileNavigatorStopTest, AStoppedWalkCanBeStartedAgain) {
  makeFiles("a", 3);
  walk.onFile = [](const std::string&) { return true; };
  EXPECT_TRUE(walk.walk());
  walk.onFile = [](const std::string&) { return false; };
  walk.files.clear();
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files.size(), 3U);
}

TEST_F(FileNavigatorStopTest, ACancelledRunIsNotWalkedAtAll) {
  makeFiles("a", 3);
  run.cancelFlag.set();
  EXPECT_FALSE(walk.walk());
  EXPECT_TRUE(walk.events.empty());
  EXPECT_TRUE(walk.visited.empty());
}

TEST_F(FileNavigatorStopTest, CancellingEndsTheWalkBeforeTheNextEntry) {
  makeFiles("a", 3);
  makeFiles("b", 3);
  walk.onFile = [&](const std::string&) { return run.cancelFlag.set(), false; };
  EXPECT_FALSE(walk.walk()) << "it was not the subclass that stopped it";
  EXPECT_EQ(walk.files.size(), 1U);
  EXPECT_EQ(walk.visited.size(), 2U);
}

TEST_F(FileNavigatorStopTest, CancellingBetweenDirectoriesLeavesTheNextUnread) {
  makeFiles("a", 3);
  walk.onDirectory = [&](const std::string&) { return run.cancelFlag.set(), false; };
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.events.size(), 1U);
  EXPECT_EQ(walk.visited.size(), 1U);
}

TEST_F(FileNavigatorStopTest, AStopIsReportedAlsoWhenTheRunIsCancelled) {
  makeFiles("a", 3);
  walk.onFile = [&](const std::string&) { return run.cancelFlag.set(), true; };
  EXPECT_TRUE(walk.walk());
}

TEST_F(FileNavigatorStopTest, AWalkThatIsNotCancellableGoesOn) {
  makeFiles("a", 3);
  run.cancelFlag.set();
  RecordingWalk steady(run, tree, false);
  EXPECT_FALSE(steady.walk());
  EXPECT_EQ(steady.files.size(), 3U);
}

TEST_F(FileNavigatorStopTest, EveryThousandthFileIsOneStepOfProgress) {
  makeFiles("a", 999);
  walk.walk();
  EXPECT_EQ(run.progress.steps, 0);
  makeFiles("b", 1);
  walk.walk();
  EXPECT_EQ(run.progress.steps, 1);
  makeFiles("c", 999);
  walk.walk();
  EXPECT_EQ(run.progress.steps, 2) << "each walk counts from nought, over all its directories";
  makeFiles("d", 1);
  walk.walk();
  EXPECT_EQ(run.progress.steps, 4);
}

TEST_F(FileNavigatorStopTest, TheStepComesAfterTheThousandthCall) {
  makeFiles("a", 1500);
  walk.onFile = [&](const std::string&) {
    EXPECT_EQ(run.progress.steps, walk.files.size() <= 1000 ? 0 : 1) << walk.files.size();
    return false;
  };
  walk.walk();
}

TEST_F(FileNavigatorStopTest, TheFileThatStopsTheWalkIsCounted) {
  makeFiles("a", 1500);
  walk.onFile = [&](const std::string&) { return walk.files.size() == 1000; };
  EXPECT_TRUE(walk.walk());
  EXPECT_EQ(run.progress.steps, 1);
}

TEST_F(FileNavigatorStopTest, DirectoriesAreNotCounted) {
  makeFiles("a", 999);
  for (int i = 0; i < 10; ++i) tree.dir(std::string("d") + std::to_string(i));
  walk.walk();
  EXPECT_EQ(walk.visited.size(), 12U);
  EXPECT_EQ(run.progress.steps, 0);
}

}  // namespace
}  // namespace vessant::test
