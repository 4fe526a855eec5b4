#include <csignal>
#include <functional>
#include <string>

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
  for (int signal = 1; signal <= SIGRTMAX; ++signal) ::signal(signal, SIG_DFL);
}

/// Runs `piece` in a process of its own, in which every signal has its default and a CancelSignals
/// lives.
ForkedResult runCaught(const std::function<int(const CancelFlag&, CancelSignals&)>& piece) {
  return runForked([&] {
    resetSignals();
    CancelFlag flag;
    CancelSignals signals(flag);
    return piece(flag, signals);
  });
}

/// The same for a signal that comes twice: what becomes of the process. 1 when the flag is set.
int statusAfterTwo(int signal) {
  return runCaught([&](const CancelFlag& flag, CancelSignals&) {
           ::raise(signal);
           ::raise(signal);
           return flag.isSet() ? 1 : 0;
         })
      .status;
}

class Cancelling : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Signals, Cancelling,
                         testing::Values(SIGHUP, SIGINT, SIGQUIT, SIGUSR1, SIGUSR2, SIGALRM,
                                         SIGTERM, SIGSTKFLT, SIGXCPU, SIGVTALRM, SIGPROF, SIGIO,
                                         SIGPWR, SIGRTMIN, SIGRTMAX));

TEST_P(Cancelling, SetsTheFlag) {
  const ForkedResult result = runCaught([](const CancelFlag& flag, CancelSignals&) {
    if (flag.isSet()) return 1;
    ::raise(GetParam());
    return flag.isSet() ? 0 : 2;
  });
  EXPECT_EQ(result.status, 0);
}

TEST_P(Cancelling, ASecondTimeEndsTheProcess) {
  EXPECT_EQ(statusAfterTwo(GetParam()), kKilled + GetParam());
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
  const ForkedResult result = runCaught([](const CancelFlag& flag, CancelSignals&) {
    ChildRunner runner;
    // The shell that the launcher starts has a trap of its own.
    runner.pass("sh -c 'kill -" + std::to_string(GetParam()) + " $$; echo survived' 2>/dev/null");
    return flag.isSet() ? 1 : 0;
  });
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
}

/// A call that waits for somebody else must not be taken up again behind the handler.
TEST_P(Cancelling, InterruptsACallThatWaits) {
  const ForkedResult result = runCaught([](const CancelFlag&, CancelSignals&) {
    struct sigaction action = {};
    ::sigaction(GetParam(), nullptr, &action);
    return (action.sa_flags & SA_RESTART) == 0 ? 0 : 1;
  });
  EXPECT_EQ(result.status, 0);
}

class Harmless : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Signals, Harmless, testing::Values(SIGPIPE, SIGXFSZ, SIGCHLD, SIGWINCH));

TEST_P(Harmless, NeitherCancelsNorEndsTheProcess) {
  EXPECT_EQ(statusAfterTwo(GetParam()), 0);
}

class Crash : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Signals, Crash, testing::Values(SIGABRT, SIGBUS, SIGTRAP, SIGSYS));

TEST_P(Crash, EndsTheProcessAsEver) {
  const ForkedResult result = runCaught([](const CancelFlag&, CancelSignals&) {
    ::raise(GetParam());
    return 0;
  });
  EXPECT_EQ(result.status, kKilled + GetParam());
}

TEST(CancelSignals, NotedOnesAreUndecidedUntilTheyAreTaken) {
  const ForkedResult result = runCaught([](const CancelFlag& flag, CancelSignals& signals) {
    signals.setNoting(true);
    ::raise(SIGINT);
    ::raise(SIGINT);
    ::raise(SIGTERM);
    if (flag.isSet() || !flag.isInterrupted() || !signals.hasNoted()) return 1;
    if (signals.takeNoted() != SIGINT || signals.takeNoted() != SIGTERM) return 2;
    return signals.takeNoted() == 0 && !flag.isInterrupted() && !signals.hasNoted() ? 0 : 3;
  });
  EXPECT_EQ(result.status, 0);
}

TEST(CancelSignals, WhatIsStillNotedAtTheEndCounts) {
  const ForkedResult result = runCaught([](const CancelFlag& flag, CancelSignals& signals) {
    signals.setNoting(true);
    ::raise(SIGINT);
    signals.setNoting(false);
    return flag.isSet() ? 0 : 1;
  });
  EXPECT_EQ(result.status, 0);
}

TEST(CancelSignals, AChildIsWaitedForAllTheSame) {
  const ForkedResult result = runCaught([](const CancelFlag& flag, CancelSignals&) {
    const std::string parent = std::to_string(::getpid());
    ChildRunner runner;
    const std::int32_t status = runner.pass(helper("exit 6") + "; s=$?; kill -TERM " + parent +
                                            "; trap 'exit 6' TERM; kill -TERM $$; exit 7");
    return flag.isSet() ? status : 99;
  });
  EXPECT_EQ(result.status, 6);
}

}  // namespace
}  // namespace vessant::test
