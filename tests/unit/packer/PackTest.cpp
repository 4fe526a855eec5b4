// The real vspack: what it writes, byte for byte, what it lists, and that a failure leaves nothing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/BuildPaths.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;

class PackTest : public testing::Test {
 protected:
  PackTest() {
    tree.file("stub", "#!/bin/sh\necho the stub\nexit 0\n");
    tree.file("setup.instructions", "INSTRUCTIONS: INITIALIZE_UI\n");
    tree.file("java.jvm", "DESC: Java\n");
    tree.file("data", std::string("\0\1\2", 3));
    tree.file("setup.manifest",
              "OUTPUT: setup\nLAUNCHER: stub\nMODE: 5\nFILES:\n"
              "  instructions 1 setup.instructions\n"
              "  jvm 70000 java.jvm\n"
              "  application 3 data \"app data\"\n"
              "/:\n");
  }

  /// Packs what no author would: the checks of contents have tests of their own.
  ProcessResult pack(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "pack");
    for (const char* name : {"ends-without-launch", "missing-tag", "no-script", "not-a-launcher",
                             "not-a-zip", "no-launch-script"}) {
      arguments.insert(arguments.end(), {"--allow", name});
    }
    return vspack(arguments);
  }

  ProcessResult vspack(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), kVspack);
    ProcessRequest request{arguments};
    request.directory = tree.root();
    request.input = input;
    return runProcess(request);
  }

  LauncherFileBuilder expected() {
    LauncherFileBuilder builder;
    builder.stub(readFile(tree.path("stub"))).modeByte(5);
    builder.add(kScript, 1, "setup.instructions", readFile(tree.path("setup.instructions")));
    builder.add(kJvmFile, 70000, "java.jvm", readFile(tree.path("java.jvm")));
    return builder.add(kApplicationArchive, 3, "app data", readFile(tree.path("data")));
  }

  TempTree tree;
  std::string input;
};

TEST_F(PackTest, WritesStubFilesIndexModeByteAndTrailer) {
  const ProcessResult result = pack({"setup.manifest"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_EQ(readFile(tree.path("setup")), expected().bytes());
}

TEST_F(PackTest, MakesTheInstallerExecutable) {
  ASSERT_EQ(pack({"setup.manifest"}).status, 0);
  struct stat status = {};
  ASSERT_EQ(::stat(tree.path("setup").c_str(), &status), 0);
  const mode_t mask = ::umask(0);
  ::umask(mask);
  EXPECT_EQ(status.st_mode & 0777U, 0777U & ~mask);
  EXPECT_EQ(runProcess({{tree.path("setup")}}).out, "the stub\n");
}

TEST_F(PackTest, OptionsWinOverTheManifest) {
  tree.file("other", "#!/bin/sh\nexit 0\n");
  ASSERT_EQ(pack({"-o", "out", "setup.manifest", "-l", "other"}).status, 0);
  EXPECT_TRUE(readFile(tree.path("out")).starts_with("#!/bin/sh\nexit 0\n"));
  EXPECT_FALSE(std::filesystem::exists(tree.path("setup")));
}

TEST_F(PackTest, ReplacesAnOlderInstaller) {
  tree.file("setup", std::string(100000, 'x'));
  ASSERT_EQ(pack({"setup.manifest"}).status, 0);
  EXPECT_EQ(readFile(tree.path("setup")), expected().bytes());
}

TEST_F(PackTest, ListsWhatTheInstallerCarries) {
  expected().write(tree.path("setup"));
  const ProcessResult result = vspack({"list", "setup"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out,
            "mode byte 5\n"
            "kind                   id     length     offset  name\n"
            "instructions            1         28         31  setup.instructions\n"
            "jvm                 70000         11         59  java.jvm\n"
            "application             3          3         70  app data\n");
}

TEST_F(PackTest, ListsSizeInformation) {
  LauncherFileBuilder().stub("x").addExpanding(4, 1, "jre", "y", 12, 345).write(tree.path("setup"));
  EXPECT_THAT(vspack({"list", "setup"}).out, HasSubstr("jre  (expands to 12 files, 345 bytes)\n"));
}

TEST_F(PackTest, RefusesWhatIsWrongInTheManifest) {
  tree.file("setup.manifest",
            "OUTPUT: setup\nLAUNCHER: stub\nFILES:\n  jvmm 1 java.jvm\n  jvm 2 none.jvm\n/:\n");
  const std::vector<std::string> before = tree.list();
  const ProcessResult result = pack({"setup.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "setup.manifest:4: error: unknown kind of file \"jvmm\"; did you mean \"jvm\"? "
            "[bad-kind]\n"
            "setup.manifest:5: error: there is no file \"none.jvm\" [missing-file]\n");
  EXPECT_EQ(tree.list(), before);
}

TEST_F(PackTest, RefusesWhatIsWrongInTheFiles) {
  tree.file("java.jvm", "DESC: Java\nno colon\n");
  const std::vector<std::string> before = tree.list();
  const ProcessResult result = pack({"setup.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("java.jvm:2: error: "));
  EXPECT_EQ(tree.list(), before);
}

TEST_F(PackTest, RefusesALauncherThatCarriesFilesAlready) {
  expected().write(tree.path("stub"));
  const ProcessResult result = pack({"setup.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err,
              HasSubstr("stub: error: this launcher carries files already: it is an installer "
                        "[launcher-carries-files]\n"));
}

TEST_F(PackTest, NamesTheFileThatCannotBeWrittenOrListed) {
  const ProcessResult packed = pack({"setup.manifest", "-o", "none/setup"});
  EXPECT_EQ(packed.status, 2);
  EXPECT_EQ(packed.err, "vspack: none/setup: No such file or directory\n");
  EXPECT_EQ(vspack({"list", "none"}).err, "vspack: none: No such file or directory\n");
  EXPECT_EQ(vspack({"list", "stub"}).err, "vspack: stub: is no installer: it carries no files\n");
}

TEST_F(PackTest, AFailureLeavesAnOlderInstallerAlone) {
  tree.file("setup", "old");
  tree.file("setup.manifest", "OUTPUT: setup\nLAUNCHER: stub\nFILES: archive 1 none\n");
  const std::vector<std::string> before = tree.list();
  EXPECT_EQ(pack({"setup.manifest"}).status, 1);
  EXPECT_EQ(readFile(tree.path("setup")), "old");
  EXPECT_EQ(tree.list(), before);
}

TEST_F(PackTest, NeedsAnOutput) {
  tree.file("setup.manifest", "LAUNCHER: stub\nFILES: archive 1 data\n");
  const ProcessResult result = pack({"setup.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "setup.manifest:1: error: there is no OUTPUT tag and no -o option [no-output]\n");
}

TEST_F(PackTest, TakesADirectoryWithOneManifestAndStandardInput) {
  ASSERT_EQ(pack({"."}).status, 0);
  EXPECT_EQ(readFile(tree.path("setup")), expected().bytes());
  input = readFile(tree.path("setup.manifest"));
  const ProcessResult result = pack({"-", "-o", "again"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(readFile(tree.path("again")), expected().bytes());
}

TEST_F(PackTest, WritesToStandardOutput) {
  const ProcessResult result = pack({"setup.manifest", "-o", "-"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, expected().bytes());
}

TEST_F(PackTest, PutsALineBreakBehindATextThatHasNone) {
  tree.file("setup.instructions", "INSTRUCTIONS: INITIALIZE_UI");
  ASSERT_EQ(pack({"setup.manifest"}).status, 0);
  EXPECT_EQ(vspack({"list", "setup"}).out,
            "mode byte 5\n"
            "kind                   id     length     offset  name\n"
            "instructions            1         27         31  setup.instructions\n"
            "jvm                 70000         11         59  java.jvm\n"
            "application             3          3         70  app data\n");
  EXPECT_EQ(readFile(tree.path("setup")).substr(31 + 27, 6), "\nDESC:");
}

TEST_F(PackTest, AlignsLargeFilesBehindZeros) {
  tree.file("data", std::string(65536, 'x'));
  ASSERT_EQ(pack({"setup.manifest"}).status, 0);
  const std::string aligned = readFile(tree.path("setup"));
  EXPECT_EQ(aligned.substr(70, 4096 - 70), std::string(4096 - 70, '\0'));
  EXPECT_EQ(aligned.substr(4096, 65536), std::string(65536, 'x'));
  EXPECT_THAT(vspack({"list", "setup"}).out, HasSubstr("65536       4096  app data"));
  ASSERT_EQ(pack({"--no-align", "setup.manifest"}).status, 0);
  EXPECT_EQ(readFile(tree.path("setup")), expected().bytes());
  tree.file("data", std::string(65535, 'x'));
  ASSERT_EQ(pack({"setup.manifest"}).status, 0);
  EXPECT_EQ(readFile(tree.path("setup")), expected().bytes());
}

TEST_F(PackTest, WritesSizeInformation) {
  tree.file("jre.run", "#!/bin/sh\n# vspack bundle-jvm unpacks=7:890\nexit 0\n");
  tree.file("other.run", "#!/bin/sh\n# bundle-jvm unpacks=7:890\nexit 0\n");
  tree.file("setup.manifest",
            "OUTPUT: setup\nLAUNCHER: stub\nFILES:\n  jvm-installer jre.run\n"
            "  jvm-installer jre.run b unpacks=1:2\n  jvm-installer other.run\n"
            "  archive jre.run c\n/:\n");
  ASSERT_EQ(pack({"setup.manifest"}).status, 0);
  const std::string list = vspack({"list", "setup"}).out;
  EXPECT_THAT(list, HasSubstr("jre.run  (expands to 7 files, 890 bytes)\n"));
  EXPECT_THAT(list, HasSubstr("b  (expands to 1 files, 2 bytes)\n"));
  EXPECT_THAT(list, HasSubstr("other.run\n"));
  EXPECT_THAT(list, HasSubstr("  c\n"));
}

TEST_F(PackTest, SameInputSameBytes) {
  ASSERT_EQ(pack({"setup.manifest", "-o", "one"}).status, 0);
  tree.file("elsewhere/data", readFile(tree.path("data")));
  for (const char* name : {"setup.manifest", "stub", "setup.instructions", "java.jvm"}) {
    tree.file(std::string("elsewhere/") + name, readFile(tree.path(name)));
  }
  ASSERT_EQ(pack({"elsewhere"}).status, 0);
  EXPECT_EQ(readFile(tree.path("elsewhere/setup")), readFile(tree.path("one")));
}

TEST_F(PackTest, RefusesMoreThanFourGibibytesBeforeWriting) {
  std::filesystem::resize_file(tree.path("data"), 0x100000000U);  // takes no space
  const ProcessResult result = pack({"setup.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("[too-large]\n"));
  const ProcessResult allowed = pack({"--allow", "too-large", "setup.manifest"});
  EXPECT_EQ(allowed.status, 2);
  EXPECT_FALSE(std::filesystem::exists(tree.path("setup")));
}

TEST_F(PackTest, AFullDiskLeavesNothing) {
  const std::vector<std::string> before = tree.list();
  const ProcessResult result = pack({"setup.manifest", "-o", "/dev/full"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: /dev/full: No space left on device\n");
  EXPECT_EQ(tree.list(), before);
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(PackTest, FollowsALinkToItsFile) {
  tree.file("real/setup", "old");
  tree.link("setup", "real/setup");
  ASSERT_EQ(pack({"setup.manifest"}).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(tree.path("setup")));
  EXPECT_EQ(readFile(tree.path("real/setup")), expected().bytes());
}

}  // namespace
}  // namespace vessant::test
