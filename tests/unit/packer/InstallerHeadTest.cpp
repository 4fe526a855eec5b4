// The script in front of a bundled runtime, run by the shells and tools that Linux systems have.

#include <elf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/bundle/InstallerHead.h"
#include "packer/bundle/TarWriter.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kRuns = "#!/bin/sh\nexit 0\n";

struct Shell {
  const char* name;
  std::vector<std::string> command;
};

const Shell kShells[] = {
    {"sh", {"/bin/sh"}}, {"bash", {"/bin/bash"}}, {"busybox", {"/usr/bin/busybox", "sh"}}};

/// What may be wrong with a runtime.
struct Flaws {
  bool isProgram = true;
  bool isWhole = true;
};

struct InstallerHead : testing::Test {
  /// An installer whose runtime has this Java.
  std::string pack(const std::string& java, RuntimeFacts facts = {}, Flaws flaws = {}) {
    const std::string program = tree.program("source/java", java);
    std::string bytes = installerHead(facts);
    TarWriter tar([&](std::string_view block) { bytes += block; }, facts.isCompressed);
    tar.add({.name = "jre", .kind = RuntimeEntry::Kind::Directory}, "jre");
    tar.add({.name = "bin/java",
             .isExecutable = flaws.isProgram,
             .source = program,
             .size = java.size()},
            "jre/bin/java");
    tar.add({.name = "link", .kind = RuntimeEntry::Kind::Link, .target = "bin/java"}, "jre/link");
    if (flaws.isWhole) tar.addText("jvm.new", "JVM_HOME: jre\n");
    tar.finish();
    tree.dir("there");
    return tree.program("there/install", bytes);
  }
  ProcessResult run(const std::string& installer) { return runIn(kShells[0], installer); }
  ProcessResult runIn(const Shell& shell, const std::string& installer) {
    std::vector<std::string> command = shell.command;
    command.push_back(installer);
    return runProcess(
        {.command = command, .environment = {{"PATH", path}}, .directory = tree.path("there")});
  }
  /// Makes a directory of nothing but busybox's programs the PATH.
  void useBusybox() {
    for (const char* tool : {"tail", "tar", "gzip", "uname", "rm", "mv", "sed"}) {
      tree.link(std::string("tools/") + tool, "/usr/bin/busybox");
    }
    path = tree.path("tools");
  }

  TempTree tree;
  std::string path = "/usr/bin:/bin";
};

TEST_F(InstallerHead, SaysOnItsSecondLineWhatItUnpacks) {
  EXPECT_THAT(installerHead({.files = 12, .bytes = 3456}),
              StartsWith("#!/bin/sh\n# vspack bundle-jvm unpacks=12:3456\n"));
}

TEST_F(InstallerHead, UnpacksAndTellsOfTheRuntime) {
  for (const bool isCompressed : {false, true}) {
    const std::string installer = pack(kRuns, {.isCompressed = isCompressed});
    const ProcessResult result = run(installer);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_THAT(tree.list("there"),
                ElementsAre("install", "jre", "jre/bin", "jre/bin/java", "jre/link", "jvm"));
    EXPECT_EQ(readFile(tree.path("there/jvm")), "JVM_HOME: jre\n");
    std::filesystem::remove_all(tree.path("there"));
  }
}

TEST_F(InstallerHead, WorksWithEveryShellAndWithBusybox) {
  useBusybox();
  for (const Shell& shell : kShells) {
    if (!std::filesystem::exists(shell.command.front())) continue;
    const std::string installer = pack(kRuns, {.isCompressed = true});
    const ProcessResult result = runIn(shell, installer);
    EXPECT_EQ(result.status, 0) << shell.name << result.err;
    EXPECT_THAT(tree.list("there"), Contains("jvm")) << shell.name;
    std::filesystem::remove_all(tree.path("there"));
  }
}

TEST_F(InstallerHead, LeavesNothingOfARuntimeThatDoesNotRun) {
  const ProcessResult result = run(pack("#!/bin/sh\necho 'no libc' >&2\nexit 3\n"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "no libc\nThe bundled Java runtime does not run on this machine (status 3).\n");
  EXPECT_THAT(tree.list("there"), ElementsAre("install"));
}

TEST_F(InstallerHead, TellsOfADirectoryWhereNothingMayRun) {
  // A shell sees no difference between a disk without programs and a file that is none.
  const ProcessResult result = run(pack(kRuns, {}, {.isProgram = false}));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "The bundled Java runtime may not be run in " + tree.path("there") +
                            ": programs are not allowed there (a noexec disk?).\n");
  EXPECT_THAT(tree.list("there"), ElementsAre("install"));
}

TEST_F(InstallerHead, TellsOfADamagedArchive) {
  const std::string installer = pack(kRuns, {.isCompressed = true});
  const std::string whole = readFile(installer);
  writeFile(installer, whole.substr(0, whole.find("\x1F\x8B") + 20));
  const ProcessResult result = run(installer);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("The bundled Java runtime could not be unpacked into " +
                                     tree.path("there") + " (is the disk full?): "));
  EXPECT_THAT(tree.list("there"), ElementsAre("install"));
}

TEST_F(InstallerHead, TellsOfAnArchiveThatEndsTooSoon) {
  const ProcessResult result = run(pack(kRuns, {}, {.isWhole = false}));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "The bundled Java runtime is not complete: the installer is damaged and must be "
            "fetched again.\n");
  EXPECT_THAT(tree.list("there"), ElementsAre("install"));
}

TEST_F(InstallerHead, TouchesNothingThatIsThereAlready) {
  const std::string installer = pack(kRuns);
  tree.file("there/jre/mine");
  const ProcessResult result = run(installer);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("there is a jre or jvm already."));
  EXPECT_THAT(tree.list("there"), ElementsAre("install", "jre", "jre/mine"));
}

TEST_F(InstallerHead, RefusesAnotherMachine) {
  const ProcessResult machine = runProcess({.command = {"/bin/uname", "-m"}});
  const std::uint16_t other = machine.out == "s390x\n" ? EM_AARCH64 : EM_S390;
  const std::string name = other == EM_S390 ? "s390x" : "aarch64";
  const ProcessResult result =
      run(pack(kRuns, {.machine = other, .isBigEndian = other == EM_S390}));
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("The bundled Java runtime is not made for this machine: it "
                                     "needs " +
                                     name + ", and this is "));
  EXPECT_THAT(tree.list("there"), ElementsAre("install"));
}

TEST(UnamePattern, KnowsTheMachinesThatJavaRunsOn) {
  EXPECT_EQ(unamePattern(EM_X86_64, false), "x86_64 | amd64");
  EXPECT_EQ(unamePattern(EM_AARCH64, false), "aarch64 | arm64");
  EXPECT_EQ(unamePattern(EM_PPC64, false), "ppc64le");
  EXPECT_EQ(unamePattern(EM_PPC64, true), "ppc64");
  EXPECT_EQ(unamePattern(EM_NONE, false), "");
}

}  // namespace
}  // namespace vessant::test
