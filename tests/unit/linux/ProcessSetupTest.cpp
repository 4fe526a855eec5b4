#include <csignal>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/linux/ChildProcess.h"
#include "unit/linux/ChildRunner.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

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
