// One entry of a file index, byte by byte.

#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/Handles.h"
#include "support/LauncherFileBuilder.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

constexpr const char* kBadType = "Invalid file type in file index.";
constexpr const char* kNoId = "Unable to load file id.";
constexpr const char* kNoLength = "Unable to load file length.";
constexpr const char* kNoOffset = "Unable to load offset to file bytes.";
constexpr const char* kNoName = "Unable to load the string value.";
constexpr const char* kNoExpandedCount = "Unable to load decompressed file count.";
constexpr const char* kNoExpandedSize = "Unable to load decompressed size.";

class FileIndexEntryReading : public ::testing::Test {
 protected:
  /// Reads `entry` from `bytes`; `rest` becomes what follows the entry.
  void read(std::string_view bytes) {
    const StdFile stream = openFile(SString(tree.file("entry", bytes)), OpenMode::Read);
    ASSERT_NE(stream, nullptr);
    readFileIndexEntry(entry, stream.get());
    int byte = 0;
    while ((byte = std::getc(stream.get())) != EOF) rest += static_cast<char>(byte);
  }

  static std::string head(int type, std::uint16_t nameLength) {
    return static_cast<char>(type) + bigEndian32(0x01020304) + bigEndian32(0xFFFFFFFE) +
           bigEndian32(0x80000001) + bigEndian16(nameLength);
  }

  TempTree tree;
  FileIndexEntry entry;
  std::string rest;
};

TEST_F(FileIndexEntryReading, ReadsEveryField) {
  read(head(4, 7) + "jre.bin" + '\1' + bigEndian32(0xFFFFFFFF) + bigEndian32(0x89ABCDEF) + "next");
  EXPECT_EQ(entry.type, FileType::JvmInstaller);
  EXPECT_EQ(entry.fileId, 0x01020304U);
  EXPECT_EQ(entry.length, 0xFFFFFFFEU);
  EXPECT_EQ(entry.offset, 0x80000001U);
  EXPECT_EQ(entry.fileName, "jre.bin");
  EXPECT_TRUE(entry.hasSizeInformation);
  EXPECT_EQ(entry.expandedFileCount, 0xFFFFFFFFU);
  EXPECT_EQ(entry.expandedSize, 0x89ABCDEFU);
  EXPECT_EQ(entry.tagFile, nullptr);
  EXPECT_EQ(rest, "next");
}

TEST_F(FileIndexEntryReading, HasNoSizesWithoutTheFlag) {
  read(head(3, 1) + "a" + '\0' + "next");
  EXPECT_FALSE(entry.hasSizeInformation);
  EXPECT_EQ(entry.expandedFileCount, 0U);
  EXPECT_EQ(entry.expandedSize, 0U);
  EXPECT_EQ(rest, "next");
}

TEST_F(FileIndexEntryReading, KeepsNothingOfAnEarlierReading) {
  read(head(4, 7) + "jre.bin" + '\1' + bigEndian32(300) + bigEndian32(70'000));
  entry.tagFile = std::make_unique<TagFile>();
  read(head(3, 1) + "a" + '\0');
  EXPECT_EQ(entry.expandedFileCount, 0U);
  EXPECT_EQ(entry.expandedSize, 0U);
  EXPECT_EQ(entry.tagFile, nullptr);
}

TEST_F(FileIndexEntryReading, TakesEveryFlagButOneForNo) {
  for (const char flag : {'\2', '\x7F', '\xFF', '1'}) {
    rest.clear();
    read(head(3, 1) + "a" + flag + "next");
    EXPECT_FALSE(entry.hasSizeInformation);
    EXPECT_EQ(rest, "next");
  }
}

TEST_F(FileIndexEntryReading, AcceptsTheTypesZeroToSeven) {
  for (int type = 0; type <= 7; ++type) {
    read(head(type, 0) + '\0');
    EXPECT_EQ(static_cast<int>(entry.type), type);
  }
}

TEST_F(FileIndexEntryReading, RefusesEveryOtherType) {
  for (const int type : {8, 9, 0x7F, 0x80, 0xFF}) {
    EXPECT_EQ(thrownMessage([&] { read(head(type, 0) + '\0'); }), kBadType) << type;
  }
}

TEST_F(FileIndexEntryReading, TakesTheFlagBehindAnEmptyName) {
  read(head(3, 0) + '\1' + bigEndian32(5) + bigEndian32(6));
  EXPECT_EQ(entry.fileName, "");
  EXPECT_TRUE(entry.hasSizeInformation);
  EXPECT_EQ(entry.expandedFileCount, 5U);
}

TEST_F(FileIndexEntryReading, TakesANegativeNameLengthForAnEmptyName) {
  for (const int length : {0xFFFF, 0x8000}) {
    rest.clear();
    read(head(3, static_cast<std::uint16_t>(length)) + '\0' + "next");
    EXPECT_EQ(entry.fileName, "");
    EXPECT_EQ(rest, "next");
  }
}

TEST_F(FileIndexEntryReading, ReadsTheLongestName) {
  const std::string name(0x7FFF, 'n');
  read(head(3, 0x7FFF) + name + '\0' + "next");
  EXPECT_EQ(entry.fileName, name.c_str());
  EXPECT_EQ(rest, "next");
}

TEST_F(FileIndexEntryReading, EndsANameAtANewline) {
  read(head(3, 9) + "ab\n" + '\0' + "next");
  EXPECT_EQ(entry.fileName, "ab");
  EXPECT_EQ(rest, "next");
}

TEST_F(FileIndexEntryReading, KeepsOtherBytesOfAName) {
  read(head(3, 7) + " \ta\r\xE4\xFF " + '\0');
  EXPECT_EQ(entry.fileName, " \ta\r\xE4\xFF ");
}

TEST_F(FileIndexEntryReading, RefusesANameLengthCutInTwo) {
  EXPECT_EQ(thrownMessage([&] { read(head(3, 0).substr(0, 13)); }), kNoName);
}

/// An entry of 26 bytes whose first `length` bytes are there.
struct CutEntry {
  std::size_t length;
  const char* message;  // null when the entry is accepted
};

// The end of the file counts as one more byte, 255: a field is missed only when two of its bytes
// are, and the next field then finds nothing at all.
const CutEntry kCutEntries[] = {
    {0, kBadType},
    {1, kNoId},
    {2, kNoId},
    {3, kNoId},
    {4, kNoLength},
    {5, kNoLength},
    {6, kNoLength},
    {7, kNoLength},
    {8, kNoOffset},
    {9, kNoOffset},
    {10, kNoOffset},
    {11, kNoOffset},
    {12, kNoName},
    {13, kNoName},
    {14, nullptr},
    {15, nullptr},
    {16, nullptr},
    {17, nullptr},
    {18, kNoExpandedCount},
    {19, kNoExpandedCount},
    {20, kNoExpandedCount},
    {21, kNoExpandedSize},
    {22, kNoExpandedSize},
    {23, kNoExpandedSize},
    {24, kNoExpandedSize},
    {25, nullptr},
    {26, nullptr},
};

TEST_F(FileIndexEntryReading, NamesTheFirstFieldThatIsCutOff) {
  const std::string whole =
      head(4, 2) + "ab" + '\1' + bigEndian32(0x11121314) + bigEndian32(0x21222324);
  ASSERT_EQ(whole.size(), std::size(kCutEntries) - 1);
  for (const CutEntry& cut : kCutEntries) {
    SCOPED_TRACE(cut.length);
    const std::string bytes = whole.substr(0, cut.length);
    if (cut.message == nullptr) {
      EXPECT_NO_THROW(read(bytes));
    } else {
      EXPECT_EQ(thrownMessage([&] { read(bytes); }), cut.message);
    }
  }
}

TEST_F(FileIndexEntryReading, FillsANumberCutByOneByteWithTheEndOfTheFile) {
  read(head(4, 0) + '\1' + bigEndian32(1) + "\x01\x02\x03");
  EXPECT_EQ(entry.expandedSize, 0x010203FFU);
}

TEST_F(FileIndexEntryReading, KeepsANameThatTheEndOfTheFileCuts) {
  read(head(3, 5) + "abc");
  EXPECT_EQ(entry.fileName, "abc");
  EXPECT_FALSE(entry.hasSizeInformation);
}

TEST(FileIndexEntryTypes, AreTagFilesUpToTheLaunchScript) {
  FileIndexEntry entry;
  for (int type = 0; type <= 7; ++type) {
    entry.type = static_cast<FileType>(type);
    EXPECT_EQ(isTagFileType(entry), type <= 2) << type;
  }
}

}  // namespace
}  // namespace vessant::test
