// Which processes another one runs, on machines that tell it in different ways: each test has a
// /proc of its own.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/linux/ProcessTree.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

constexpr int kNotPossible = 77;

/// An empty /proc for this process alone.
bool hideProc() {
  return ::unshare(CLONE_NEWNS) == 0 &&
         ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount("none", "/proc", "tmpfs", 0, nullptr) == 0;
}

/// What `check` returns in a process without /proc; kNotPossible where none can be had.
int statusWithoutProc(const std::function<int()>& check) {
  return runForked([&] { return hideProc() ? check() : kNotPossible; }).status;
}

struct Child {
  Child() : id(::fork()) {
    while (id == 0) ::pause();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    ::kill(id, SIGKILL);
    ::waitpid(id, nullptr, 0);
  }
  pid_t id;
};

void writeStatus(pid_t process, const std::string& rest) {
  const std::string directory = "/proc/" + std::to_string(process);
  fs::create_directories(directory);
  std::ofstream(directory + "/stat") << process << " " << rest;
}

TEST(ProcessTree, KnowsTheChildrenThatTheSystemLists) {
  const Child child;
  EXPECT_THAT(childrenOf(::getpid()), ElementsAre(child.id));
  EXPECT_THAT(descendantsOf(::getpid()), ElementsAre(child.id));
}

TEST(ProcessTree, AsksForEachProcessWhereThereIsNoProc) {
  const int status = statusWithoutProc([] {
    const Child child;
    const std::vector<pid_t> children = childrenOf(::getpid());
    if (children.empty()) return kNotPossible;  // an older kernel does not tell of parents
    return children == std::vector<pid_t>{child.id} ? 0 : 1;
  });
  if (status == kNotPossible) GTEST_SKIP() << "not to be had on this machine";
  EXPECT_EQ(status, 0);
}

TEST(ProcessTree, ReadsTheStateOfEachProcessWhereNoneListsItsChildren) {
  const int status = statusWithoutProc([] {
    fs::create_directories("/proc/self");
    fs::create_directories("/proc/sys");
    fs::create_directories("/proc/45");  // has gone by now
    writeStatus(41, "(sh) S 40 41 41 0");
    writeStatus(42, "(a) b) (c) R 40 41 41 0");
    writeStatus(43, "(sleep) S 41 41 41 0");
    writeStatus(44, "(");
    std::vector<pid_t> children = childrenOf(40);
    std::sort(children.begin(), children.end());
    return children == std::vector<pid_t>{41, 42} ? 0 : 1;
  });
  if (status == kNotPossible) GTEST_SKIP() << "no /proc of its own here";
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace vessant::test
