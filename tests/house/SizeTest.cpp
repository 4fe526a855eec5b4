// Files stay small enough to be read in one sitting, functions to be seen at a glance. There are no
// exceptions.

#include <gtest/gtest.h>

#include "house/CodeReader.h"
#include "house/SourceTree.h"

namespace vessant::test {
namespace {

constexpr std::size_t kLongestSource = 400;
constexpr std::size_t kLongestHeader = 200;
constexpr std::size_t kLongestFunction = 28;

TEST(Sizes, FilesAreShort) {
  for (const SourceFile& file : sourceFiles()) {
    const std::size_t limit = file.path.ends_with(".h") ? kLongestHeader : kLongestSource;
    EXPECT_LE(file.lines.size(), limit) << file.path;
  }
}

TEST(Sizes, FunctionsAreShort) {
  std::size_t checked = 0;
  for (const SourceFile& file : sourceFiles()) {
    for (const FunctionRange& function : outlineOf(file.lines).functions) {
      EXPECT_LE(function.length(), kLongestFunction)
          << file.path << ":" << function.firstLine << " " << function.name;
      ++checked;
    }
  }
  EXPECT_GT(checked, 500U) << "the functions were not found";
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
