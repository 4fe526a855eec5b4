// Extractions that fail or that the user cancels.

#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include "ExtractionFixture.h"
#include "FullDisk.h"
#include "support/ProcessScope.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

constexpr const char* kWriteError = "Error writing file = ";
constexpr const char* kSpaceHint =
    " There may not be enough temporary disk space. Try using -vs:tempdir to use a temporary "
    "directory on a partition with more disk space.";
constexpr const char* kExtractionError = "Unable to extract embedded files from the launcher. ";
constexpr const char* kCanceled = "Canceled by the user.";

std::string writeError(int number) {
  return kWriteError + std::to_string(number) + kSpaceHint;
}

class ExtractionFailure : public ExtractionFixture {
 protected:
  [[nodiscard]] std::string failure() {
    return thrownMessage([&] { extract(); });
  }
};

TEST_F(ExtractionFailure, TellsADiskThatIsTooSmallBeforeItWrites) {
  run.platform.enoughSpace = false;
  embed("x");
  EXPECT_EQ(failure(), std::string(kWriteError) + kSpaceHint);
  EXPECT_TRUE(tree.list("target").empty());
}

TEST_F(ExtractionFailure, TellsTheNumberWhenTheDirectoryIsMissing) {
  embed("x");
  target = tree.path("missing");
  EXPECT_EQ(failure(), writeError(ENOENT));
  EXPECT_EQ(writeError(ENOENT), "Error writing file = 2" + std::string(kSpaceHint));
  EXPECT_EQ(progress.steps, 0);
}

TEST_F(ExtractionFailure, TellsTheNumberWhenADirectoryIsInTheWay) {
  embed("x");
  tree.dir("target/file");
  EXPECT_EQ(failure(), writeError(EISDIR));
}

TEST_F(ExtractionFailure, TellsTheNumberWhenTheDirectoryIsReadOnly) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  embed("x");
  ASSERT_EQ(::chmod(target.c_str(), 0500), 0);
  EXPECT_EQ(failure(), writeError(EACCES));
}

TEST_F(ExtractionFailure, TellsAFullDisk) {
  embed(pattern(3 * kChunk));
  const FullDisk disk(10);
  EXPECT_EQ(failure(), writeError(ENOSPC));
  EXPECT_EQ(writeError(ENOSPC), "Error writing file = 28" + std::string(kSpaceHint));
  EXPECT_EQ(progress.steps, 1) << "it stops at the first chunk that does not fit";
}

TEST_F(ExtractionFailure, NamesTheFileInTheLog) {
  embed(pattern(10));
  {
    const FullDisk disk(5);
    static_cast<void>(failure());
  }
  run.platform.enoughSpace = false;
  static_cast<void>(failure());
  const std::string line = "Could not write " + copy + " :  No space left on device";
  EXPECT_EQ(run.log.lines(),
            (std::vector<RecordingLog::Line>{{line, LogLevel::Error}, {line, LogLevel::Error}}));
}

TEST_F(ExtractionFailure, LeavesNoPartWhenAskedTo) {
  embed(pattern(3 * kChunk));
  const auto extractWhole = [&] {
    static_cast<void>(extractor.extractFile(entry, SString(target), PartialFile::Removed));
  };
  {
    const FullDisk disk(2 * kChunk);
    EXPECT_EQ(thrownMessage(extractWhole), writeError(ENOSPC));
  }
  EXPECT_TRUE(tree.list("target").empty());
  writeFile(tree.path("setup.bin"), "cut");
  EXPECT_EQ(thrownMessage(extractWhole), kExtractionError);
  EXPECT_TRUE(tree.list("target").empty());
  run.cancelFlag.set();
  EXPECT_EQ(thrownMessage(extractWhole), kCanceled);
  EXPECT_TRUE(tree.list("target").empty());
}

TEST_F(ExtractionFailure, LeavesWhatWasThereWhenNothingCouldBeMade) {
  embed("x");
  tree.file("target/file/kept");
  EXPECT_EQ(
      thrownMessage([&] {
        static_cast<void>(extractor.extractFile(entry, SString(target), PartialFile::Removed));
      }),
      writeError(EISDIR));
  EXPECT_EQ(tree.list("target"), (std::vector<std::string>{"file", "file/kept"}));
}

// A launcher file that is cut, replaced or removed while it runs.

TEST_F(ExtractionFailure, TellsALauncherFileThatWasCut) {
  embed(pattern(kChunk + 100));
  entry.length = 3 * kChunk;
  EXPECT_EQ(failure(), kExtractionError);
  EXPECT_EQ(run.log.lines(), (std::vector<RecordingLog::Line>{
                                 {"The launcher file " + tree.path("setup.bin") +
                                      " has changed: wanted 184317 bytes of file, found 61547",
                                  LogLevel::Error}}));
  EXPECT_EQ(progress.steps, 2);
}

TEST_F(ExtractionFailure, TellsALauncherFileThatEndsAheadOfTheEntry) {
  embed("x");
  for (const std::uint32_t offset : {13U, 14U, 0x80000000U, 0xFFFFFFFFU}) {
    progress.steps = 0;
    entry.offset = offset;
    entry.length = 0xFFFFFFFF;
    EXPECT_EQ(failure(), kExtractionError) << offset;
    EXPECT_EQ(progress.steps, 1) << offset;
  }
  entry.length = 0;
  extract();
}

TEST_F(ExtractionFailure, TellsALauncherFileThatIsGone) {
  entry.length = 100;
  EXPECT_EQ(failure(), kExtractionError);
  EXPECT_TRUE(run.log.contains("The launcher file " + tree.path("setup.bin") +
                               " has changed: wanted 100 bytes of file, found 0"));
  tree.dir("setup.bin");
  EXPECT_EQ(failure(), kExtractionError) << "nothing can be read from a directory";
}

TEST_F(ExtractionFailure, MakesNoProgramOfACutFile) {
  embed("x");
  entry.length = 1000;
  entry.type = FileType::JvmInstaller;
  EXPECT_EQ(failure(), kExtractionError);
  EXPECT_EQ(permissionsOf(copy) & 0111U, 0U);
}

TEST_F(ExtractionFailure, LeavesWhatFittedForTheCleanUp) {
  constexpr std::size_t kLimit = kChunk + 1000;
  embed(pattern(3 * kChunk));
  std::string message;
  {
    const ScopedFileSizeLimit limit(kLimit);
    message = failure();
  }
  EXPECT_EQ(message, writeError(EFBIG));
  EXPECT_EQ(readFile(copy), pattern(kLimit));
  EXPECT_EQ(progress.steps, 2);
}

TEST_F(ExtractionFailure, MakesNoProgramOfAPart) {
  embed(pattern(2 * kChunk));
  entry.type = FileType::JvmInstaller;
  {
    const ScopedFileSizeLimit limit(kChunk);
    static_cast<void>(failure());
  }
  EXPECT_EQ(permissionsOf(copy) & 0111U, 0U);
}

TEST_F(ExtractionFailure, LeavesNoDescriptorOpen) {
  embed("x");
  tree.dir("target/file");
  const std::size_t before = openDescriptors();
  static_cast<void>(failure());
  run.cancelFlag.set();
  entry.fileName = "other";
  static_cast<void>(failure());
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(ExtractionFailure, OnlyMakesTheTargetWhenCancelledBefore) {
  embed(pattern(kChunk));
  run.cancelFlag.set();
  EXPECT_EQ(failure(), kCanceled);
  EXPECT_EQ(readFile(copy), "");
  EXPECT_EQ(progress.steps, 0);
}

TEST_F(ExtractionFailure, StopsBetweenChunksWhenCancelled) {
  embed(pattern(5 * kChunk));
  progress.cancelAt = 2;
  EXPECT_EQ(failure(), kCanceled);
  EXPECT_EQ(readFile(copy), pattern(2 * kChunk));
  EXPECT_EQ(progress.steps, 2);
}

TEST_F(ExtractionFailure, CountsAsCancelledEvenAtTheLastChunk) {
  embed(pattern(kChunk));
  entry.type = FileType::JvmInstaller;
  progress.cancelAt = 1;
  EXPECT_EQ(failure(), kCanceled);
  EXPECT_EQ(readFile(copy), pattern(kChunk));
  EXPECT_EQ(permissionsOf(copy) & 0111U, 0U);
}

TEST_F(ExtractionFailure, CountsAsCancelledWhenTheLauncherFileIsGone) {
  entry.length = 100;
  run.cancelFlag.set();
  EXPECT_EQ(failure(), kCanceled);
  EXPECT_EQ(readFile(copy), "");
}

TEST_F(ExtractionFailure, TellsAnErrorRatherThanACancellation) {
  embed("x");
  tree.dir("target/file");
  run.cancelFlag.set();
  EXPECT_EQ(failure(), writeError(EISDIR));
}

TEST_F(ExtractionFailure, TellsTheLackOfSpaceRatherThanACancellation) {
  embed("x");
  run.platform.enoughSpace = false;
  run.cancelFlag.set();
  EXPECT_EQ(failure(), std::string(kWriteError) + kSpaceHint);
}

}  // namespace
}  // namespace vessant::test
