// vspack as authors use it: what comes out of an installer, and that nothing bad comes out of a bad
// one.

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include "support/BuildPaths.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kLaunchScript =
    "DESC: Caf\\u00e9 Demo\nDISPLAY_CONSOLE: 1\nCOMMAND: exec '@JVM_HOME@/@JVM_EXE@' Main\n";

class VspackTest : public testing::Test {
 protected:
  VspackTest() { installer().write(tree.path("setup")); }

  static LauncherFileBuilder installer() {
    LauncherFileBuilder builder;
    builder.stub("launcher").modeByte(2);
    builder.add(0, 1, "main.instructions",
                "INSTRUCTIONS:\n  FIND_JVM 1 1\n  LAUNCH \"@S2@\" 1\n/:\n");
    builder.add(2, 2, "demo.launch", kLaunchScript);
    builder.add(1, 17, "java.jvm",
                "DESC: Java 17\nJVM_PROPERTIES:\n  a=1\n  b=2\n/:\nSEARCH_ALL: 1\n");
    builder.add(3, 4, "lib one.jar", std::string("\0\1\2", 3));
    return builder.addExpanding(4, 5, "jre.run", "#!/bin/sh\nexit 0\n", 12, 345);
  }

  ProcessResult vspack(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), kVspack);
    ProcessRequest request{std::move(arguments)};
    request.directory = tree.root();
    request.input = input;
    return runProcess(request);
  }

  /// Runs a shell's line in the tree, with vspack as $1.
  ProcessResult shell(const std::string& line) {
    ProcessRequest request{{"/bin/sh", "-c", line, "sh", kVspack}};
    request.directory = tree.root();
    return runProcess(request);
  }

  TempTree tree;
  std::string input;
};

TEST_F(VspackTest, InfoTellsWhatAnInstallerIs) {
  const ProcessResult result = vspack({"info", "setup"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "installer setup\n"
            "title     Caf\xC3\xA9 Demo\n"
            "launcher  version unknown, no ELF program, 8 bytes\n"
            "mode      2 (wizard)\n"
            "size      374 bytes, 5 files\n"
            "Java      Java 17 (java.jvm): a=1, b=2; looked for on the whole disk\n"
            "brings    jre.run\n"
            "command   exec '@JVM_HOME@/@JVM_EXE@' Main\n"
            "script    FIND_JVM 1 1\n"
            "          LAUNCH \"@S2@\" 1\n");
}

TEST_F(VspackTest, InfoTellsItToMachines) {
  EXPECT_EQ(vspack({"info", "--json", "setup"}).out,
            R"({
  "installer": "setup",
  "size": 374,
  "title": "Café Demo",
  "launcher": {
    "version": "",
    "machine": "",
    "size": 8
  },
  "mode": 2,
  "files": [
    "main.instructions",
    "demo.launch",
    "java.jvm",
    "lib one.jar",
    "jre.run"
  ],
  "java": [
    {
      "file": "java.jvm",
      "description": "Java 17",
      "properties": [
        "a=1",
        "b=2"
      ],
      "searchAll": true
    }
  ],
  "bundledRuntimes": [
    "jre.run"
  ],
  "command": "exec '@JVM_HOME@/@JVM_EXE@' Main",
  "script": [
    "FIND_JVM 1 1",
    "LAUNCH \"@S2@\" 1"
  ]
}
)");
}

TEST_F(VspackTest, InfoReadsTheVersionThatTheLauncherPrints) {
  LauncherFileBuilder().launcherStub().add(3, 1, "a", "a").write(tree.path("real"));
  const std::string version = runProcess({{kLauncher, "-vs:version"}}).out;
  EXPECT_THAT(vspack({"info", "real"}).out,
              HasSubstr("launcher  version " + version.substr(0, version.find('\n')) + ", "));
}

TEST_F(VspackTest, ListTellsItToMachines) {
  EXPECT_THAT(vspack({"list", "--json", "setup"}).out,
              AllOf(StartsWith("{\n  \"mode\": 2,\n  \"files\": [\n    {\n      \"kind\": "
                               "\"instructions\",\n      \"id\": 1,\n      \"length\": 50,\n"
                               "      \"offset\": 8,\n      \"name\": \"main.instructions\"\n"),
                    HasSubstr("\"unpacks\": {\n        \"files\": 12,\n        \"bytes\": 345\n")));
}

TEST_F(VspackTest, WhatExtractWritesPacksAgainToTheSameBytes) {
  ASSERT_EQ(vspack({"extract", "setup", "-C", "new/x"}).status, 0);
  EXPECT_THAT(tree.list("new/x"),
              ElementsAre("demo.launch", "java.jvm", "jre.run", "lib one.jar", "main.instructions",
                          "setup.launcher", "setup.manifest"));
  EXPECT_EQ(readFile(tree.path("new/x/demo.launch")), kLaunchScript);
  EXPECT_EQ(::access(tree.path("new/x/jre.run").c_str(), X_OK), 0);
  EXPECT_NE(::access(tree.path("new/x/java.jvm").c_str(), X_OK), 0);
  const std::string line =
      "names=$(\"$1\" check --json new/x | sed -n 's/.*\"name\": \"\\(.*\\)\",/--allow \\1/p'); "
      "\"$1\" pack new/x -o again $names";
  const ProcessResult packed = shell(line);
  EXPECT_EQ(packed.status, 0) << packed.err;
  EXPECT_EQ(readFile(tree.path("again")), readFile(tree.path("setup")));
  EXPECT_EQ(vspack({"diff", "setup", "again"}).status, 0);
}

TEST_F(VspackTest, ExtractsOnlyWhatIsNamed) {
  ASSERT_EQ(vspack({"extract", "setup", "lib one.jar", "17", "-C", "x"}).status, 0);
  EXPECT_THAT(tree.list("x"), ElementsAre("java.jvm", "lib one.jar"));
  const ProcessResult result = vspack({"extract", "setup", "lib on.jar", "-C", "y"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err,
            "vspack: setup: carries no file \"lib on.jar\"; did you mean \"lib one.jar\"?\n");
  EXPECT_FALSE(fs::exists(tree.path("y")));
}

TEST_F(VspackTest, ExtractReplacesNothingUnasked) {
  tree.file("x/demo.launch", "mine");
  const ProcessResult result = vspack({"extract", "setup", "-C", "x"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: x/demo.launch: is there already; --force replaces it\n");
  EXPECT_THAT(tree.list("x"), ElementsAre("demo.launch"));
  EXPECT_EQ(readFile(tree.path("x/demo.launch")), "mine");
  EXPECT_EQ(vspack({"extract", "setup", "-C", "x", "--force"}).status, 0);
  EXPECT_EQ(readFile(tree.path("x/demo.launch")), kLaunchScript);
}

TEST_F(VspackTest, ExtractDoesNotFollowLinksOutOfItsDirectory) {
  tree.file("victim", "mine");
  tree.link("x/demo.launch", tree.path("victim"));
  tree.link("x/java.jvm", tree.path("nowhere"));
  EXPECT_EQ(vspack({"extract", "setup", "-C", "x"}).status, 2);
  EXPECT_EQ(vspack({"extract", "setup", "-C", "x", "--force"}).status, 0);
  EXPECT_EQ(readFile(tree.path("victim")), "mine");
  EXPECT_FALSE(fs::exists(tree.path("nowhere")));
  EXPECT_EQ(readFile(tree.path("x/demo.launch")), kLaunchScript);
}

TEST_F(VspackTest, HostileNamesAreNotExtracted) {
  for (const char* name : {"../evil", "/tmp/evil", "..", "a/b"}) {
    LauncherFileBuilder().stub("l").add(3, 7, name, "evil").write(tree.path("bad"));
    const ProcessResult all = vspack({"extract", "bad", "-C", "x"});
    EXPECT_EQ(all.status, 2) << name;
    EXPECT_THAT(all.err, HasSubstr("[hostile-name]"));
    const ProcessResult one = vspack({"extract", "bad", "7", "-C", "x"});
    EXPECT_EQ(one.status, 2) << name;
    EXPECT_THAT(one.err, HasSubstr("is not extracted: the name "));
    EXPECT_FALSE(fs::exists(tree.path("x")));
    EXPECT_EQ(vspack({"cat", "bad", "7"}).out, "evil");
  }
  EXPECT_THAT(tree.list(), ElementsAre("bad", "setup"));
}

TEST_F(VspackTest, CatWritesTheBytes) {
  EXPECT_EQ(vspack({"cat", "setup", "lib one.jar"}).out, std::string("\0\1\2", 3));
  EXPECT_EQ(vspack({"cat", "setup", "4"}).out, std::string("\0\1\2", 3));
  const ProcessResult full = shell("\"$1\" cat setup 2 >/dev/full");
  EXPECT_EQ(full.status, 2);
  EXPECT_EQ(full.err, "vspack: standard output: No space left on device\n");
}

TEST_F(VspackTest, SumsAreThoseOfSha256sum) {
  const ProcessResult sums = vspack({"sums", "setup"});
  EXPECT_EQ(sums.status, 0);
  writeFile(tree.path("setup.sums"), sums.out);
  EXPECT_THAT(shell("sha256sum -c --ignore-missing setup.sums").out, "setup: OK\n");
  ASSERT_EQ(vspack({"extract", "setup", "-C", "x"}).status, 0);
  EXPECT_EQ(shell("cd x && tail -n +2 ../setup.sums | sha256sum -c --status").status, 0);
  fs::create_directory(tree.path("moved"));
  fs::rename(tree.path("setup"), tree.path("moved/other"));
  EXPECT_EQ(
      vspack({"verify", "--sums", "setup.sums", "moved/other", "--allow", "bad-archive"}).status,
      0);
  input = sums.out;
  EXPECT_EQ(vspack({"verify", "--sums", "-", "moved/other", "--allow", "bad-archive"}).status, 0);
}

TEST_F(VspackTest, VerifyTellsEveryChangedFile) {
  writeFile(tree.path("sums"), vspack({"sums", "setup"}).out);
  std::string bytes = readFile(tree.path("setup"));
  bytes[bytes.find("Java 17")] = 'L';
  writeFile(tree.path("setup"), bytes);
  const ProcessResult result =
      vspack({"verify", "--sums", "sums", "setup", "--allow", "bad-archive"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "sums:1: error: setup as a whole has another sum [wrong-sum]\n"
            "sums:4: error: \"java.jvm\" has another sum [wrong-sum]\n");
}

TEST_F(VspackTest, VerifyReadsTextsAndArchives) {
  const ProcessResult result = vspack({"verify", "setup"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "lib one.jar: error: is no zip file, or is not whole [bad-archive]\n");
  LauncherFileBuilder builder;
  builder.stub("l").add(0, 1, "script", "INSTRUCTIONS:\n  X\n").add(2, 2, "end", "DESC: x");
  builder.write(tree.path("bad"));
  const ProcessResult texts = vspack({"verify", "bad"});
  EXPECT_EQ(texts.status, 1);
  EXPECT_THAT(texts.err, AllOf(HasSubstr("script:"), HasSubstr("Missing /: tag completer."),
                               HasSubstr("[syntax-error]"),
                               HasSubstr("end:1: error: the last line has no line break")));
  EXPECT_EQ(vspack({"verify", "/bin/sh"}).err,
            "/bin/sh: error: this is no installer: it carries no files [no-installer]\n");
}

TEST_F(VspackTest, EveryCommandTellsAFileThatIsNone) {
  tree.file("text", "no installer at all");
  for (const char* command : {"list", "info", "extract", "sums", "verify"}) {
    EXPECT_EQ(vspack({command, "none"}).status, 2) << command;
    EXPECT_THAT(vspack({command, "none"}).err, "vspack: none: No such file or directory\n");
    EXPECT_THAT(vspack({command, "."}).err, "vspack: .: Is a directory\n");
    EXPECT_THAT(vspack({command, "/dev/zero"}).err, "vspack: /dev/zero: is no regular file\n");
    EXPECT_NE(vspack({command, "text"}).status, 0) << command;
  }
  EXPECT_EQ(vspack({"diff", "setup", "text"}).status, 2);
  EXPECT_EQ(vspack({"cat", "text", "x"}).status, 2);
}

TEST_F(VspackTest, AnInstallerCutAnywhereIsToldAndHarmsNobody) {
  const std::string whole = readFile(tree.path("setup"));
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    writeFile(tree.path("cut"), whole.substr(0, length));
    EXPECT_EQ(vspack({"verify", "cut"}).status, 1) << length;
    EXPECT_EQ(vspack({"list", "cut"}).status, 2) << length;
  }
}

TEST_F(VspackTest, DiffTellsWhatChanged) {
  LauncherFileBuilder builder;
  builder.stub("launcher!").modeByte(3);
  builder.add(0, 1, "main.instructions",
              "INSTRUCTIONS:\n  FIND_JVM 1 0\n  LAUNCH \"@S2@\" 1\n/:\n");
  builder.add(2, 3, "demo.launch", kLaunchScript)
      .add(6, 4, "lib one.jar", std::string("\0\1\3", 3));
  builder.add(4, 5, "jre.run", "#!/bin/sh\nexit 0\n").add(3, 6, "new.jar", "new");
  builder.write(tree.path("later"));
  const ProcessResult result = vspack({"diff", "setup", "later"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            "mode byte: 2 -> 3\n"
            "launcher: 8 bytes -> 9 bytes\n"
            "only in setup: java.jvm, jvm 17, 59 bytes\n"
            "only in later: new.jar, archive 6, 3 bytes\n"
            "--- setup/main.instructions\n"
            "+++ later/main.instructions\n"
            "@@ -1,4 +1,4 @@\n"
            " INSTRUCTIONS:\n"
            "-  FIND_JVM 1 1\n"
            "+  FIND_JVM 1 0\n"
            "   LAUNCH \"@S2@\" 1\n"
            " /:\n"
            "demo.launch: id: 2 -> 3\n"
            "lib one.jar: kind: archive -> application\n"
            "lib one.jar: 3 bytes, differ from byte 2 on\n"
            "jre.run: unpacks to: 12 files, 345 bytes -> nothing\n");
  EXPECT_EQ(vspack({"diff", "setup", "setup"}).out, "");
}

TEST_F(VspackTest, AFullDiskLeavesNothingBehind) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root, to mount a small disk";
  tree.dir("small");
  if (::mount("none", tree.path("small").c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "cannot mount here";
  }
  LauncherFileBuilder()
      .stub("l")
      .add(3, 1, "big", std::string(200000, 'x'))
      .write(tree.path("big"));
  const ProcessResult result = vspack({"extract", "big", "-C", "small"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: small/big: No space left on device\n");
  EXPECT_THAT(tree.list("small"), IsEmpty());
  ::umount(tree.path("small").c_str());
}

TEST_F(VspackTest, AFileBeyondTheSizeLimitLeavesNothingBehind) {
  LauncherFileBuilder()
      .stub("l")
      .add(3, 1, "big", std::string(200000, 'x'))
      .write(tree.path("big"));
  const ProcessResult result = shell("ulimit -f 8; \"$1\" extract big -C x");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: x/big: File too large\n");
  EXPECT_THAT(tree.list("x"), IsEmpty());
}

TEST_F(VspackTest, UnreadableFilesAreTold) {
  fs::permissions(tree.path("setup"), fs::perms::none);
  if (::access(tree.path("setup").c_str(), R_OK) == 0) GTEST_SKIP() << "root reads everything";
  EXPECT_EQ(vspack({"list", "setup"}).err, "vspack: setup: Permission denied\n");
}

TEST_F(VspackTest, ATellingErrorForAFullStandardOutput) {
  for (const char* command : {"list setup", "info setup", "sums setup", "--help"}) {
    const ProcessResult result = shell(std::string("\"$1\" ") + command + " >/dev/full");
    EXPECT_EQ(result.status, 2) << command;
    EXPECT_EQ(result.err, "vspack: standard output: No space left on device\n") << command;
  }
}

}  // namespace
}  // namespace vessant::test
