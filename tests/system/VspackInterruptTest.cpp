// vspack interrupted in the middle of its work: it dies by the signal, and nothing half done is
// left of it.

#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include "support/BuildPaths.h"
#include "support/CallStop.h"
#include "support/FakeJavaHome.h"
#include "support/LauncherFileBuilder.h"
#include "support/RunningProcess.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kSignalled = 128;

class VspackInterruptTest : public testing::TestWithParam<int> {
 protected:
  /// A shell that becomes vspack when it is told to.
  ProcessRequest waitingVspack(const std::vector<std::string>& arguments) {
    ProcessRequest request{{"/bin/sh", "-c", "read -r go; exec \"$0\" \"$@\"", kVspack}};
    request.command.insert(request.command.end(), arguments.begin(), arguments.end());
    request.directory = tree.root();
    request.environment["TMPDIR"] = tree.dir("temp");
    return request;
  }

  /// Interrupts vspack at a write when a part of a new file lies in `directory` and there is more
  /// to come. Returns its status, or -1 when there is no such moment.
  int interruptWriting(const std::vector<std::string>& arguments, const std::string& directory) {
    RunningProcess process(waitingVspack(arguments), RunningProcess::Console::Pipe);
    CallStop stop(process.id());
    process.type("go\n");
    // The sanitizers write, too, so that the calls cannot be counted.
    do {
      if (!stop.runTo({SYS_write})) return -1;
    } while (!holdsPartialFile(tree.path(directory)));
    stop.release(GetParam());
    return process.wait();
  }

  /// One with a block of the files, which are larger.
  [[nodiscard]] static bool holdsPartialFile(const fs::path& directory) {
    constexpr std::uintmax_t kLeast = 1000;
    if (!fs::exists(directory)) return false;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
      const bool isPartial = entry.path().filename().string().starts_with(".vspack.");
      if (isPartial && entry.is_regular_file() && entry.file_size() >= kLeast) return true;
    }
    return false;
  }

  TempTree tree;
  const std::string megabyte = std::string(1'000'000, 'x');
};

TEST_P(VspackInterruptTest, PackLeavesWhatWasThere) {
  tree.file("m/data", megabyte);
  tree.file("m/pack.manifest", "OUTPUT: ../out/setup\nLAUNCHER: " + std::string(kLauncher) +
                                   "\nFILES:\n  application 1 data\n/:\n");
  tree.file("out/setup", "before");
  const int status = interruptWriting({"pack", "m", "--allow", "no-script", "--no-align"}, "out");
  EXPECT_EQ(status, kSignalled + GetParam());
  EXPECT_THAT(tree.list("out"), ElementsAre("setup"));
  EXPECT_EQ(readFile(tree.path("out/setup")), "before");
}

TEST_P(VspackInterruptTest, ExtractLeavesWholeFilesOnly) {
  LauncherFileBuilder()
      .stub("launcher")
      .add(6, 1, "small", "small")
      .add(6, 2, "large", megabyte)
      .write(tree.path("setup"));
  const int status = interruptWriting({"extract", "setup", "-C", "x"}, "x");
  EXPECT_EQ(status, kSignalled + GetParam());
  EXPECT_THAT(tree.list("x"), ElementsAre("small"));
  EXPECT_EQ(readFile(tree.path("x/small")), "small");
}

/// A Java that answers, and a jlink of the test's own.
class VspackInterruptBundleTest : public VspackInterruptTest {
 protected:
  void SetUp() override {
    if (!fs::exists(std::string(kBinaryDir) + "/share/verify.jar")) {
      GTEST_SKIP() << "no verify.jar without a JDK";
    }
    home = makeFakeJavaHome(tree, "jdk",
                            {{"java.specification.version", "17"},
                             {"java.version", "17.0.1"},
                             {"java.vendor", "Nobody"},
                             {"os.arch", "amd64"},
                             {"java.home", tree.path("jdk")}});
  }

  /// It finds the directory to make as its last argument.
  void addJlink(const std::string& script) {
    tree.program("jdk/bin/jlink",
                 "#!/bin/sh\nfor home; do :; done\nmkdir -p \"$home/bin/deep/deeper\"\n" + script);
  }
  [[nodiscard]] std::vector<std::string> bundle() const {
    return {"bundle-jvm", home, "--modules", "java.base", "-o", "out/jre.run"};
  }

  std::string home;
};

TEST_P(VspackInterruptBundleTest, TheRuntimeGoesWhileItIsMade) {
  ASSERT_EQ(::mkfifo(tree.path("started").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(tree.path("never").c_str(), 0600), 0);
  addJlink("echo x >\"$home/bin/deep/deeper/x\"\necho $$ >" + tree.path("started") + "\nread x <" +
           tree.path("never") + "\n");
  tree.dir("out");
  RunningProcess process(waitingVspack(bundle()), RunningProcess::Console::Pipe);
  process.type("go\n");
  pid_t jlink = 0;
  std::ifstream(tree.path("started")) >> jlink;
  EXPECT_THAT(tree.list("temp"), testing::Not(IsEmpty()));
  process.send(GetParam());
  EXPECT_EQ(process.wait(), kSignalled + GetParam());
  EXPECT_THAT(tree.list("temp"), IsEmpty());
  EXPECT_THAT(tree.list("out"), IsEmpty());
  EXPECT_EQ(::kill(jlink, 0), -1) << "jlink goes on";
}

TEST_P(VspackInterruptBundleTest, TheRuntimeGoesWhileItIsWritten) {
  addJlink("cp " + home + "/bin/java \"$home/bin\"\ncp " + tree.file("data", megabyte) +
           " \"$home/bin/deep/deeper\"\n");
  tree.dir("out");
  const int status = interruptWriting(bundle(), "out");
  EXPECT_EQ(status, kSignalled + GetParam());
  EXPECT_THAT(tree.list("temp"), IsEmpty());
  EXPECT_THAT(tree.list("out"), IsEmpty());
}

std::string nameOfSignal(const testing::TestParamInfo<int>& info) {
  return ::sigabbrev_np(info.param);
}

INSTANTIATE_TEST_SUITE_P(Signals, VspackInterruptTest, testing::Values(SIGINT, SIGTERM, SIGHUP),
                         nameOfSignal);
INSTANTIATE_TEST_SUITE_P(Signals, VspackInterruptBundleTest,
                         testing::Values(SIGINT, SIGTERM, SIGHUP), nameOfSignal);

}  // namespace
}  // namespace vessant::test
