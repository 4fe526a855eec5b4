// The manifest: what it says, and that each mistake is told with its place.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "packer/Manifest.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

class ManifestTest : public testing::Test {
 protected:
  ManifestTest() {
    tree.file("app/a.jar", "a");
    tree.file("app/dir/b c.jar", "bc");
    tree.file("lib/verify.jar", "v");
  }

  Manifest read(const std::string& text) {
    const std::string path = tree.file("app/setup.manifest", text);
    const SearchPath searchPath = {SString(std::string_view(tree.path("lib")))};
    return readManifest(SString(std::string_view(path)), searchPath, log);
  }

  /// The message for one line of FILES behind a good one.
  std::string errorOf(const std::string& line) {
    try {
      read("FILES:\n  archive 1 a.jar\n  " + line + "\n/:\n");
    } catch (const LauncherException& error) {
      return str(error.message());
    }
    return "no error";
  }

  std::string place() const { return tree.path("app/setup.manifest") + ": FILES line 2: "; }

  TempTree tree;
  RecordingLog log;
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
  }
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

TEST_F(ManifestTest, DefaultsToModeZeroAndNoNames) {
  const Manifest manifest = read("FILES: archive 1 a.jar\n");
  EXPECT_EQ(manifest.mode, 0);
  EXPECT_TRUE(manifest.output.isEmpty());
  EXPECT_TRUE(manifest.launcher.isEmpty());
}

TEST_F(ManifestTest, TellsEachMistakeWithItsLine) {
  const std::pair<const char*, const char*> mistakes[] = {
      {"archives 2 a.jar", "unknown kind of file \"archives\""},
      {"archive", "the id must be a number from 0 to 2147483647, not \"\""},
      {"archive x a.jar", "the id must be a number from 0 to 2147483647, not \"x\""},
      {"archive -2 a.jar", "the id must be a number from 0 to 2147483647, not \"-2\""},
      {"archive 02 a.jar", "the id must be a number from 0 to 2147483647, not \"02\""},
      {"archive 2147483648 a.jar",
       "the id must be a number from 0 to 2147483647, not \"2147483648\""},
      {"archive 2", "a path must follow the id"},
      {"archive 2 a.jar b c", "there is more than kind, id, path and name"},
      {"archive 2 a.jar .", "\".\" cannot be the name of a packed file"},
      {"archive 2 a.jar ..", "\"..\" cannot be the name of a packed file"},
      {"archive 2 a.jar x/y", "\"x/y\" cannot be the name of a packed file"},
      {"archive 2 a.jar input.tag", "\"input.tag\" cannot be the name of a packed file"},
      {"archive 1 \"dir/b c.jar\"", "id 1 is used twice"},
      {"archive 2 a.jar", "two files are called \"a.jar\"; give one another name"},
  };
  for (const auto& [line, reason] : mistakes) EXPECT_EQ(errorOf(line), place() + reason) << line;
  EXPECT_EQ(errorOf("archive 2 none.jar"),
            place() + "there is no file \"" + tree.path("app/none.jar") + "\"");
  EXPECT_EQ(errorOf("archive 2 dir"), place() + "\"" + tree.path("app/dir") + "\" is a directory");
}

TEST_F(ManifestTest, RefusesABadModeAndAManifestWithoutFiles) {
  const std::string path = tree.path("app/setup.manifest");
  for (const char* mode : {"256", "-1", "x"}) {
    try {
      read(std::string("MODE: ") + mode + "\nFILES: archive 1 a.jar\n");
      FAIL() << mode;
    } catch (const LauncherException& error) {
      EXPECT_EQ(str(error.message()),
                path + ": MODE must be a number from 0 to 255, not \"" + mode + "\"");
    }
  }
  try {
    read("MODE: 1\n");
    FAIL();
  } catch (const LauncherException& error) {
    EXPECT_EQ(str(error.message()), path + ": there is no FILES tag");
  }
}

TEST_F(ManifestTest, PassesTheReadersErrorsOn) {
  EXPECT_THROW(read("no colon\n"), LauncherException);
  EXPECT_TRUE(log.contains("Syntax error in " + tree.path("app/setup.manifest") +
                               " at line 1 ==> Missing colon at the end of the tag name.",
                           LogLevel::Error));
}

}  // namespace
}  // namespace vessant::test
