// Where files come to lie in an installer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/LauncherFileWriter.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;

TEST(Layout, PutsFilesOneBehindTheOther) {
  const Layout layout = layOut(100, {{10}, {0}, {65535}, {1}}, true);
  EXPECT_THAT(layout.offsets, ElementsAre(100, 110, 110, 65645));
  EXPECT_EQ(layout.indexOffset, 65646U);
}

TEST(Layout, LeavesRoomForALineBreak) {
  const Layout layout = layOut(0, {{10, true}, {5, true}}, true);
  EXPECT_THAT(layout.offsets, ElementsAre(0, 11));
  EXPECT_EQ(layout.indexOffset, 17U);
}

TEST(Layout, BeginsLargeFilesOnAPage) {
  EXPECT_THAT(layOut(1, {{65536}, {3}, {70000}}, true).offsets, ElementsAre(4096, 69632, 73728));
  EXPECT_THAT(layOut(8192, {{65536}}, true).offsets, ElementsAre(8192));
  EXPECT_THAT(layOut(1, {{65536}, {3}, {70000}}, false).offsets, ElementsAre(1, 65537, 65540));
}

TEST(Layout, FitsUpToTheLastOffset) {
  EXPECT_TRUE(layOut(0, {{0xFFFFFFFFU}}, false).fits());
  EXPECT_FALSE(layOut(1, {{0xFFFFFFFFU}}, false).fits());
  EXPECT_FALSE(layOut(0, {{0xFFFFFFFFU}, {0xFFFFFFFFU}, {0xFFFFFFFFFFU}}, false).fits());
}

}  // namespace
}  // namespace vessant::test
