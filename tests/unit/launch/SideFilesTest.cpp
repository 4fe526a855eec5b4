// Where the side files lie and how their lines are read.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/launch/JavaArguments.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

TEST(SideFilePath, ReplacesTheExtension) {
  EXPECT_EQ(sideFilePath("/opt/app/setup.bin", ".cp1"), "/opt/app/setup.cp1");
  EXPECT_EQ(sideFilePath("./setup.tar.bin", ".sp"), "./setup.tar.sp");
  EXPECT_EQ(sideFilePath("C:\\app\\setup.exe", ".ja"), "C:\\app\\setup.ja");
  EXPECT_EQ(sideFilePath("/opt/.hidden", ".cp"), "/opt/.cp");
}

TEST(SideFilePath, AppendsToANameWithoutExtension) {
  EXPECT_EQ(sideFilePath("/opt/app/setup", ".cp2"), "/opt/app/setup.cp2");
  EXPECT_EQ(sideFilePath("/opt/app.d/setup", ".cp"), "/opt/app.d/setup.cp");
  EXPECT_EQ(sideFilePath("/opt\\app.d\\setup", ".cp"), "/opt\\app.d\\setup.cp");
}

TEST(SideFilePath, KeepsTheExtensionOfABareName) {
  EXPECT_EQ(sideFilePath("setup.bin", ".cp"), "setup.bin.cp");
  EXPECT_EQ(sideFilePath("setup", ".cp1"), "setup.cp1");
}

class SideFileLines : public ::testing::Test {
 protected:
  std::vector<std::string> linesOf(const std::string& content) {
    StringDeque lines;
    EXPECT_TRUE(readLines(SString(std::string_view(tree.file("side", content))), lines));
    std::vector<std::string> result;
    for (const SString& line : lines) {
      if (!line.isEmpty()) result.push_back(str(line));
    }
    return result;
  }

  using Texts = std::vector<std::string>;
  TempTree tree;
};

TEST_F(SideFileLines, EndAtTheLineBreakOrTheEndOfTheFile) {
  EXPECT_EQ(linesOf("one\ntwo\n\nthree"), (Texts{"one", "two", "three"}));
  EXPECT_EQ(linesOf(""), Texts{});
}

TEST_F(SideFileLines, MayEndInCarriageReturnAndLineBreak) {
  EXPECT_EQ(linesOf("one\r\ntwo\r\n\r\nthree\r\n"), (Texts{"one", "two", "three"}));
}

TEST_F(SideFileLines, AreTrimmed) {
  EXPECT_EQ(linesOf("  one two \t\n \t \n"), (Texts{"one two"}));
}

TEST_F(SideFileLines, OfAMissingFileAreNone) {
  StringDeque lines;
  EXPECT_FALSE(readLines(SString(std::string_view(tree.path("missing"))), lines));
  EXPECT_EQ(lines.count(), 0);
}

TEST_F(SideFileLines, OfADirectoryAreEmpty) {
  StringDeque lines;
  static_cast<void>(readLines(SString(std::string_view(tree.dir("directory"))), lines));
  for (const SString& line : lines) EXPECT_EQ(line, "");
}

}  // namespace
}  // namespace vessant::test
