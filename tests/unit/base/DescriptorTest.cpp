// Streams and descriptors that close themselves and are not inherited.
#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/base/Handles.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

class StdFileTest : public testing::Test {
 protected:
  [[nodiscard]] SString path(std::string_view relative) const {
    return SString(std::string_view(tree_.path(relative)));
  }
  void writeAll(OpenMode mode, const char* text) {
    const StdFile file = openFile(path("file"), mode);
    ASSERT_NE(file, nullptr);
    std::fputs(text, file.get());
  }

  TempTree tree_;
};

bool closesOnExec(int fd) {
  return (::fcntl(fd, F_GETFD) & FD_CLOEXEC) != 0;
}

bool isOpen(int fd) {
  return ::fcntl(fd, F_GETFD) >= 0;
}

UniqueFd anyDescriptor() {
  return UniqueFd(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

TEST_F(StdFileTest, WritingReplaces) {
  writeAll(OpenMode::Write, "first\r\n");
  writeAll(OpenMode::Write, "second\n");
  EXPECT_EQ(readFile(tree_.path("file")), "second\n");
}

TEST_F(StdFileTest, WhatCannotBeOpenedIsNullAndErrnoTellsWhy) {
  errno = 0;
  EXPECT_EQ(openFile(path("missing"), OpenMode::Read), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(openFile(path("missing/file"), OpenMode::Write), nullptr);
  EXPECT_EQ(openFile("", OpenMode::Read), nullptr);
}

TEST_F(StdFileTest, NoModeLetsAChildInheritTheDescriptor) {
  tree_.file("file");
  for (const OpenMode mode : {OpenMode::Read, OpenMode::Write}) {
    const StdFile file = openFile(path("file"), mode);
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(closesOnExec(::fileno(file.get())));
  }
}

TEST(UniqueFd, ClosesItsDescriptor) {
  int fd = -1;
  {
    const UniqueFd owner = anyDescriptor();
    fd = owner.get();
    EXPECT_TRUE(owner.isOpen());
    EXPECT_TRUE(isOpen(fd));
  }
  EXPECT_FALSE(isOpen(fd));
}

TEST(UniqueFd, OwnsNothingAtFirst) {
  const UniqueFd owner;
  EXPECT_FALSE(owner.isOpen());
  EXPECT_EQ(owner.get(), -1);
}

TEST(UniqueFd, AMoveHandsTheDescriptorOver) {
  UniqueFd source = anyDescriptor();
  const int fd = source.get();
  UniqueFd target(std::move(source));
  EXPECT_EQ(target.get(), fd);
  UniqueFd other = anyDescriptor();
  const int replaced = other.get();
  other = std::move(target);
  EXPECT_EQ(other.get(), fd);
  EXPECT_TRUE(isOpen(fd));
  EXPECT_FALSE(isOpen(replaced));
}

TEST(UniqueFd, ResettingClosesTheOldDescriptor) {
  UniqueFd owner = anyDescriptor();
  const int fd = owner.get();
  owner.reset();
  EXPECT_FALSE(owner.isOpen());
  EXPECT_FALSE(isOpen(fd));
}

}  // namespace
}  // namespace vessant::test
