// The log file.

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "launcher/driver/output/Log.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

constexpr const char* kSeparator = "------------------\n";

/// A log that writes to "log.txt" of a tree.
struct LogFixture {
  LogFixture() { log.setLogFileName(SString(path)); }

  [[nodiscard]] std::string text() const { return readFile(path); }

  TempTree tree;
  std::string path = tree.path("log.txt");
  LogState state;
  Log log{state};
};

TEST(Log, PrefixesWarningsAndErrors) {
  LogFixture fixture;
  fixture.log.log("plain", LogLevel::Information);
  fixture.log.log("careful", LogLevel::Warning);
  fixture.log.log("bad", LogLevel::Error);
  EXPECT_EQ(fixture.text(), std::string(kSeparator) + "plain\nWARNING: careful\nERROR: bad\n");
}

TEST(Log, WritesLinesOfOtherLevelsWithoutAPrefix) {
  LogFixture fixture;
  fixture.log.log("three", static_cast<LogLevel>(3));
  fixture.log.log("minus one", static_cast<LogLevel>(-1));
  EXPECT_EQ(fixture.text(), std::string(kSeparator) + "three\nminus one\n");
}

TEST(Log, WritesOneSeparatorAProcess) {
  LogFixture fixture;
  for (int i = 0; i < 5; ++i) fixture.log.log("line", LogLevel::Information);
  EXPECT_EQ(fixture.text(), std::string(kSeparator) + "line\nline\nline\nline\nline\n");
}

TEST(Log, AppendsToWhatARunBeforeWrote) {
  LogFixture fixture;
  fixture.log.log("first run", LogLevel::Information);
  LogState secondState{.fileName = fixture.state.fileName};
  Log(secondState).log("second run", LogLevel::Information);
  EXPECT_EQ(fixture.text(), std::string(kSeparator) + "first run\n" + kSeparator + "second run\n");
}

TEST(Log, WritesTheSeparatorOnceAProcessAndNotOnceAFile) {
  LogFixture fixture;
  fixture.log.log("in the first", LogLevel::Information);
  const std::string other = fixture.tree.path("other.txt");
  fixture.log.setLogFileName(SString(other));
  fixture.log.log("in the second", LogLevel::Information);
  EXPECT_EQ(readFile(other), "in the second\n");
}

TEST(Log, IsOffWithoutAFileName) {
  LogFixture fixture;
  fixture.log.setLogFileName("");
  fixture.log.log("unseen", LogLevel::Error);
  EXPECT_FALSE(fixture.state.separatorWritten);
  EXPECT_TRUE(fixture.tree.list().empty());
}

TEST(Log, PassesOverAFileThatCannotBeOpened) {
  LogFixture fixture;
  fixture.log.setLogFileName(SString(fixture.tree.path("no/such/log.txt")));
  fixture.log.log("lost", LogLevel::Information);
  EXPECT_TRUE(fixture.tree.list().empty());
}

TEST(Log, WritesTheSeparatorWithTheFirstLineThatSucceeds) {
  LogFixture fixture;
  fixture.log.setLogFileName(SString(fixture.tree.path("later/log.txt")));
  fixture.log.log("lost", LogLevel::Information);
  fixture.tree.dir("later");
  fixture.log.log("kept", LogLevel::Information);
  EXPECT_EQ(readFile(fixture.tree.path("later/log.txt")), std::string(kSeparator) + "kept\n");
}

TEST(Log, LetsOthersWriteBetweenTwoLines) {
  LogFixture fixture;
  fixture.log.log("one", LogLevel::Information);
  writeFile(fixture.path, fixture.text() + "from elsewhere\n");
  fixture.log.log("two", LogLevel::Information);
  EXPECT_EQ(fixture.text(), std::string(kSeparator) + "one\nfrom elsewhere\ntwo\n");
}

TEST(Log, MakesTheFileAgainWhenItWasTakenAway) {
  LogFixture fixture;
  fixture.log.log("one", LogLevel::Information);
  std::filesystem::remove(fixture.path);
  fixture.log.log("two", LogLevel::Information);
  EXPECT_EQ(fixture.text(), "two\n");
}

TEST(Log, WritesTextsAsTheyStand) {
  LogFixture fixture;
  fixture.log.log("100% %s\ntwo lines", LogLevel::Warning);
  EXPECT_EQ(fixture.text(), std::string(kSeparator) + "WARNING: 100% %s\ntwo lines\n");
}

}  // namespace
}  // namespace vessant::test
