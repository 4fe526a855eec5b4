// Foreign installers: whatever their index says, it is held against the file, and nothing is read
// or reserved on its word.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "packer/Installer.h"
#include "packer/InstallerCheck.h"
#include "packer/Text.h"
#include "support/LauncherFileBuilder.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::size_t kTrailer = 9;  // with the mode byte

class InstallerTest : public testing::Test {
 protected:
  static LauncherFileBuilder sound() {
    LauncherFileBuilder builder;
    builder.stub("launcher").modeByte(2);
    builder.add(0, 1, "script", "INSTRUCTIONS: X\n");
    return builder.addExpanding(4, 70000, "jre", "abc", 12, 345);
  }

  Installer open(const std::string& bytes) { return Installer(tree.file("x", bytes)); }

  /// The findings without the path.
  std::vector<std::string> flawsOf(const std::string& bytes) {
    Findings findings;
    checkStructure(open(bytes), findings);
    std::vector<std::string> lines;
    for (const Finding& finding : findings.sorted()) {
      lines.push_back(lineOf(finding).substr(tree.path("x").size() + 2));
    }
    return lines;
  }

  /// An installer whose index is given byte by byte.
  static std::string withIndex(const std::string& index) {
    return "launcher" + index + std::string(1, '\0') + bigEndian32(8) + bigEndian32(0xCA82CA82U);
  }

  static std::string entry(int type, std::uint32_t length, std::uint32_t offset,
                           const std::string& name) {
    return std::string(1, static_cast<char>(type)) + bigEndian32(7) + bigEndian32(length) +
           bigEndian32(offset) + bigEndian16(static_cast<std::uint16_t>(name.size())) + name +
           std::string(1, '\0');
  }

  TempTree tree;
};

TEST_F(InstallerTest, ReadsASoundOne) {
  const Installer installer = open(sound().bytes());
  ASSERT_TRUE(installer.isInstaller());
  EXPECT_FALSE(installer.flaw());
  EXPECT_EQ(installer.modeByte(), 2);
  ASSERT_EQ(installer.entries().size(), 2U);
  EXPECT_EQ(installer.launcher().text(), "launcher");
  EXPECT_EQ(installer.textOf(installer.entries()[0]), "INSTRUCTIONS: X\n");
  EXPECT_EQ(installer.entries()[1].expandedSize, 345U);
  EXPECT_EQ(installer.indexEnd() + kTrailer, installer.size());
  EXPECT_EQ(installer.find("jre"), &installer.entries()[1]);
  EXPECT_EQ(installer.find("70000"), &installer.entries()[1]);
  EXPECT_EQ(installer.find("none"), nullptr);
  EXPECT_THAT(flawsOf(sound().bytes()), IsEmpty());
}

TEST_F(InstallerTest, TellsAFileThatIsNone) {
  for (const std::string bytes : {"", "x", "12345678", "123456789", "some program or other"}) {
    EXPECT_FALSE(open(bytes).isInstaller());
    EXPECT_THAT(flawsOf(bytes),
                ElementsAre("error: this is no installer: it carries no files [no-installer]"));
  }
}

TEST_F(InstallerTest, CutAtEveryByteOfTheIndexItIsTold) {
  const std::string whole = sound().bytes();
  const std::size_t start = whole.size() - kTrailer - 2 * 16 - 17;  // within the index
  const Installer installer = open(whole);
  for (std::size_t end = installer.indexOffset(); end < whole.size() - kTrailer; ++end) {
    const std::string cut = whole.substr(0, end) + whole.substr(whole.size() - kTrailer);
    EXPECT_THAT(flawsOf(cut), testing::Not(IsEmpty())) << end << start;
  }
}

TEST_F(InstallerTest, BelievesNoCount) {
  for (const std::uint32_t count : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU, 100001U, 2U}) {
    const std::string index = bigEndian32(count) + entry(3, 1, 0, "a");
    EXPECT_THAT(flawsOf(withIndex(index)),
                testing::Contains("error: the file index promises " + std::to_string(count) +
                                  " files, for which it has no room [file-count]"));
  }
}

TEST_F(InstallerTest, TellsAnIndexBeyondTheEnd) {
  const std::string trailer =
      std::string(1, '\0') + bigEndian32(0xFFFFFFF0U) + bigEndian32(0xCA82CA82U);
  EXPECT_THAT(flawsOf("launcher" + trailer),
              testing::Contains(HasSubstr("would begin at 4294967280, beyond the end of the file "
                                          "[index-offset]")));
}

TEST_F(InstallerTest, TellsABadType) {
  EXPECT_THAT(flawsOf(withIndex(bigEndian32(1) + entry(8, 1, 0, "a"))),
              testing::Contains(HasSubstr("entry 1 of the file index: Invalid file type in file "
                                          "index. [file-type]")));
}

TEST_F(InstallerTest, TellsFilesBeyondTheEnd) {
  for (const std::uint32_t offset : {40U, 0xFFFFFFFFU}) {
    const std::string bytes = withIndex(bigEndian32(1) + entry(3, 0xFFFFFFFFU, offset, "a"));
    EXPECT_THAT(flawsOf(bytes), testing::Contains(HasSubstr("[file-beyond-end]")));
    const Installer installer = open(bytes);
    EXPECT_FALSE(installer.isWithin(installer.entries().front()));
    EXPECT_THROW(static_cast<void>(installer.bytesOf(installer.entries().front())),
                 LauncherException);
  }
}

TEST_F(InstallerTest, TellsOverlaps) {
  const std::string index =
      bigEndian32(3) + entry(3, 4, 2, "a") + entry(3, 3, 5, "b") + entry(3, 5, 8, "c");
  EXPECT_THAT(flawsOf(withIndex(index)),
              ElementsAre(HasSubstr("\"b\" begins at 5, inside of \"a\" [file-overlap]"),
                          HasSubstr("[file-overlap]"), HasSubstr("two files have the id 7")));
}

TEST_F(InstallerTest, TellsAMissingLauncher) {
  EXPECT_THAT(flawsOf(withIndex(bigEndian32(1) + entry(3, 8, 0, "a"))),
              ElementsAre("error: there is no launcher in front of the files [no-launcher]"));
}

TEST_F(InstallerTest, TellsNamesThatCannotBeExtracted) {
  const std::pair<std::string, const char*> names[] = {
      {"..", "\"..\" cannot be extracted: the name means a directory [hostile-name]"},
      {"../x", "\"../x\" cannot be extracted: the name holds a slash [hostile-name]"},
      {"/etc/x", "\"/etc/x\" cannot be extracted: the name holds a slash [hostile-name]"},
      {"", "\"\" cannot be extracted: the name is empty [hostile-name]"},
      {"a\033[2J",
       "\"a\\x1B[2J\" cannot be extracted: the name holds a control character "
       "[hostile-name]"},
      {std::string("a\0b", 3),
       "\"a\\x00b\" cannot be extracted: the name holds a control character [hostile-name]"},
      {std::string(256, 'n'), "cannot be extracted: the name has more than 255 bytes"},
  };
  for (const auto& [name, text] : names) {
    EXPECT_THAT(flawsOf(withIndex(bigEndian32(1) + entry(3, 1, 7, name))),
                ElementsAre(HasSubstr(text)));
  }
}

TEST_F(InstallerTest, TellsNamesAndIdsThatStandTwice) {
  const std::string index = bigEndian32(2) + entry(3, 1, 6, "a") + entry(3, 1, 7, "a");
  EXPECT_THAT(flawsOf(withIndex(index)),
              ElementsAre("error: two files are called \"a\" [repeated-name]",
                          "error: two files have the id 7 [repeated-id]"));
}

TEST_F(InstallerTest, TellsBytesThatNobodyReads) {
  EXPECT_THAT(flawsOf(withIndex(bigEndian32(1) + entry(3, 1, 7, "a") + "xyz")),
              ElementsAre("warning: 3 bytes behind the file index are read by nobody "
                          "[unread-bytes]"));
}

TEST_F(InstallerTest, AnyChangedByteOfTheIndexIsReadWithoutHarm) {
  const std::string whole = sound().bytes();
  for (std::size_t at = open(whole).indexOffset(); at < whole.size(); ++at) {
    for (const int change : {1, 0x7F, 0x80, 0xFF}) {
      std::string bytes = whole;
      bytes[at] = static_cast<char>(bytes[at] ^ change);
      static_cast<void>(flawsOf(bytes));
    }
  }
}

}  // namespace
}  // namespace vessant::test
