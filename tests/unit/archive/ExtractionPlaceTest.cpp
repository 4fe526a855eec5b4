// What lies in the way of an extracted file, and names that would lead it elsewhere.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ExtractionFixture.h"
#include "support/ProcessScope.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class ExtractionPlace : public ExtractionFixture {};

TEST_F(ExtractionPlace, IsMadeFreeOfAnOlderFile) {
  writeFile(copy, "an older file, longer than the new one");
  ASSERT_EQ(::chmod(copy.c_str(), 0604), 0);
  const ScopedUmask mask(0022);
  embed("new");
  extract();
  EXPECT_EQ(readFile(copy), "new");
  EXPECT_EQ(fs::status(copy).permissions(), fs::perms(0644)) << "it is another file";
}

TEST_F(ExtractionPlace, IsMadeFreeOfAnOlderFileThatMayNotBeWritten) {
  writeFile(copy, "old");
  ASSERT_EQ(::chmod(copy.c_str(), 0400), 0);
  embed("new");
  extract();
  EXPECT_EQ(readFile(copy), "new");
}

TEST_F(ExtractionPlace, IsNotReachedThroughALink) {
  const std::string victim = tree.file("victim", "precious");
  tree.link("target/file", victim);
  embed("new");
  extract();
  EXPECT_EQ(readFile(victim), "precious");
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(copy)));
  EXPECT_EQ(readFile(copy), "new");
}

TEST_F(ExtractionPlace, IsNotReachedThroughALinkToNothing) {
  tree.link("target/file", tree.path("victim"));
  embed("new");
  extract();
  EXPECT_FALSE(fs::exists(tree.path("victim")));
  EXPECT_EQ(readFile(copy), "new");
}

TEST_F(ExtractionPlace, LeavesTheOtherNamesOfAFileAlone) {
  const std::string victim = tree.file("victim", "precious");
  fs::create_hard_link(victim, copy);
  embed("new");
  extract();
  EXPECT_EQ(readFile(victim), "precious");
}

TEST_F(ExtractionPlace, IsNoPipe) {
  ASSERT_EQ(::mkfifo(copy.c_str(), 0600), 0);
  embed("new");
  extract();
  EXPECT_TRUE(fs::is_regular_file(copy));
}

// Like a program that is written to while it runs, which the kernel refuses.
TEST_F(ExtractionPlace, IsNotThatOfTheLauncherFileItself) {
  embed("new");
  entry.fileName = "setup.bin";
  const std::string message = thrownMessage([&] { extractTo(tree.root()); });
  EXPECT_TRUE(message.starts_with("Error writing file = 26 ")) << message;
  EXPECT_EQ(readFile(tree.path("setup.bin")), "STUBnewand more");
}

TEST_F(ExtractionPlace, MayBeADirectoryThatCanOnlyBeWritten) {
  embed("new");
  ASSERT_EQ(::chmod(target.c_str(), 0300), 0);
  extract();
  ASSERT_EQ(::chmod(target.c_str(), 0700), 0);
  EXPECT_EQ(readFile(copy), "new");
}

class HostileNames : public ExtractionFixture,
                     public ::testing::WithParamInterface<std::string_view> {};

TEST_P(HostileNames, AreRefusedAndLogged) {
  tree.dir("target/sub");
  embed("new");
  entry.fileName = GetParam();
  const Names before = tree.list();
  const std::string message = thrownMessage([&] { extract(); });
  EXPECT_TRUE(message.starts_with("Error writing file = 2 ")) << message;
  EXPECT_EQ(tree.list(), before);
  EXPECT_TRUE(run.log.contains(
      "Could not write \"" + std::string(GetParam()) + "\" :  not the name of a file",
      LogLevel::Error));
  EXPECT_TRUE(run.platform.spaceQuestions.empty());
}

INSTANTIATE_TEST_SUITE_P(All, HostileNames,
                         ::testing::Values("", ".", "..", "/", "../evil", "/etc/evil", "sub/file",
                                           "file/", "sub/../../evil", "./file",
                                           std::string_view("..\0", 3),
                                           std::string_view("a\0b", 3)));

TEST_F(ExtractionPlace, MayHaveAnyOtherName) {
  for (const std::string name : {"...", "..a", "a b", "-rf", "\\evil", "a:b", "\xff\xfe", "*"}) {
    embed("new");
    entry.fileName = SString(name);
    extract();
    EXPECT_EQ(readFile(tree.path("target/" + name)), "new") << name;
  }
}

}  // namespace
}  // namespace vessant::test
