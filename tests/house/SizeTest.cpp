// Files stay small enough to be read in one sitting. There are no exceptions.

#include <gtest/gtest.h>

#include "house/SourceTree.h"

namespace vessant::test {
namespace {

constexpr std::size_t kLongestSource = 400;
constexpr std::size_t kLongestHeader = 200;

TEST(Sizes, FilesAreShort) {
  for (const SourceFile& file : sourceFiles()) {
    const std::size_t limit = file.path.ends_with(".h") ? kLongestHeader : kLongestSource;
    EXPECT_LE(file.lines.size(), limit) << file.path;
  }
}

TEST(Sizes, EveryHeaderOpensWithItsRole) {
  for (const SourceFile& file : sourceFiles()) {
    if (!file.path.ends_with(".h")) continue;
    ASSERT_GE(file.lines.size(), 2U) << file.path;
    EXPECT_TRUE(file.lines.front().starts_with("// ")) << file.path;
  }
}

}  // namespace
}  // namespace vessant::test
