// vspack where authors do not mean it to be: damaged and odd installers, full disks, special files,
// outputs that are inputs.

#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "support/BuildPaths.h"
#include "support/FakeJavaHome.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A disk that is full at once, in a directory of the tree.
class SmallDisk {
 public:
  explicit SmallDisk(std::string directory) : directory_(std::move(directory)) {
    isThere_ = ::mount("none", directory_.c_str(), "tmpfs", 0, "size=64k") == 0;
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (isThere_) ::umount(directory_.c_str());
  }

  /// False for users who may not mount.
  [[nodiscard]] bool isThere() const { return isThere_; }

 private:
  std::string directory_;
  bool isThere_ = false;
};

class VspackHardPlacesTest : public testing::Test {
 protected:
  ProcessResult vspack(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), kVspack);
    ProcessRequest request{std::move(arguments)};
    request.directory = tree.root();
    return runProcess(request);
  }
  /// Runs a shell's line in the tree, with vspack as $1.
  ProcessResult shell(const std::string& line) {
    ProcessRequest request{{"/bin/sh", "-c", line, "sh", kVspack}};
    request.directory = tree.root();
    return runProcess(request);
  }
  void writeManifest(const std::string& files, const std::string& launcher = kLauncher) {
    tree.file("m", "LAUNCHER: " + launcher + "\nFILES:\n" + files + "/:\n");
  }
  ProcessResult pack(const std::string& output) {
    return vspack({"pack", "m", "-o", output, "--allow", "no-script"});
  }

  TempTree tree;
};

// Damaged archives.

/// Makes an archive of a text with a tool of the system, changes a byte of it and packs it.
struct Archive {
  const char* kind;
  const char* name;
  /// A shell's line that makes $1 of the file "text".
  const char* command;
};

class VspackDamageTest : public VspackHardPlacesTest, public testing::WithParamInterface<Archive> {
 protected:
  std::string archive() {
    std::string text;
    for (int i = 0; i < 5000; ++i) text += std::to_string(i * 7919) + "\n";
    tree.file("text", text);
    const ProcessResult made =
        runProcess({.command = {"/bin/sh", "-c", GetParam().command, "sh", GetParam().name},
                    .directory = tree.root()});
    return made.status == 0 ? readFile(tree.path(GetParam().name)) : "";
  }
  ProcessResult verify(const std::string& bytes) {
    LauncherFileBuilder()
        .stub("launcher")
        .add(6, 1, GetParam().name, bytes)
        .write(tree.path("setup"));
    return vspack({"verify", "setup"});
  }
};

TEST_P(VspackDamageTest, IsTold) {
  std::string bytes = archive();
  if (bytes.empty()) GTEST_SKIP() << "no tool for " << GetParam().name;
  EXPECT_EQ(verify(bytes).out, "setup: OK\n");
  bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 0x55);
  const ProcessResult result = verify(bytes);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, AllOf(StartsWith(std::string(GetParam().name) + ": error: "),
                                EndsWith(" [bad-archive]\n")));
}

TEST_P(VspackDamageTest, IsToldWhenItIsCut) {
  const std::string bytes = archive();
  if (bytes.empty()) GTEST_SKIP() << "no tool for " << GetParam().name;
  EXPECT_THAT(verify(bytes.substr(0, bytes.size() / 2)).err, HasSubstr(" [bad-archive]\n"));
}

std::string kindOf(const testing::TestParamInfo<Archive>& archive) {
  return archive.param.kind;
}

INSTANTIATE_TEST_SUITE_P(Archives, VspackDamageTest,
                         testing::Values(Archive{"Zip", "a.jar", "python3 -m zipfile -c $1 text"},
                                         Archive{"Gzip", "a.tar.gz", "tar -czf $1 text"},
                                         Archive{"Xz", "a.tar.xz", "tar -cJf $1 text"}),
                         kindOf);

TEST_F(VspackHardPlacesTest, ADamagedTarHeaderIsTold) {
  tree.file("text", std::string(3000, 'x'));
  ASSERT_EQ(shell("tar -cf a.tar text text text").status, 0);
  std::string bytes = readFile(tree.path("a.tar"));
  bytes[1536 + 3072 - 1024 + 10] = 'Z';  // in the second header, which has a checksum
  LauncherFileBuilder().stub("launcher").add(6, 1, "a.tar", bytes).write(tree.path("setup"));
  EXPECT_THAT(vspack({"verify", "setup"}).err, HasSubstr(" [bad-archive]\n"));
}

// Full disks.

TEST_F(VspackHardPlacesTest, AFullDiskLeavesNothingOfAnInstaller) {
  const SmallDisk disk(tree.dir("small"));
  if (!disk.isThere()) GTEST_SKIP() << "cannot mount here";
  tree.file("data", std::string(200000, 'x'));
  writeManifest("  application 1 data\n");
  const ProcessResult result = pack("small/setup");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: small/setup: No space left on device\n");
  EXPECT_THAT(tree.list("small"), IsEmpty());
}

TEST_F(VspackHardPlacesTest, AFullDiskLeavesNothingOfABundledRuntime) {
  if (!fs::exists(std::string(kBinaryDir) + "/share/verify.jar")) {
    GTEST_SKIP() << "no verify.jar without a JDK";
  }
  const SmallDisk disk(tree.dir("small"));
  if (!disk.isThere()) GTEST_SKIP() << "cannot mount here";
  const std::string home = makeFakeJavaHome(tree, "jdk",
                                            {{"java.specification.version", "17"},
                                             {"java.version", "17.0.1"},
                                             {"java.vendor", "Nobody"},
                                             {"os.arch", "amd64"},
                                             {"java.home", tree.path("jdk")}});
  tree.file("jdk/lib/large", std::string(200000, 'x'));
  const ProcessResult result = vspack({"bundle-jvm", home, "-o", "small/jre"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: small/jre: No space left on device\n");
  EXPECT_THAT(tree.list("small"), IsEmpty());
}

// Special files.

TEST_F(VspackHardPlacesTest, SpecialFilesAreRefusedWhereverAFileIsNamed) {
  ASSERT_EQ(::mkfifo(tree.path("fifo").c_str(), 0600), 0);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
  tree.path("socket").copy(address.sun_path, sizeof(address.sun_path) - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
  ::close(socket);
  LauncherFileBuilder().stub("launcher").add(6, 1, "a", "a").write(tree.path("setup"));
  for (const std::string name : {"fifo", "socket", "/dev/null", "/dev/zero", "."}) {
    writeManifest("  application 1 " + name + " x\n");
    EXPECT_EQ(pack("out").status, 1) << name;
    writeManifest("  application 1 setup\n", name);
    EXPECT_NE(pack("out").status, 0) << name;
    EXPECT_NE(vspack({"verify", "setup", "--sums", name}).status, 0) << name;
    for (const char* command : {"list", "info", "check", "verify", "sums", "extract"}) {
      const ProcessResult result = vspack({command, name});
      EXPECT_EQ(result.status, 2) << command << ' ' << name;
      EXPECT_THAT(result.err, StartsWith("vspack: " + name + ": ")) << command;
    }
  }
  EXPECT_FALSE(fs::exists(tree.path("out")));
}

// Outputs that are something else already.

TEST_F(VspackHardPlacesTest, AnInputIsNotReplacedByTheOutput) {
  tree.file("data", "data");
  tree.link("link", "data");
  fs::copy(kLauncher, tree.path("launcher"));
  writeManifest("  application 1 data\n", "launcher");
  const std::string manifest = readFile(tree.path("m"));
  for (const char* output : {"data", "link", "./data", "launcher", "m"}) {
    const ProcessResult result = pack(output);
    EXPECT_EQ(result.status, 1) << output;
    EXPECT_THAT(result.err, EndsWith("[output-is-input]\n")) << output;
  }
  EXPECT_EQ(readFile(tree.path("data")), "data");
  EXPECT_EQ(readFile(tree.path("m")), manifest);
  EXPECT_EQ(readFile(tree.path("launcher")), readFile(kLauncher));
}

TEST_F(VspackHardPlacesTest, AnInstallerIsNotReplacedByWhatItCarries) {
  LauncherFileBuilder().stub("launcher").add(6, 1, "setup", "a").write(tree.path("setup"));
  const std::string before = readFile(tree.path("setup"));
  const ProcessResult result = vspack({"extract", "setup", "--force"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: ./setup: is the installer itself and is not replaced\n");
  EXPECT_EQ(readFile(tree.path("setup")), before);
}

TEST_F(VspackHardPlacesTest, ALinkLeadsToTheFileThatIsWritten) {
  tree.file("data", "data");
  tree.dir("place");
  tree.link("link", "place/new");
  tree.link("nowhere", "none/new");
  tree.link("circle", "circle");
  writeManifest("  application 1 data\n");
  EXPECT_EQ(pack("link").status, 0);
  EXPECT_TRUE(fs::is_symlink(tree.path("link")));
  EXPECT_TRUE(fs::is_regular_file(tree.path("place/new")));
  EXPECT_EQ(pack("nowhere").err, "vspack: nowhere: No such file or directory\n");
  EXPECT_EQ(pack("circle").status, 2);
  EXPECT_TRUE(fs::is_symlink(tree.path("circle")));
}

TEST_F(VspackHardPlacesTest, WhatCannotBeWrittenIsTold) {
  tree.file("data", "data");
  writeManifest("  application 1 data\n");
  EXPECT_EQ(pack(".").err, "vspack: .: Is a directory\n");
  EXPECT_EQ(pack("data/x").err, "vspack: data/x: Not a directory\n");
  EXPECT_EQ(pack("none/x").err, "vspack: none/x: No such file or directory\n");
  EXPECT_EQ(pack("/dev/full").err, "vspack: /dev/full: No space left on device\n");
  ASSERT_EQ(pack("setup").status, 0);
  EXPECT_EQ(vspack({"extract", "setup", "-C", "data"}).err, "vspack: data: Not a directory\n");
  EXPECT_EQ(vspack({"extract", "setup", "-C", "/dev/null/x"}).err,
            "vspack: /dev/null/x: Not a directory\n");
}

TEST_F(VspackHardPlacesTest, AClosedStreamIsNoFileToWriteInto) {
  tree.file("data", "data");
  writeManifest("  application 1 data\n");
  ASSERT_EQ(pack("setup").status, 0);
  EXPECT_EQ(shell("\"$1\" pack m -o again --allow no-script 0<&- >&- 2>&-").status, 0);
  EXPECT_EQ(readFile(tree.path("again")), readFile(tree.path("setup")));
  EXPECT_EQ(shell("\"$1\" extract setup -C x 0<&- >&- 2>&-").status, 0);
  EXPECT_EQ(readFile(tree.path("x/data")), "data");
  EXPECT_EQ(shell("\"$1\" list setup >&-").status, 2);
  EXPECT_EQ(shell("\"$1\" pack m -o - --allow no-script >&-").status, 2);
}

// Odd contents.

TEST_F(VspackHardPlacesTest, EmptyFilesAndOddNamesKeepTheirSums) {
  const std::string odd = "a\\b \xFF '\"$ \xC3\xA9";
  LauncherFileBuilder builder;
  builder.stub("launcher").add(6, 1, "empty", "").add(6, 2, odd, "odd").add(6, 3, "last", "");
  builder.write(tree.path("set\\up"));
  EXPECT_EQ(vspack({"verify", "set\\up"}).status, 0);
  ASSERT_EQ(vspack({"extract", "set\\up", "-C", "x"}).status, 0);
  ASSERT_EQ(shell("\"$1\" sums 'set\\up' >sums").status, 0);
  EXPECT_EQ(shell("sha256sum -c --strict --status --ignore-missing sums").status, 0);
  EXPECT_EQ(shell("cd x && tail -n +2 ../sums | sha256sum -c --strict --status").status, 0);
  EXPECT_EQ(vspack({"verify", "set\\up", "--sums", "sums"}).status, 0);
}

TEST_F(VspackHardPlacesTest, NamesThatPlayWithTheTerminalAreShownHarmless) {
  LauncherFileBuilder()
      .stub("launcher")
      .add(6, 1, "a\x1B[2Jb\r\x7F", "x")
      .write(tree.path("setup"));
  for (const char* command : {"list", "info", "check", "verify", "sums", "extract", "diff"}) {
    std::vector<std::string> arguments = {command, "setup"};
    if (command == std::string("diff")) arguments.emplace_back("setup");
    const ProcessResult result = vspack(arguments);
    const std::string shown = result.out + result.err;
    EXPECT_EQ(shown.find_first_of("\x1B\r\x7F"), std::string::npos) << command << ": " << shown;
  }
}

TEST_F(VspackHardPlacesTest, MoreFilesThanSixteenBitsCount) {
  constexpr int kCount = 65537;
  tree.file("data", "data");
  std::string lines;
  for (int i = 1; i <= kCount; ++i) {
    lines += "  application " + std::to_string(i) + " data f" + std::to_string(i) + '\n';
  }
  writeManifest(lines);
  ASSERT_EQ(pack("setup").status, 0);
  EXPECT_EQ(vspack({"verify", "setup"}).out, "setup: OK\n");
  ASSERT_EQ(vspack({"extract", "setup", "f65537", "-C", "x"}).status, 0);
  EXPECT_EQ(readFile(tree.path("x/f65537")), "data");
  const std::string sums = vspack({"sums", "setup"}).out;
  EXPECT_EQ(std::count(sums.begin(), sums.end(), '\n'), kCount + 1);
}

}  // namespace
}  // namespace vessant::test
