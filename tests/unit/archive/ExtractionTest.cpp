// Copying files out of the launcher file.

#include <string>
#include <vector>

#include <sys/stat.h>

#include "ExtractionFixture.h"
#include "support/ProcessScope.h"

namespace vessant::test {
namespace {

class Extraction : public ExtractionFixture {};

TEST_F(Extraction, CopiesTheBytesOfTheEntryAlone) {
  embed("exactly this");
  EXPECT_EQ(extract(), copy);
  EXPECT_EQ(readFile(copy), "exactly this");
}

TEST_F(Extraction, AddsASeparatorOnlyWhereItIsMissing) {
  embed("x");
  EXPECT_EQ(extractTo(target + "/"), copy);
  EXPECT_EQ(extractTo(target), copy);
}

TEST_F(Extraction, WritesIntoTheCurrentDirectoryWithoutADirectory) {
  embed("x");
  const ScopedDirectory inside(target);
  EXPECT_EQ(extractTo(""), "file");
  EXPECT_EQ(readFile(copy), "x");
}

TEST_F(Extraction, MakesAnEmptyFileOfAnEmptyEntry) {
  embed("");
  extract();
  EXPECT_EQ(readFile(copy), "");
  EXPECT_EQ(progress.steps, 0);
}

TEST_F(Extraction, ReplacesAnOlderFile) {
  writeFile(copy, "something longer than that");
  embed("new");
  extract();
  EXPECT_EQ(readFile(copy), "new");
}

TEST_F(Extraction, MovesTheProgressOnOnceForEachChunk) {
  const std::pair<std::size_t, int> lengths[] = {
      {1, 1}, {kChunk - 1, 1}, {kChunk, 1}, {kChunk + 1, 2}, {3 * kChunk, 3}, {1'000'000, 17},
  };
  for (const auto& [length, steps] : lengths) {
    SCOPED_TRACE(length);
    progress.steps = 0;
    embed(pattern(length));
    extract();
    EXPECT_EQ(progress.steps, steps);
    EXPECT_EQ(readFile(copy), pattern(length));
  }
}

TEST_F(Extraction, HasAChunkInTheFileBeforeTheProgressMovesOn) {
  struct Watch : RecordingProgress {
    explicit Watch(std::string path) : file(std::move(path)) {}
    void addProgressDots(std::int32_t) override { sizes.push_back(readFile(file).size()); }
    std::string file;
    std::vector<std::size_t> sizes;
  } watch(copy);
  const RunServices watched{run.log, watch, run.messages, run.cancelFlag, run.platform};
  embed(pattern(2 * kChunk + 10));
  static_cast<void>(
      FileExtractor(launcherFile, index, watched).extractFile(entry, SString(target)));
  ASSERT_EQ(watch.sizes.size(), 3U);
  EXPECT_GE(watch.sizes[0], kChunk);
  EXPECT_GE(watch.sizes[1], 2 * kChunk);
  EXPECT_EQ(watch.sizes[2], 2 * kChunk + 10);
}

TEST_F(Extraction, AsksForTheSpaceOfTheFile) {
  embed("12345");
  extract();
  EXPECT_EQ(run.platform.spaceQuestions,
            (std::vector<FakePlatform::SpaceQuestion>{{target, 5, 1}}));
}

TEST_F(Extraction, AsksForTheSpaceOfWhatTheFileUnpacksToAsWell) {
  embed("12345");
  entry.hasSizeInformation = true;
  entry.expandedSize = 1000;
  entry.expandedFileCount = 20;
  extract();
  EXPECT_EQ(run.platform.spaceQuestions,
            (std::vector<FakePlatform::SpaceQuestion>{{target, 1005, 21}}));
}

TEST_F(Extraction, AsksForNoMoreThanTheFileWithoutSizeInformation) {
  embed("12345");
  entry.expandedSize = 1000;
  entry.expandedFileCount = 20;
  extract();
  EXPECT_EQ(run.platform.spaceQuestions,
            (std::vector<FakePlatform::SpaceQuestion>{{target, 5, 1}}));
}

TEST_F(Extraction, AddsSizesAsNumbersOf32Bits) {
  embed("12345");
  entry.hasSizeInformation = true;
  entry.expandedSize = 0xFFFFFFFF;
  entry.expandedFileCount = 0xFFFFFFFF;
  extract();
  EXPECT_EQ(run.platform.spaceQuestions,
            (std::vector<FakePlatform::SpaceQuestion>{{target, 4, 0}}));
}

TEST_F(Extraction, MakesProgramsExecutableForEverybody) {
  const ScopedUmask mask(0022);
  embed("x");
  for (int type = 0; type <= 7; ++type) {
    entry.type = static_cast<FileType>(type);
    entry.fileName = "file" + std::to_string(type);
    const bool isProgram = type == 4 || type == 7;
    EXPECT_EQ(permissionsOf(extract()), isProgram ? 0755U : 0644U) << type;
  }
}

TEST_F(Extraction, OnlyAddsToThePermissionsWithinTheMask) {
  const ScopedUmask mask(0077);
  embed("x");
  entry.type = FileType::EmbeddedLauncher;
  EXPECT_EQ(permissionsOf(extract()), 0711U);
}

TEST_F(Extraction, LeavesNoDescriptorOpen) {
  embed(pattern(kChunk + 1));
  const std::size_t before = openDescriptors();
  extract();
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(Extraction, LogsNothing) {
  embed("x");
  extract();
  EXPECT_TRUE(run.log.lines().empty());
}

}  // namespace
}  // namespace vessant::test
