// The manifest: what it says, and that each mistake is told with its line, all of them at once.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "packer/Manifest.h"
#include "packer/Text.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ManifestTest : public testing::Test {
 protected:
  ManifestTest() {
    tree.file("app/a.jar", "a");
    tree.file("app/dir/b c.jar", "bc");
    tree.file("lib/verify.jar", "v");
  }

  Manifest read(const std::string& text) {
    const std::string path = tree.file("app/setup.manifest", text);
    const SearchPath searchPath = {sstr(tree.path("lib"))};
    found = Findings();
    return readManifest(path, searchPath, found);
  }

  /// All findings for a text, without the path.
  std::vector<std::string> mistakesOf(const std::string& text) {
    read(text);
    std::vector<std::string> lines;
    for (const Finding& finding : found.sorted()) {
      lines.push_back(lineOf(finding).substr(tree.path("app/setup.manifest").size()));
    }
    return lines;
  }

  /// The findings for one line of FILES behind a good one: it is line 3.
  std::string mistakeOf(const std::string& line) {
    const auto lines = mistakesOf("FILES:\n  archive 1 a.jar\n  " + line + "\n/:\n");
    return lines.empty() ? "none" : lines.front();
  }

  std::vector<std::uint32_t> idsOf(const std::string& text) {
    std::vector<std::uint32_t> ids;
    for (const PackedFile& file : read(text).files) ids.push_back(file.id);
    return ids;
  }

  TempTree tree;
  Findings found;
};

TEST_F(ManifestTest, ReadsEveryKind) {
  const Manifest manifest = read(
      "FILES:\n instructions 0 a.jar n0\n jvm 1 a.jar n1\n launch-script 2 a.jar n2\n"
      " archive 3 a.jar n3\n jvm-installer 4 a.jar n4\n verification 5 a.jar n5\n"
      " application 6 a.jar n6\n launcher 7 a.jar n7\n/:\n");
  ASSERT_EQ(manifest.files.size(), 8U);
  for (int i = 0; i < 8; ++i) {
    const PackedFile& file = manifest.files[static_cast<std::size_t>(i)];
    EXPECT_EQ(static_cast<int>(file.type), i);
    EXPECT_EQ(file.id, static_cast<std::uint32_t>(i));
    EXPECT_EQ(str(file.name), "n" + std::to_string(i));
    EXPECT_EQ(file.line, i + 2);
  }
  EXPECT_TRUE(found.isEmpty());
}

TEST_F(ManifestTest, TakesTheFilesOwnNameAndQuotedPaths) {
  const Manifest manifest =
      read("FILES:\n  archive 1 \"dir/b c.jar\"\n  archive 2 a.jar \"other name.jar\"\n/:\n");
  EXPECT_EQ(str(manifest.files.at(0).path), tree.path("app/dir/b c.jar"));
  EXPECT_EQ(str(manifest.files.at(0).name), "b c.jar");
  EXPECT_EQ(str(manifest.files.at(1).name), "other name.jar");
}

TEST_F(ManifestTest, LooksForFilesBesideItselfAndAlongTheSearchPath) {
  const Manifest manifest = read("FILES: verification 3 verify.jar\n");
  EXPECT_EQ(str(manifest.files.at(0).path), tree.path("lib/verify.jar"));
  tree.file("app/verify.jar", "nearer");
  EXPECT_EQ(str(read("FILES: verification 3 verify.jar\n").files.at(0).path),
            tree.path("app/verify.jar"));
}

TEST_F(ManifestTest, OutputAndLauncherCountFromItsDirectory) {
  const Manifest manifest =
      read("OUTPUT: out/setup\nLAUNCHER: a.jar\nMODE: 255\nFILES: archive 1 a.jar\n");
  EXPECT_EQ(str(manifest.output), tree.path("app/out/setup"));
  EXPECT_EQ(str(manifest.launcher), tree.path("app/a.jar"));
  EXPECT_EQ(manifest.mode, 255);
  EXPECT_EQ(str(read("OUTPUT: /abs/setup\nFILES: archive 1 a.jar\n").output), "/abs/setup");
}

TEST_F(ManifestTest, DefaultsToModeZeroAlignmentAndNoNames) {
  const Manifest manifest = read("FILES: archive 1 a.jar\n");
  EXPECT_EQ(manifest.mode, 0);
  EXPECT_TRUE(manifest.align);
  EXPECT_TRUE(manifest.output.isEmpty());
  EXPECT_TRUE(manifest.launcher.isEmpty());
  EXPECT_FALSE(read("ALIGN: 0\nFILES: archive 1 a.jar\n").align);
}

TEST_F(ManifestTest, NumbersLinesWithoutAnId) {
  EXPECT_THAT(idsOf("FILES:\n archive a.jar\n archive a.jar b\n archive a.jar c\n/:\n"),
              ElementsAre(1, 2, 3));
  EXPECT_THAT(idsOf("FILES:\n archive a.jar\n archive 1 a.jar b\n archive a.jar c\n"
                    " archive 3 a.jar d\n archive a.jar e\n/:\n"),
              ElementsAre(2, 1, 4, 3, 5));
  EXPECT_TRUE(found.isEmpty());
}

TEST_F(ManifestTest, TakesAPathOfDigitsOnlyWhereNoIdCanBeMeant) {
  tree.file("app/17", "x");
  EXPECT_EQ(str(read("FILES: archive 1 17\n").files.at(0).path), tree.path("app/17"));
  EXPECT_EQ(str(read("FILES: archive ./17\n").files.at(0).name), "17");
  EXPECT_EQ(str(read("FILES: archive \"17\"\n").files.at(0).name), "17");
  EXPECT_EQ(mistakeOf("archive 17"), ":3: error: a path must follow the id [missing-path]");
}

TEST_F(ManifestTest, ReadsWhatAFileUnpacksTo) {
  const Manifest manifest = read(
      "FILES:\n jvm-installer a.jar unpacks=12:4294967295\n archive 7 a.jar b unpacks=0:0\n"
      " archive 8 a.jar \"unpacks=1:1\"\n/:\n");
  ASSERT_TRUE(manifest.files.at(0).unpacks);
  EXPECT_EQ(manifest.files[0].unpacks->files, 12U);
  EXPECT_EQ(manifest.files[0].unpacks->bytes, 4294967295U);
  EXPECT_TRUE(manifest.files.at(1).unpacks);
  EXPECT_FALSE(manifest.files.at(2).unpacks);
  EXPECT_EQ(str(manifest.files.at(2).name), "unpacks=1:1");
  for (const char* bad : {"12", "a:1", "1:", ":1", "1:4294967296", "-1:1", "1:1x"}) {
    EXPECT_EQ(mistakeOf(std::string("archive 2 a.jar b unpacks=") + bad),
              std::string(":3: error: \"unpacks=") + bad +
                  "\" must be unpacks=FILES:BYTES, both numbers from 0 to 4294967295 "
                  "[bad-unpacks]");
  }
}

TEST_F(ManifestTest, TellsEachMistakeWithItsLine) {
  const std::pair<const char*, const char*> mistakes[] = {
      {"archvie 2 a.jar", "unknown kind of file \"archvie\"; did you mean \"archive\"? [bad-kind]"},
      {"archive", "a path must follow the kind [missing-path]"},
      {"archive -2 a.jar", "the id must be a number from 0 to 2147483647, not \"-2\" [bad-id]"},
      {"archive 02 a.jar", "the id must be a number from 0 to 2147483647, not \"02\" [bad-id]"},
      {"archive 2147483648 a.jar",
       "the id must be a number from 0 to 2147483647, not \"2147483648\" [bad-id]"},
      {"archive 2", "a path must follow the id [missing-path]"},
      {"archive 2 a.jar b c", "there is more than kind, id, path and name: \"c\" [extra-words]"},
      {"archive 2 \"a.jar",
       "a double quote is not closed; a quote inside is written twice: \"\" [unclosed-quote]"},
      {"archive 2 a.jar .",
       "\".\" cannot be the name of a packed file: it means a directory [bad-name]"},
      {"archive 2 a.jar ..",
       "\"..\" cannot be the name of a packed file: it means a directory [bad-name]"},
      {"archive 2 a.jar x/y",
       "\"x/y\" cannot be the name of a packed file: it holds a slash [bad-name]"},
      {"archive 2 a.jar input.tag",
       "\"input.tag\" cannot be the name of a packed file: it is kept for the file that "
       "-vs:extract writes [bad-name]"},
      {"archive 1 \"dir/b c.jar\"", "id 1 is used twice, first in line 2 [repeated-id]"},
      {"archive 2 a.jar",
       "two files are called \"a.jar\", the first in line 2; give one another name "
       "[repeated-name]"},
  };
  for (const auto& [line, reason] : mistakes) {
    EXPECT_EQ(mistakeOf(line), std::string(":3: error: ") + reason) << line;
  }
  EXPECT_EQ(mistakeOf("archive 2 b.jar"), ":3: error: there is no file \"" +
                                              tree.path("app/b.jar") +
                                              "\"; did you mean \"a.jar\"? [missing-file]");
  EXPECT_EQ(mistakeOf("archive 2 dir"),
            ":3: error: " + tree.path("app/dir") + ": Is a directory [unreadable-file]");
}

TEST_F(ManifestTest, GoesOnBehindAMistake) {
  EXPECT_THAT(mistakesOf("MODE: 256\nFILES:\n nothing x\n archive 5 none\n archive 1\n/:\n"),
              ElementsAre(HasSubstr(":1: error: MODE must be a number from 0 to 255, not \"256\""),
                          HasSubstr(":3: error: unknown kind"), HasSubstr(":4: error: there is no"),
                          HasSubstr(":5: error: a path must follow the id")));
}

TEST_F(ManifestTest, RefusesABadModeAndAManifestWithoutFiles) {
  for (const char* mode : {"256", "-1", "x", "1x"}) {
    EXPECT_THAT(mistakesOf(std::string("MODE: ") + mode + "\nFILES: archive 1 a.jar\n"),
                ElementsAre(std::string(":1: error: MODE must be a number from 0 to 255, not \"") +
                            mode + "\" [bad-mode]"));
  }
  EXPECT_THAT(mistakesOf("MODE: 1\n"), ElementsAre(":1: error: there is no FILES tag [no-files]"));
}

TEST_F(ManifestTest, SpecialFilesAreNotReadNorWaitedFor) {
  tree.link("app/zero", "/dev/zero");
  EXPECT_THAT(mistakeOf("archive 2 zero"), HasSubstr("is no regular file [unreadable-file]"));
}

TEST_F(ManifestTest, ADirectoryStandsForItsOnlyManifest) {
  EXPECT_THROW(static_cast<void>(manifestAt(tree.path("app"))), LauncherException);
  const std::string path = tree.file("app/setup.manifest");
  EXPECT_EQ(manifestAt(tree.path("app")), path);
  EXPECT_EQ(manifestAt(path), path);
  EXPECT_EQ(manifestAt("-"), "-");
  tree.file("app/other.manifest");
  try {
    static_cast<void>(manifestAt(tree.path("app")));
    FAIL();
  } catch (const LauncherException& error) {
    EXPECT_EQ(str(error.message()), tree.path("app") + ": name one of the manifests in it, " +
                                        tree.path("app/other.manifest") + " or " + path);
  }
}

TEST_F(ManifestTest, ThrowsWhenItCannotBeRead) {
  EXPECT_THROW(static_cast<void>(readManifest(tree.path("none"), {}, found)), LauncherException);
}

}  // namespace
}  // namespace vessant::test
