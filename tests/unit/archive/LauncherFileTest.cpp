// The file index of a well-formed launcher file.

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/archive/LauncherFile.h"
#include "support/FakeRun.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessScope.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

class LauncherFileIndex : public ::testing::Test {
 protected:
  void load(const LauncherFileBuilder& builder) { load(builder.bytes()); }
  void load(const std::string& bytes) {
    const SString path(tree.file("setup.bin", bytes));
    launcher.loadFileIndex(path, nullptr, run.log, run.messages);
  }

  TempTree tree;
  FakeRun run;
  LauncherFile launcher;
};

TEST_F(LauncherFileIndex, IsEmptyAndUnloadedAtFirst) {
  EXPECT_FALSE(launcher.isLoaded());
  EXPECT_EQ(launcher.index().count(), 0);
}

TEST_F(LauncherFileIndex, HoldsTheEntriesInOrder) {
  LauncherFileBuilder builder;
  builder.stub("stub").add(6, 20, "a.jar", "AAA").addExpanding(4, 10, "jre", "BB", 300, 70'000);
  load(builder);
  ASSERT_EQ(launcher.index().count(), 2);
  const FileIndexEntry& archive = *launcher.index().get(0);
  EXPECT_EQ(archive.type, FileType::ApplicationArchive);
  EXPECT_EQ(archive.fileId, 20U);
  EXPECT_EQ(archive.offset, 4U);
  EXPECT_EQ(archive.length, 3U);
  EXPECT_EQ(archive.fileName, "a.jar");
  EXPECT_FALSE(archive.hasSizeInformation);
  const FileIndexEntry& installer = *launcher.index().get(1);
  EXPECT_EQ(installer.type, FileType::JvmInstaller);
  EXPECT_EQ(installer.offset, 7U);
  EXPECT_EQ(installer.expandedFileCount, 300U);
  EXPECT_EQ(installer.expandedSize, 70'000U);
  EXPECT_TRUE(launcher.isLoaded());
}

TEST_F(LauncherFileIndex, IsListedInTheLogLineByLine) {
  LauncherFileBuilder builder;
  builder.add(6, 20, "a.jar", "AAA").add(7, 4294967295U, "", "BB");
  load(builder);
  const std::vector<RecordingLog::Line> expected = {
      {"file type: 6\n  file id: 20\n  length: 3\n  offset: 0\n  file name: a.jar",
       LogLevel::Information},
      {"file type: 7\n  file id: 4294967295\n  length: 2\n  offset: 3\n  file name: ",
       LogLevel::Information},
  };
  EXPECT_EQ(run.log.lines(), expected);
}

TEST_F(LauncherFileIndex, FindsTheFirstEntryWithAnId) {
  LauncherFileBuilder builder;
  builder.add(3, 1, "one", "").add(3, 2, "two", "").add(6, 2, "other", "");
  load(builder);
  ASSERT_NE(launcher.findById(2), nullptr);
  EXPECT_EQ(launcher.findById(2)->fileName, "two");
  EXPECT_EQ(launcher.findById(3), nullptr);
}

TEST_F(LauncherFileIndex, FindsTheFirstEntryOfAType) {
  LauncherFileBuilder builder;
  builder.add(3, 1, "one", "").add(5, 2, "verify", "").add(5, 3, "other", "");
  load(builder);
  ASSERT_NE(launcher.findByType(FileType::VerificationClass), nullptr);
  EXPECT_EQ(launcher.findByType(FileType::VerificationClass)->fileName, "verify");
  EXPECT_EQ(launcher.findByType(FileType::JvmInstaller), nullptr);
}

TEST_F(LauncherFileIndex, HoldsNothingWhenThereAreNoFiles) {
  load(LauncherFileBuilder().stub("just a stub"));
  EXPECT_TRUE(launcher.isLoaded());
  EXPECT_EQ(launcher.index().count(), 0);
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(LauncherFileIndex, HoldsNothingWithoutTheIdentification) {
  LauncherFileBuilder builder;
  builder.add(3, 1, "one", "").identification(0xCA82CA83);
  load(builder);
  EXPECT_TRUE(launcher.isLoaded());
  EXPECT_EQ(launcher.index().count(), 0);
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(LauncherFileIndex, HoldsNothingForEightOtherBytes) {
  load("12345678");
  EXPECT_TRUE(launcher.isLoaded());
  EXPECT_EQ(launcher.index().count(), 0);
}

TEST_F(LauncherFileIndex, IsLoadedOnce) {
  load(LauncherFileBuilder().add(3, 1, "one", ""));
  run.log.clear();
  load(LauncherFileBuilder().add(3, 2, "two", "").add(3, 3, "three", ""));
  launcher.loadFileIndex("/no/such/file", nullptr, run.log, run.messages);
  EXPECT_EQ(launcher.index().count(), 1);
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(LauncherFileIndex, IsLoadedOnceWhenItIsEmpty) {
  load("no identification");
  load(LauncherFileBuilder().add(3, 1, "one", ""));
  EXPECT_EQ(launcher.index().count(), 0);
}

TEST_F(LauncherFileIndex, KeepsNothingOfAnIndexThatCouldNotBeRead) {
  const std::string entry =
      '\3' + bigEndian32(1) + bigEndian32(0) + bigEndian32(0) + bigEndian16(1) + "a" + '\0';
  const std::string index = bigEndian32(2) + entry + "\x08more than a bad type";
  const std::string bytes = index + bigEndian32(0) + bigEndian32(0xCA82CA82);
  EXPECT_EQ(thrownMessage([&] { load(bytes); }), "Invalid file type in file index.");
  EXPECT_EQ(launcher.index().count(), 0) << "the entry in front of the bad one";
  EXPECT_TRUE(run.log.lines().empty());
  load(LauncherFileBuilder().add(3, 7, "one", ""));
  ASSERT_EQ(launcher.index().count(), 1);
  EXPECT_EQ(launcher.index().get(0)->fileId, 7U);
}

TEST_F(LauncherFileIndex, ReadsATagFileOnlyForABuilder) {
  load(LauncherFileBuilder().add(0, 1, "script", "no tag file at all"));
  EXPECT_EQ(launcher.index().get(0)->tagFile, nullptr);
}

TEST_F(LauncherFileIndex, TellsAFileThatCannotBeOpened) {
  const SString missing(tree.path("missing"));
  EXPECT_EQ(thrownMessage([&] { launcher.loadFileIndex(missing, nullptr, run.log, run.messages); }),
            "Cannot open launcher file.");
  EXPECT_FALSE(launcher.isLoaded());
}

TEST_F(LauncherFileIndex, ClosesTheFileHoweverItEnds) {
  const std::size_t before = openDescriptors();
  EXPECT_EQ(thrownMessage([&] { load("short"); }), "Invalid launcher format.");
  EXPECT_EQ(openDescriptors(), before);
  load(LauncherFileBuilder().add(3, 1, "one", ""));
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(LauncherFileIndex, HoldsManyEntries) {
  LauncherFileBuilder builder;
  for (std::uint32_t id = 0; id < 5'000; ++id) builder.add(3, id, "f" + std::to_string(id), "x");
  load(builder);
  ASSERT_EQ(launcher.index().count(), 5'000);
  EXPECT_EQ(launcher.index().getLast()->fileName, "f4999");
}

// Offsets beyond 2 GiB are no negative ones. The file is sparse.
TEST_F(LauncherFileIndex, IsFoundBeyondTwoGibibytes) {
  constexpr std::uint32_t kOffset = 0xC0000000U;
  const std::string path = tree.file("big.bin");
  std::error_code error;
  std::filesystem::resize_file(path, kOffset, error);
  if (error) GTEST_SKIP() << "no large files here: " << error.message();
  std::FILE* stream = std::fopen(path.c_str(), "ab");
  const std::string tail = bigEndian32(0) + bigEndian32(kOffset) + bigEndian32(0xCA82CA82);
  EXPECT_EQ(std::fwrite(tail.data(), 1, tail.size(), stream), tail.size());
  std::fclose(stream);
  launcher.loadFileIndex(SString(path), nullptr, run.log, run.messages);
  EXPECT_TRUE(launcher.isLoaded());
}

}  // namespace
}  // namespace vessant::test
