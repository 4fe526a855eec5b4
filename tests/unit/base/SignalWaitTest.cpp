#include <csignal>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include "launcher/base/SignalWait.h"

namespace vessant::test {
namespace {

/// A pipe that holds as little as the system lets it.
class SignalWait : public testing::Test {
 protected:
  SignalWait() {
    EXPECT_EQ(::pipe(ends), 0);
    EXPECT_GT(::fcntl(ends[1], F_SETPIPE_SZ, 4096), 0);
  }
  ~SignalWait() override {
    for (const int end : ends) ::close(end);
  }
  void fill() const {
    ::fcntl(ends[1], F_SETFL, O_NONBLOCK);
    while (::write(ends[1], "x", 1) == 1) {
    }
    ::fcntl(ends[1], F_SETFL, 0);
  }

  int ends[2] = {-1, -1};
  CancelFlag flag;
};

TEST_F(SignalWait, IsOverWhenTheDescriptorIsReady) {
  EXPECT_TRUE(waitUntilReady(ends[1], POLLOUT, flag));
  ASSERT_EQ(::write(ends[1], "x", 1), 1);
  EXPECT_TRUE(waitUntilReady(ends[0], POLLIN, flag));
}

TEST_F(SignalWait, IsOverAtTheEndOfTheInput) {
  ::close(ends[1]);
  EXPECT_TRUE(waitUntilReady(ends[0], POLLIN, flag));
  ends[1] = -1;
}

TEST_F(SignalWait, LeavesWhatCannotBeAskedToItsOwnCall) {
  EXPECT_TRUE(waitUntilReady(-1, POLLIN, flag));
  EXPECT_TRUE(waitUntilReady(1023, POLLIN, flag));
}

TEST_F(SignalWait, DoesNotWaitInACancelledRun) {
  flag.set();
  EXPECT_FALSE(waitUntilReady(ends[0], POLLIN, flag));
  EXPECT_TRUE(waitUntilReady(ends[1], POLLOUT, flag)) << "it is ready at this moment";
}

TEST_F(SignalWait, DoesNotWaitWhileASignalIsUndecided) {
  flag.setUndecided(true);
  EXPECT_FALSE(waitUntilReady(ends[0], POLLIN, flag));
  flag.setUndecided(false);
  ASSERT_EQ(::write(ends[1], "x", 1), 1);
  EXPECT_TRUE(waitUntilReady(ends[0], POLLIN, flag));
}

CancelFlag* raisedFlag = nullptr;

/// A signal that comes between the look at the flag and the wait is held back until the wait.
TEST_F(SignalWait, IsEndedByASignalThatComesOutsideOfIt) {
  raisedFlag = &flag;
  struct sigaction action = {};
  struct sigaction previous = {};
  action.sa_handler = [](int) { raisedFlag->set(); };
  ::sigaction(SIGUSR1, &action, &previous);
  {
    const BlockedSignals blocked;
    ::raise(SIGUSR1);
    EXPECT_FALSE(flag.isSet());
  }
  EXPECT_TRUE(flag.isSet());
  EXPECT_FALSE(waitUntilReady(ends[0], POLLIN, flag));
  ::sigaction(SIGUSR1, &previous, nullptr);
}

TEST_F(SignalWait, FlushesToAReaderThatTakesIt) {
  std::FILE* stream = ::fdopen(::dup(ends[1]), "w");
  std::fputs("text", stream);
  flag.set();
  flushUnlessInterrupted(stream, flag);
  char bytes[8] = {};
  EXPECT_EQ(::read(ends[0], bytes, sizeof(bytes)), 4);
  std::fclose(stream);
}

TEST_F(SignalWait, LosesWhatNobodyTakesInACancelledRun) {
  std::FILE* stream = ::fdopen(::dup(ends[1]), "w");
  std::fputs("text", stream);
  fill();
  flag.set();
  flushUnlessInterrupted(stream, flag);
  std::fclose(stream);  // would wait for the reader
}

}  // namespace
}  // namespace vessant::test
