#include <csignal>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/linux/CancelSignals.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

constexpr int kKilled = 128;

void resetSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) ::signal(signal, SIG_DFL);
}

class Cancelling : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Signals, Cancelling, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_P(Cancelling, SetsTheFlag) {
  const ForkedResult result = runForked([] {
    resetSignals();
    CancelFlag flag;
    const CancelSignals signals(flag);
    if (flag.isSet()) return 1;
    ::raise(GetParam());
    return flag.isSet() ? 0 : 2;
  });
  EXPECT_EQ(result.status, 0);
}

TEST_P(Cancelling, ASecondTimeEndsTheProcess) {
  const ForkedResult result = runForked([] {
    resetSignals();
    CancelFlag flag;
    const CancelSignals signals(flag);
    ::raise(GetParam());
    ::raise(GetParam());
    return 0;
  });
  EXPECT_EQ(result.status, kKilled + GetParam());
}

TEST_P(Cancelling, AnIgnoredSignalStaysIgnored) {
  const ForkedResult result = runForked([] {
    resetSignals();
    ::signal(GetParam(), SIG_IGN);
    CancelFlag flag;
    const CancelSignals signals(flag);
    ::raise(GetParam());
    ::raise(GetParam());
    return flag.isSet() ? 1 : 0;
  });
  EXPECT_EQ(result.status, 0);
}

TEST_P(Cancelling, EndsWithTheObject) {
  const ForkedResult result = runForked([] {
    resetSignals();
    CancelFlag flag;
    { const CancelSignals signals(flag); }
    ::raise(GetParam());
    return 0;
  });
  EXPECT_EQ(result.status, kKilled + GetParam());
}

TEST_P(Cancelling, IsNotInheritedByThePrograms) {
  const ForkedResult result = runForked([] {
    resetSignals();
    CancelFlag flag;
    const CancelSignals signals(flag);
    ChildRunner runner;
    runner.pass("kill -" + std::to_string(GetParam()) + " $$; echo survived");
    return flag.isSet() ? 1 : 0;
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
}

TEST(CancelSignals, AClosedPipeNeitherCancelsNorEndsTheProcess) {
  const ForkedResult result = runForked([] {
    resetSignals();
    CancelFlag flag;
    const CancelSignals signals(flag);
    ::raise(SIGPIPE);
    ::raise(SIGPIPE);
    return flag.isSet() ? 1 : 0;
  });
  EXPECT_EQ(result.status, 0);
}

TEST(CancelSignals, AChildIsWaitedForAllTheSame) {
  const ForkedResult result = runForked([] {
    resetSignals();
    CancelFlag flag;
    const CancelSignals signals(flag);
    const std::string parent = std::to_string(::getpid());
    ChildRunner runner;
    const std::int32_t status = runner.pass("kill -TERM " + parent + "; exit 6");
    return flag.isSet() ? status : 99;
  });
  EXPECT_EQ(result.status, 6);
}

TEST(PrepareProcess, OpensTheStandardStreamsThatAreMissing) {
  for (int closed = 0; closed < 8; ++closed) {
    const ForkedResult result = runForked([closed] {
      for (int fd = 3; fd < 1024; ++fd) ::close(fd);
      for (int fd = 0; fd < 3; ++fd) {
        if ((closed >> fd & 1) != 0) ::close(fd);
      }
      prepareProcess();
      for (int fd = 0; fd < 3; ++fd) {
        if (::fcntl(fd, F_GETFD) != 0) return 100 + fd;  // not open, or closed on exec
      }
      return ::dup(0);
    });
    EXPECT_EQ(result.status, 3) << closed;
  }
}

TEST(PrepareProcess, TakesBackAnIgnoredEndOfChildren) {
  const ForkedResult result = runForked([] {
    ::signal(SIGCHLD, SIG_IGN);
    prepareProcess();
    return ChildRunner().pass(helper("exit 5"));
  });
  EXPECT_EQ(result.status, 5);
}

}  // namespace
}  // namespace vessant::test
