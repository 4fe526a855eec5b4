// Launcher files that are cut, lie about their sizes or point anywhere.

#include <string>

#include <gmock/gmock.h>

#include "launcher/archive/LauncherFile.h"
#include "support/FakeRun.h"
#include "support/LauncherFileBuilder.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

constexpr const char* kTooShort = "Invalid launcher format.";
constexpr const char* kNoCount = "Unable to read the file count.";
constexpr const char* kBadType = "Invalid file type in file index.";

std::string trailer(std::uint32_t indexOffset) {
  return bigEndian32(indexOffset) + bigEndian32(0xCA82CA82);
}

class MalformedIndex : public ::testing::Test {
 protected:
  void load(const std::string& bytes) {
    run.log.clear();
    LauncherFile fresh;
    const SString path(tree.file("setup.bin", bytes));
    try {
      fresh.loadFileIndex(path, nullptr, run.log, run.messages);
    } catch (const LauncherException&) {
      entries = fresh.index().count();
      EXPECT_FALSE(fresh.isLoaded());
      EXPECT_TRUE(run.log.lines().empty()) << "only a whole index is listed";
      throw;
    }
    entries = fresh.index().count();
    EXPECT_TRUE(fresh.isLoaded());
  }
  [[nodiscard]] std::string failure(const std::string& bytes) {
    return thrownMessage([&] { load(bytes); });
  }

  TempTree tree;
  FakeRun run;
  std::int32_t entries = 0;
};

TEST_F(MalformedIndex, NeedsEightBytes) {
  for (std::size_t length = 0; length < 8; ++length) {
    EXPECT_EQ(failure(trailer(0).substr(8 - length)), kTooShort) << length;
  }
}

TEST_F(MalformedIndex, MayNotBeADirectory) {
  LauncherFile launcher;
  const SString directory(tree.dir("directory"));
  EXPECT_THAT(
      thrownMessage([&] { launcher.loadFileIndex(directory, nullptr, run.log, run.messages); }),
      ::testing::AnyOf("Cannot open launcher file.", kTooShort,
                       "Unable to read file index offset."));
}

TEST_F(MalformedIndex, MayNotLieBeyondTheEnd) {
  for (const std::uint32_t offset : {12U, 13U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(failure("stub" + trailer(offset)), kNoCount) << offset;
  }
}

TEST_F(MalformedIndex, NeedsTwoBytesOfItsCountMoreThanTheEndGives) {
  EXPECT_EQ(failure("stub" + trailer(11)), kNoCount);
  EXPECT_EQ(failure("stub" + trailer(10)), kNoCount);
}

// The three last bytes and the end of the file make a negative count.
TEST_F(MalformedIndex, TakesTheEndOfTheFileForTheLastByteOfItsCount) {
  load("stub" + trailer(9));
  EXPECT_EQ(entries, 0);
}

TEST_F(MalformedIndex, HasNoEntriesForANegativeCount) {
  for (const std::uint32_t count : {0xFFFFFFFFU, 0x80000000U}) {
    load(bigEndian32(count) + std::string(40, '\0') + trailer(0));
    EXPECT_EQ(entries, 0) << count;
  }
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(MalformedIndex, FailsAtTheFirstMissingEntryOfAHugeCount) {
  const std::string count = bigEndian32(0x7FFFFFFF);
  EXPECT_EQ(failure(count + std::string(88, '\xFF') + trailer(0)), kBadType);
  EXPECT_EQ(entries, 0);
  // Entries of sixteen bytes: five of zeros, and a sixth that has the trailer in it.
  EXPECT_EQ(failure(count + std::string(88, '\0') + trailer(0)), kBadType);
  EXPECT_EQ(entries, 0);
}

TEST_F(MalformedIndex, KeepsNoneOfTheEntriesInFrontOfABadOne) {
  const std::string entry =
      '\3' + bigEndian32(1) + bigEndian32(0) + bigEndian32(0) + bigEndian16(1) + "a" + '\0';
  EXPECT_EQ(failure(bigEndian32(3) + entry + entry + '\x08' + trailer(0)), kBadType);
  EXPECT_EQ(entries, 0);
}

TEST_F(MalformedIndex, TakesTheByteBehindAnUnknownFlagForTheNextType) {
  const std::string head = '\3' + bigEndian32(1) + bigEndian32(0) + bigEndian32(0) + bigEndian16(0);
  load(bigEndian32(2) + head + '\2' + head + '\0' + trailer(0));
  EXPECT_EQ(entries, 2);
  EXPECT_EQ(failure(bigEndian32(2) + head + '\2' + '\x08' + head + '\0' + trailer(0)), kBadType);
}

TEST_F(MalformedIndex, NeedsNoBytesThatItsEntriesPointTo) {
  const std::string entry = '\3' + bigEndian32(1) + bigEndian32(0xFFFFFFFF) +
                            bigEndian32(0xFFFFFFFF) + bigEndian16(0) + '\0';
  load(bigEndian32(1) + entry + trailer(0));
  EXPECT_EQ(entries, 1);
}

std::string richFile() {
  LauncherFileBuilder builder;
  builder.stub("STUB")
      .add(0, 1, "instructions", "A: 1\n")
      .addExpanding(4, 2, "installer", "bytes", 3, 4)
      .add(6, 3, "archive.jar", "more bytes");
  return builder.bytes();
}

TEST_F(MalformedIndex, IsNoneWhenTheTrailerIsCut) {
  const std::string whole = richFile();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    const std::string cut = whole.substr(0, length);
    if (length < 8) {
      EXPECT_EQ(failure(cut), kTooShort);
    } else {
      load(cut);
      EXPECT_EQ(entries, 0);
    }
  }
}

// Bytes are missing in the middle, so that the trailer is read as a part of the index.
TEST_F(MalformedIndex, EndsWithOneOfItsTextsWhereverItIsCut) {
  const std::string whole = richFile();
  const std::size_t index = whole.find(bigEndian32(3) + std::string(1, '\0'));
  const std::string end = trailer(static_cast<std::uint32_t>(index));
  int failures = 0;
  for (std::size_t length = index; length < whole.size() - 9; ++length) {
    SCOPED_TRACE(length);
    try {
      load(whole.substr(0, length) + end);
    } catch (const LauncherException& error) {
      ++failures;
      EXPECT_THAT(
          str(error.message()),
          ::testing::AnyOf(
              kNoCount, kBadType, "Unable to load file id.", "Unable to load file length.",
              "Unable to load offset to file bytes.", "Unable to load the string value.",
              "Unable to load decompressed file count.", "Unable to load decompressed size."));
    }
    EXPECT_LE(entries, 3);
  }
  EXPECT_GT(failures, 40);
}

// Whatever a byte of the index says, reading it ends and stays within the file.
TEST_F(MalformedIndex, SurvivesEveryByteChanged) {
  const std::string whole = richFile();
  const std::size_t index = whole.find(bigEndian32(3) + std::string(1, '\0'));
  for (std::size_t place = index; place < whole.size(); ++place) {
    for (const char byte : {'\0', '\1', '\x7F', '\x80', '\xFF'}) {
      std::string changed = whole;
      changed[place] = byte;
      try {
        load(changed);
      } catch (const LauncherException& error) {
        EXPECT_FALSE(error.message().isEmpty());
      }
      EXPECT_LT(entries, static_cast<std::int32_t>(whole.size()));
    }
  }
}

}  // namespace
}  // namespace vessant::test
