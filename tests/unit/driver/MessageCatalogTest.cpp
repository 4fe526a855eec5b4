// The catalog that the build made, row by row, against the readable files.

#include <algorithm>
#include <cstdint>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/driver/output/Messages.h"
#include "support/MessageFile.h"

namespace vessant::test {
namespace {

using testing::EndsWith;
using testing::Not;
using testing::StartsWith;

constexpr const char* kEnglish[] = {
    "en",
    "Initializing %s...",
    "Searching %s...",
    "Verifying %s",
    "No Java(tm) Virtual Machine was found.",
    "%s could not be launched.",
    "A compatible JVM can be downloaded from %s",
    "Running %s...",
    "Preparing Java(tm) Virtual Machine...",
    "Searching for Java(tm) Virtual Machine...",
    "Searching for %s",
    "Error creating temporary directory %s",
    "Error creating temporary file %s",
    "LauncherMain",
    "Invalid platform hint: %s",
    "Execution of Child Process Failed",
    "Scanning disk(s) for a Java(tm) Virtual Machine...",
    "Supply the destination directory for the Java Virtual Machine:",
    ".",
    "Could not load the input file.",
    "Error loading instructions file.",
    "Error loading launch script.",
    "Error loading JVM file.",
    "Invalid JVM file id.",
    "Invalid action in input file: ",
    "A log file name must be specified after the -log option on the command line.",
    "Unable to extract embedded files from the launcher. ",
    "Unable to load the launcher file index. ",
    "No JVM installer was included in the launcher.",
    "The JVM is not valid.",
    "An input file name must follow the '-in' command line option.",
    "A suitable JVM could not be found. Please run the program again using the option "
    "-vs:javahome <JAVA HOME DIR>",
    "Unable to search for all JVMs.",
    "Unable to open input file specified on the command line after the -in option.",
    "Choose the JVM Destination Directory",
    "Vessant(R) is preparing the Vessant Wizard, which\\nwill guide you through the rest of the "
    "setup process.\\nPlease wait...",
    "Error writing file = ",
    " There may not be enough temporary disk space. Try using -vs:tempdir to use a temporary "
    "directory on a partition with more disk space.",
    "Canceled by the user.",
    "Cannot use %s as the temp directory because it does not exist. Please run the program again "
    "using the option -vs:tempdir <temp dir> to specify a different directory to use.",
};

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(MessageCatalog, HasTheRowsInTheOrderOfMatching) {
  ASSERT_EQ(catalogRows().size(), static_cast<std::size_t>(kLanguageCount));
  for (int row = 0; row < kLanguageCount; ++row) {
    EXPECT_STREQ(kMessageCatalog[row][0], catalogRows()[static_cast<std::size_t>(row)].language);
  }
}

TEST(MessageCatalog, HoldsTheEnglishTextsToTheByte) {
  static_assert(std::size(kEnglish) == kLastMessage + 1);
  for (int number = 0; number <= kLastMessage; ++number) {
    EXPECT_STREQ(kMessageCatalog[0][number], kEnglish[number]) << number;
  }
}

class MessageRowTest : public testing::TestWithParam<int> {
 protected:
  [[nodiscard]] static const CatalogRow& expected() {
    return catalogRows()[static_cast<std::size_t>(GetParam())];
  }
  [[nodiscard]] static std::string bytes(int number) { return kMessageCatalog[GetParam()][number]; }
  [[nodiscard]] static std::string text(int number) {
    return convert(bytes(number), expected().charset, "UTF-8");
  }
};

TEST_P(MessageRowTest, DecodesToTheSourceTexts) {
  const MessageFile source = readMessageFile(expected().language);
  EXPECT_EQ(source.language, expected().language);
  EXPECT_EQ(source.charset, expected().charset);
  ASSERT_EQ(source.texts.size(), static_cast<std::size_t>(kLastMessage));
  for (int number = 1; number <= kLastMessage; ++number) {
    EXPECT_EQ(text(number), source.texts.at(number)) << number;
  }
}

TEST_P(MessageRowTest, HasNoEmptyCellAndANullAtItsEnd) {
  for (int number = 0; number <= kLastMessage; ++number) {
    ASSERT_NE(kMessageCatalog[GetParam()][number], nullptr) << number;
    EXPECT_NE(bytes(number), "") << number;
  }
  EXPECT_EQ(kMessageCatalog[GetParam()][kLastMessage + 1], nullptr);
}

TEST_P(MessageRowTest, HasThePlaceholdersOfTheEnglishTexts) {
  for (int number = 1; number <= kLastMessage; ++number) {
    EXPECT_EQ(countOf(text(number), "%s"), countOf(kEnglish[number], "%s")) << number;
    EXPECT_EQ(countOf(bytes(number), "%"), countOf(kEnglish[number], "%")) << number;
  }
}

TEST_P(MessageRowTest, HasTheUntranslatedTexts) {
  EXPECT_EQ(bytes(13), "LauncherMain");
  EXPECT_EQ(bytes(18), ".");
}

TEST_P(MessageRowTest, KeepsTheBlanksThatFurtherTextIsJoinedTo) {
  for (const int number : {24, 26, 27, 36}) {
    EXPECT_THAT(bytes(number), EndsWith(" ")) << number;
    EXPECT_THAT(bytes(number), Not(EndsWith("  "))) << number;
  }
  EXPECT_THAT(bytes(37), StartsWith(" "));
  EXPECT_THAT(bytes(37), Not(StartsWith("  ")));
  EXPECT_THAT(bytes(36), EndsWith("= "));
}

TEST_P(MessageRowTest, StoresLineBreaksAsTwoCharacters) {
  EXPECT_EQ(countOf(text(35), "\\n"), 2U);
  for (int number = 1; number <= kLastMessage; ++number) {
    const std::string stored = bytes(number);
    EXPECT_TRUE(std::none_of(stored.begin(), stored.end(), [](char c) {
      return static_cast<unsigned char>(c) < ' ';
    })) << number;
  }
}

/// Product words, options and marks that programs and users look for.
TEST_P(MessageRowTest, LeavesNamesAndOptionsUntouched) {
  const struct {
    int number;
    const char* word;
  } kWords[] = {{4, "Java(tm)"},      {8, "Java(tm)"},    {9, "Java(tm)"},     {16, "Java(tm)"},
                {22, "JVM"},          {25, "-log"},       {30, "-in"},         {33, "-in"},
                {31, "-vs:javahome"}, {35, "Vessant(R)"}, {37, "-vs:tempdir"}, {39, "-vs:tempdir"}};
  for (const auto& [number, word] : kWords) {
    EXPECT_THAT(text(number), testing::HasSubstr(word)) << number;
  }
}

TEST_P(MessageRowTest, EndsItsProgressLinesInThreeDots) {
  for (const int number : {1, 2, 7, 8, 9, 16, 35}) {
    EXPECT_THAT(bytes(number), EndsWith("...")) << number;
  }
}

INSTANTIATE_TEST_SUITE_P(EveryLanguage, MessageRowTest, testing::Range(0, kLanguageCount),
                         [](const testing::TestParamInfo<int>& row) {
                           return std::string(kMessageCatalog[row.param][0]);
                         });

}  // namespace
}  // namespace vessant::test
