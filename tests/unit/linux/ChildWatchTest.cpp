#include <cerrno>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/linux/ChildProcess.h"
#include "launcher/linux/ChildWatch.h"
#include "support/AllocationWatch.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

constexpr std::size_t kChunk = 4096;
constexpr std::size_t kFarMoreThanAPipeHolds = 1000000;

/// What the test helper writes for "out N" or "err N".
std::string fill(std::size_t count, char letter) {
  std::string bytes(count, letter);
  for (std::size_t i = 63; i < count; i += 64) bytes[i] = '\n';
  return bytes;
}

class ReadPipeChunk : public testing::Test {
 protected:
  ReadPipeChunk() { EXPECT_TRUE(pipe.open()); }

  void write(const std::string& bytes) {
    ASSERT_EQ(::write(pipe.writeEnd.get(), bytes.data(), bytes.size()),
              static_cast<ssize_t>(bytes.size()));
  }
  ssize_t read() { return readPipeChunk(pipe.readEnd.get(), &received, progress); }

  Pipe pipe;
  SString received;
  RecordingProgress progress;
};

TEST_F(ReadPipeChunk, AppendsAtMostOneChunkAndCountsAStep) {
  received = "old ";
  write(fill(kChunk + 10, 'x'));
  EXPECT_EQ(read(), static_cast<ssize_t>(kChunk));
  EXPECT_EQ(str(received), "old " + fill(kChunk, 'x'));
  EXPECT_EQ(progress.steps, 1);
  EXPECT_EQ(read(), 10);
  EXPECT_EQ(str(received), "old " + fill(kChunk + 10, 'x'));
  EXPECT_EQ(progress.steps, 2);
}

TEST_F(ReadPipeChunk, MovesALongTextSeldom) {
  constexpr int kChunks = 400;
  const AllocationWatch watch;
  for (int i = 0; i < kChunks; ++i) {
    write(fill(kChunk, 'x'));
    ASSERT_EQ(read(), static_cast<ssize_t>(kChunk));
  }
  EXPECT_EQ(received.length(), kChunks * kChunk);
  EXPECT_LT(watch.sizes().size(), kChunks / 10U);
}

TEST_F(ReadPipeChunk, TakesTheChunkWhenThereIsMemoryForNoMore) {
  write(fill(kChunk, 'x'));
  AllocationWatch watch;
  watch.failNext(2);  // the rounded and the exact block of the room
  EXPECT_EQ(read(), static_cast<ssize_t>(kChunk));
  EXPECT_EQ(str(received), fill(kChunk, 'x'));
  EXPECT_LT(received.capacity(), kChunk + kChunk / 2);
}

TEST_F(ReadPipeChunk, LosesTheRestOfAChunkBehindAZeroByte) {
  write(std::string("before\0after", 12));
  EXPECT_EQ(read(), 12);
  write("next");
  EXPECT_EQ(read(), 4);
  EXPECT_EQ(received, "beforenext");
}

TEST_F(ReadPipeChunk, CountsAStepForAChunkThatBeginsWithAZeroByte) {
  write(std::string("\0lost", 5));
  EXPECT_EQ(read(), 5);
  EXPECT_EQ(received, "");
  EXPECT_EQ(progress.steps, 1);
}

TEST_F(ReadPipeChunk, CountsAStepWithoutAText) {
  write("dropped");
  EXPECT_EQ(readPipeChunk(pipe.readEnd.get(), nullptr, progress), 7);
  EXPECT_EQ(progress.steps, 1);
}

TEST_F(ReadPipeChunk, DoesNothingAtTheEnd) {
  pipe.writeEnd.reset();
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(received, "");
  EXPECT_EQ(progress.steps, 0);
}

TEST_F(ReadPipeChunk, DoesNothingWhenThereIsNothingYet) {
  ::fcntl(pipe.readEnd.get(), F_SETFL, O_NONBLOCK);
  EXPECT_EQ(read(), -1);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_EQ(progress.steps, 0);
}

TEST(CapturedChild, EachStreamGoesToItsOwnText) {
  ChildRunner runner;
  EXPECT_EQ(runner.capture(helper("text out err 5 exit 3")), 3);
  EXPECT_EQ(runner.out, "out\n");
  EXPECT_EQ(runner.err, "eeeee");
}

TEST(CapturedChild, OutputIsAppended) {
  ChildRunner runner;
  runner.out = "old ";
  runner.capture(helper("text one"));
  runner.capture(helper("text two"));
  EXPECT_EQ(runner.out, "old one\ntwo\n");
}

TEST(CapturedChild, WritesFarMoreThanAPipeHolds) {
  ChildRunner runner;
  const std::string count = std::to_string(kFarMoreThanAPipeHolds);
  EXPECT_EQ(runner.capture(helper("out " + count + " err " + count + " exit 9")), 9);
  EXPECT_EQ(str(runner.out), fill(kFarMoreThanAPipeHolds, 'o'));
  EXPECT_EQ(str(runner.err), fill(kFarMoreThanAPipeHolds, 'e'));
  EXPECT_GE(runner.progress.steps, static_cast<int>(2 * kFarMoreThanAPipeHolds / kChunk));
}

TEST(CapturedChild, OutputIsCollectedWithoutATextToo) {
  ChildRunner runner;
  ChildCommand child{.command = text(helper("out 200000 err 200000 exit 6"))};
  child.captureOutput = true;
  child.redirectChildOutput = true;
  EXPECT_EQ(runner.platform.executeCommand(child, runner.progress).exitCode, 6);
  EXPECT_GE(runner.progress.steps, 400000 / static_cast<int>(kChunk));
}

TEST(CapturedChild, AZeroByteCutsItsChunk) {
  ChildRunner runner;
  runner.capture(helper("zero"));
  EXPECT_EQ(runner.out, "before");
}

TEST(CapturedChild, WithoutRedirectionItKeepsTheStreamsOfTheLauncher) {
  const ForkedResult result = runForked([] {
    ChildRunner runner;
    ChildCommand child{.command = text(helper("text out err 3 exit 4"))};
    child.captureOutput = true;
    child.stdoutText = &runner.out;
    child.stderrText = &runner.err;
    const std::int32_t status = runner.platform.executeCommand(child, runner.progress).exitCode;
    return runner.out.isEmpty() && runner.err.isEmpty() ? status : 99;
  });
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.out, "out\n");
  EXPECT_EQ(result.err, "eee");
}

TEST(CapturedChild, RedirectionAloneCollectsNothing) {
  const ForkedResult result = runForked([] {
    ChildRunner runner;
    ChildCommand child{.command = text(helper("text out exit 4"))};
    child.redirectChildOutput = true;
    child.stdoutText = &runner.out;
    const std::int32_t status = runner.platform.executeCommand(child, runner.progress).exitCode;
    return runner.out.isEmpty() ? status : 99;
  });
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.out, "out\n");
}

TEST(CapturedChild, ClosesItsStreamsLongBeforeItEnds) {
  TempTree tree;
  ChildRunner runner;
  // The file is made only after both streams are closed.
  const std::string file = tree.path("closed");
  EXPECT_EQ(runner.capture("echo early; exec >&- 2>&-; : >" + file + "; exit 5"), 5);
  EXPECT_EQ(runner.out, "early\n");
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(CapturedChild, OutputOfAGrandchildThatStaysBehindIsDrained) {
  ChildRunner runner;
  // The grandchild writes once the child has been waited for.
  const std::string command =
      "child=$$; (while kill -0 $child 2>/dev/null; do :; done; echo late; echo late >&2) & "
      "echo early; exit 8";
  EXPECT_EQ(runner.capture(command), 8);
  EXPECT_EQ(runner.out, "early\nlate\n");
  EXPECT_EQ(runner.err, "late\n");
}

/// Lets the stopped child go on once its stop has been noticed for certain: two chunks are read on
/// different rounds, and each round asks for the child's state first.
class ResumingProgress : public ProgressSink {
 public:
  ResumingProgress(TempTree& tree, const SString& out) : tree_(tree), out_(out) {}

  void addProgressDots(std::int32_t /*count*/) override {
    if (++steps_ == 1) tree_.file("go");
    if (steps_ == 2) ::kill(std::stoi(str(out_)), SIGCONT);
  }
  void showSearchPhase(SearchPhase /*phase*/, const SString& /*text*/) override {}

 private:
  TempTree& tree_;
  const SString& out_;
  int steps_ = 0;
};

TEST(CapturedChild, AStopIsNotItsEnd) {
  TempTree tree;
  SString out;
  ResumingProgress progress(tree, out);
  ChildCommand child{
      .command = text("(while ! grep -q stopped /proc/$$/status; do :; done; echo $$; "
                      "while [ ! -e go ]; do :; done; echo more) & kill -STOP $$; wait; exit 4"),
      .workingDirectory = text(tree.root())};
  child.captureOutput = true;
  child.redirectChildOutput = true;
  child.stdoutText = &out;
  EXPECT_EQ(LinuxPlatformImpl().executeCommand(child, progress).exitCode, 4);
  EXPECT_TRUE(out.view().ends_with("\nmore\n"));
}

}  // namespace
}  // namespace vessant::test
