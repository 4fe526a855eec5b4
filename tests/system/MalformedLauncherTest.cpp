// Launcher files that are damaged: each ends with its own text and status 255, at once, and leaves
// nothing behind.

#include "support/BuildPaths.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr const char* kIdentification = "\xCA\x82\xCA\x82";
const std::string kIndexError = "Unable to load the launcher file index. ";

std::string zeros(std::size_t count) {
  return std::string(count, '\0');
}

/// An index entry without its size-information flag.
std::string entryHead(char type, std::uint32_t length, std::uint32_t offset,
                      std::int16_t nameLength, const std::string& name) {
  return type + bigEndian32(7) + bigEndian32(length) + bigEndian32(offset) +
         bigEndian16(static_cast<std::uint16_t>(nameLength)) + name;
}

struct MalformedLauncher : SystemTest {
  /// Packs the real launcher with this index and a right trailer.
  void packWithIndex(const std::string& index) {
    const std::string stub = readFile(kLauncher);
    packBytes(stub + index + bigEndian32(static_cast<std::uint32_t>(stub.size())) +
              kIdentification);
  }
  void packBytes(const std::string& bytes) {
    writeFile(launcher, bytes);
    std::filesystem::permissions(launcher, std::filesystem::perms(0755));
  }
  /// Runs the launcher with another file as the one to read the index from. A launcher started so
  /// deletes its own file.
  ProcessResult runWithOriginal(const std::string& original) {
    pack();
    return runLogged({"-vs:orig", original});
  }
  void expectIndexError(const ProcessResult& result, const std::string& cause) {
    EXPECT_THAT(result, Ended(255, kIndexError + cause + "\n"));
    EXPECT_THAT(log(), EndsWith("ERROR: " + kIndexError + cause + "\n"));
  }
};

TEST_F(MalformedLauncher, CannotBeOpened) {
  expectIndexError(runWithOriginal(tree.path("missing")), "Cannot open launcher file.");
  EXPECT_FALSE(std::filesystem::exists(launcher)) << "an inner launcher goes away all the same";
}

TEST_F(MalformedLauncher, IsShorterThanItsTrailer) {
  expectIndexError(runWithOriginal(tree.file("short", "1234567")), "Invalid launcher format.");
}

TEST_F(MalformedLauncher, IsEmpty) {
  expectIndexError(runWithOriginal(tree.file("empty")), "Invalid launcher format.");
}

TEST_F(MalformedLauncher, HasNothingToRead) {
  expectIndexError(runWithOriginal("/dev/null"), "Unable to read file index offset.");
}

TEST_F(MalformedLauncher, IsADirectory) {
  const ProcessResult result = runWithOriginal(tree.dir("directory"));
  EXPECT_EQ(result.status, 255);
  // Some file systems do not let a program seek in a directory.
  EXPECT_THAT(result.out, AnyOf(kIndexError + "Unable to read file index offset.\n",
                                kIndexError + "Invalid launcher format.\n"));
}

TEST_F(MalformedLauncher, HasOnlyATrailerThatPointsAtItself) {
  // The offset is taken for the count, so there are 0 entries: no script, but no damage either.
  const std::string trailer = tree.file("trailer", zeros(4) + kIdentification);
  EXPECT_THAT(runWithOriginal(trailer), EndedWithoutInstaller(trailer, "\n"));
}

TEST_F(MalformedLauncher, HasItsIndexBehindItsEnd) {
  packBytes(file.bytes() + bigEndian32(0xFFFFFFFFU) + kIdentification);
  expectIndexError(runLogged(), "Unable to read the file count.");
}

TEST_F(MalformedLauncher, HasItsIndexInItsLastBytes) {
  expectIndexError(runWithOriginal(tree.file("late", bigEndian32(6) + kIdentification)),
                   "Unable to read the file count.");
}

TEST_F(MalformedLauncher, HasANegativeCountOfFiles) {
  packWithIndex(bigEndian32(0x80000000U));
  EXPECT_THAT(runLogged(), EndedWithoutInstaller(launcher, "\n"));
}

TEST_F(MalformedLauncher, HasAFileOfAnUnknownType) {
  packWithIndex(bigEndian32(1) + entryHead(8, 0, 0, 0, "") + '\0');
  expectIndexError(runLogged(), "Invalid file type in file index.");
}

TEST_F(MalformedLauncher, HasATypeWithItsHighestBitSet) {
  packWithIndex(bigEndian32(1) + entryHead('\x80', 0, 0, 0, "") + '\0');
  expectIndexError(runLogged(), "Invalid file type in file index.");
}

TEST_F(MalformedLauncher, AnnouncesMoreFilesThanItHas) {
  packWithIndex(bigEndian32(2) + entryHead(6, 0, 0, 1, "a") + '\0' + '\x09');
  expectIndexError(runLogged(), "Invalid file type in file index.");
}

TEST_F(MalformedLauncher, AnnouncesAnAbsurdNumberOfFilesAndFailsAtOnce) {
  packWithIndex(bigEndian32(0x7FFFFFFFU) + '\x09');
#ifdef __SANITIZE_ADDRESS__
  expectIndexError(runLogged(), "Invalid file type in file index.");
#else
  environment["PATH"] = "/usr/bin:/bin";
  const ProcessResult result = runCommand(
      {"/bin/sh", "-c", "ulimit -v 65536; exec \"$0\" \"$@\"", launcher, "-vs:log", logName()});
  expectIndexError(result, "Invalid file type in file index.");
#endif
}

// In the next ones the last entry runs into the trailer, and the file ends before the entry does.

TEST_F(MalformedLauncher, EndsInTheLengthOfAFile) {
  // At 3 the count, at 7 the type, at 8 the id, at 12 one byte of the length.
  const std::string bytes = zeros(4) + '\x01' + bigEndian32(3) + kIdentification;
  expectIndexError(runWithOriginal(tree.file("cut", bytes)), "Unable to load file length.");
}

TEST_F(MalformedLauncher, EndsInTheOffsetOfAFile) {
  // At 3 the count, at 7 the type, at 8 the id, at 12 the length, at 16 one byte of the offset.
  const std::string bytes = zeros(3) + bigEndian32(1) + zeros(2) + bigEndian32(3) + kIdentification;
  expectIndexError(runWithOriginal(tree.file("cut", bytes)),
                   "Unable to load offset to file bytes.");
}

TEST_F(MalformedLauncher, EndsBeforeTheLengthOfAName) {
  // At 0 the count, at 4 the type, at 5 the id, at 9 the length, at 13 the offset.
  const std::string bytes = bigEndian32(1) + '\x06' + zeros(4) + zeros(4) + kIdentification;
  expectIndexError(runWithOriginal(tree.file("cut", bytes)), "Unable to load the string value.");
}

TEST_F(MalformedLauncher, EndsInItsSizeInformation) {
  // At 1 the count, at 5 the type, at 6 the id, at 10 the length, at 14 the offset, at 18 the
  // name's length, at 20 the flag, which is the last byte of the trailer's offset, then the file
  // count.
  const std::string bytes = zeros(1) + bigEndian32(1) + '\x06' + zeros(4) + zeros(4) + zeros(3) +
                            bigEndian32(1) + kIdentification;
  expectIndexError(runWithOriginal(tree.file("cut", bytes)), "Unable to load decompressed size.");
}

TEST_F(MalformedLauncher, HasANegativeNameLength) {
  packWithIndex(bigEndian32(1) + entryHead(6, 0, 0, -1, "") + '\0');
  EXPECT_THAT(runLogged(), EndedWithoutInstaller(launcher, "\n"));
  EXPECT_THAT(logLines(), Contains("  file name: "));
}

TEST_F(MalformedLauncher, HasANameThatEndsAtALineBreak) {
  // What is left of the name is read on as the flag and the next entry.
  packWithIndex(bigEndian32(2) + entryHead(6, 0, 0, 50, "abc\n") + '\0' +
                entryHead(6, 0, 0, 0, "") + '\2');
  EXPECT_THAT(runLogged(), EndedWithoutInstaller(launcher, "\n"));
  EXPECT_THAT(logLines(), Contains("  file name: abc"));
}

TEST_F(MalformedLauncher, IgnoresASizeFlagThatIsNotOne) {
  packWithIndex(bigEndian32(2) + entryHead(6, 0, 0, 1, "a") + '\2' + entryHead(6, 0, 0, 1, "b") +
                '\xFF');
  EXPECT_THAT(runLogged(), EndedWithoutInstaller(launcher, "\n"));
  EXPECT_THAT(logLines(), Contains("  file name: b"));
}

TEST_F(MalformedLauncher, HasAFileThatLiesBehindItsEnd) {
  packWithIndex(bigEndian32(1) + entryHead(0, 100, 0xFFFFFF00U, 1, "a") + '\0');
  EXPECT_THAT(runLogged(), Ended(0, "\n"));
}

TEST_F(MalformedLauncher, HasAnArchiveThatIsCutShort) {
  const std::string stub = readFile(kLauncher);
  const std::string script = tagBlock("INSTRUCTIONS", {"ILAUNCH 7 0"});
  const std::string launch =
      tag("COMMAND", "wc -c < %APPLICATION_ARCHIVE%()") + "DISPLAY_CONSOLE: 1\n";
  const auto start = static_cast<std::uint32_t>(stub.size());
  const auto scriptSize = static_cast<std::uint32_t>(script.size());
  const auto launchSize = static_cast<std::uint32_t>(launch.size());
  const std::uint32_t indexAt = start + scriptSize + launchSize;
  // The archive begins at the index and is longer than what is left of the file.
  const std::string index = bigEndian32(4) + entryHead(1, 0, 0, 0, "") + '\0' +
                            entryHead(6, 1000000, indexAt, 1, "a") + '\0' +
                            entryHead(0, scriptSize, start, 0, "") + '\0' +
                            entryHead(2, launchSize, start + scriptSize, 0, "") + '\0';
  packBytes(stub + script + launch + index + bigEndian32(indexAt) + kIdentification);
  environment["PATH"] = "/usr/bin:/bin";
  EXPECT_THAT(runLogged(), Ended(255, "\nUnable to extract embedded files from the launcher. \n"));
  EXPECT_THAT(logLines(), ::testing::Contains("ERROR: The launcher file " + launcher +
                                              " has changed: wanted 1000000 bytes of a, found " +
                                              std::to_string(index.size() + 8)));
}

struct MalformedTags {
  const char* text;
  const char* error;
};

void PrintTo(const MalformedTags& tags, std::ostream* out) {
  *out << ::testing::PrintToString(std::string(tags.text));
}

struct MalformedTagFile : SystemTest, ::testing::WithParamInterface<MalformedTags> {};

TEST_P(MalformedTagFile, StopsTheRunWithFileAndLine) {
  addScript({"FIND_JVM 0 1"});
  file.add(kJvmFile, kJvmFileId, "java.jvm", GetParam().text);
  const std::string error = kIndexError + GetParam().error;
  EXPECT_THAT(runLogged(), Ended(255, error + "\n"));
  EXPECT_THAT(log(), EndsWith("ERROR: " + error + "\n"));
}

TEST_P(MalformedTagFile, OfAnyTypeStopsTheRun) {
  file.add(kLaunchScript, kLaunchScriptId, "java.jvm", GetParam().text);
  EXPECT_THAT(run(), Ended(255, kIndexError + GetParam().error + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MalformedTagFile,
    ::testing::Values(
        MalformedTags{"DESC: a\nno tag\n",
                      "Syntax error in java.jvm at line 2 ==> Missing colon at the end of the tag "
                      "name."},
        MalformedTags{"\n\n  no tag",
                      "Syntax error in java.jvm at line 3 ==> Missing colon at the end of the tag "
                      "name."},
        MalformedTags{"A: \"unclosed\n", "Expected double quote to end argument near 4"},
        MalformedTags{"A: \"unclosed\"\"\n", "Expected double quote to end argument near -1"}));

TEST_F(MalformedLauncher, HasABlockThatIsNeverClosed) {
  // The block runs through everything behind it, to the end of the launcher file.
  file.add(kScript, kScriptId, "install.script", "A: b\n\nINSTRUCTIONS:\nSET N1 = 1\n");
  const std::string error =
      "Syntax error in install.script at line 3 ==> Missing /: tag completer.";
  const ProcessResult result = runLogged();
  expectIndexError(result, error);
  EXPECT_THAT(logLines(), Contains("ERROR: " + error));
}

TEST_F(MalformedLauncher, LendsAnUnclosedBlockTheEndOfTheNextOne) {
  file.add(kScript, kScriptId, "install.script", "INSTRUCTIONS:\nSET N1 = 1\n");
  file.add(kApplicationArchive, 9, "archive", "ILAUNCH 99 0\n/:\n");
  EXPECT_THAT(runLogged(), Ended(255, "\n"));
  EXPECT_THAT(log(), HasSubstr("ERROR: Unable to launch the internal launch script"));
}

TEST_F(MalformedLauncher, UsesOnlyTheFirstScriptsOfItsKind) {
  addScript({"ILAUNCH 3 0"});
  addLaunchScript("echo first");
  addJvmFile("17");
  file.add(kScript, 20, "second.script", tagBlock("INSTRUCTIONS", {"NONSENSE"}));
  file.add(kLaunchScript, 21, "second.launch",
           tag("DESC", "Other") + tag("COMMAND", "echo second"));
  EXPECT_THAT(run(), Ended(0, "Demo\nfirst\n"));
}

}  // namespace
}  // namespace vessant::test
