// Deleting trees, what stays of them, and which warnings tell of it.
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "launcher/base/DeleteFullDir.h"
#include "support/FakeRun.h"
#include "support/ProcessScope.h"
#include "support/SpoiledErrno.h"
#include "support/StubbornEntries.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

constexpr uid_t kOrdinaryUser = 65534;

/// Makes an ordinary user the owner of a whole tree.
void giveAway(const std::string& path) {
  if (::geteuid() != 0) return;
  ASSERT_EQ(::lchown(path.c_str(), kOrdinaryUser, kOrdinaryUser), 0);
  if (!fs::is_directory(fs::symlink_status(path))) return;
  for (const auto& entry : fs::directory_iterator(path)) giveAway(entry.path().string());
}

/// The rights of an ordinary user, while it lives.
class OrdinaryUser {
 public:
  OrdinaryUser() : wasRoot_(::geteuid() == 0) {
    if (wasRoot_ && ::seteuid(kOrdinaryUser) != 0) ADD_FAILURE() << "cannot change the user";
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (wasRoot_ && ::seteuid(0) != 0) std::abort();
  }

 private:
  bool wasRoot_;
};

class DeleteFullDirTest : public testing::Test {
 protected:
  bool deleteTree(const std::string& relative) { return deleteAt(tree.path(relative)); }
  bool deleteAt(const std::string& path) {
    DeleteFullDir deletion(run.services);
    return deletion.navigate(SString(std::string_view(path)));
  }
  bool deleteOne(const std::string& path) {
    return deletePath(SString(std::string_view(path)), run.services);
  }

  /// A file that nobody can delete.
  std::string undeletable(const std::string& relative) {
    stubborn.add(fs::path(relative).filename().string());
    return tree.file(relative);
  }
  [[nodiscard]] std::string warning(const std::string& relative, int error) const {
    return "Could not delete " + tree.path(relative) + " :  " + std::strerror(error);
  }
  void expectWarnings(const Paths& expected) const {
    EXPECT_EQ(run.log.texts(), expected);
    for (const RecordingLog::Line& line : run.log.lines()) {
      EXPECT_EQ(line.level, LogLevel::Warning);
    }
  }

  void deleteNothing(const std::string& path, const std::optional<FileIdentity>& expected) {
    EXPECT_FALSE(DeleteFullDir(run.services, expected).navigate(SString(path)));
    EXPECT_TRUE(run.log.lines().empty());
  }
  /// Makes directories of this name below one another in "top", each with a file and a sibling.
  void makeDeep(const std::string& name, int depth) {
    UniqueFd directory(::open(tree.dir("top").c_str(), O_RDONLY | O_DIRECTORY));
    for (int i = 0; i < depth; ++i) {
      UniqueFd(::openat(directory.get(), "file", O_WRONLY | O_CREAT, 0600));
      for (const char* child : {"sibling", name.c_str(), "last"}) {
        ASSERT_EQ(::mkdirat(directory.get(), child, 0700), 0);
      }
      directory = UniqueFd(::openat(directory.get(), name.c_str(), O_RDONLY | O_DIRECTORY));
      ASSERT_TRUE(directory.isOpen());
    }
  }
  TempTree tree;
  FakeRun run;
  StubbornEntries stubborn;
};

// One path.

TEST_F(DeleteFullDirTest, OnePathIsDeletedWhateverItsType) {
  const std::string file = tree.file("file", "text");
  const std::string dir = tree.dir("dir");
  const std::string fifo = tree.path("fifo");
  const std::string socket = tree.path("socket");
  ASSERT_EQ(::mknod(fifo.c_str(), S_IFIFO | 0600, 0), 0);
  ASSERT_EQ(::mknod(socket.c_str(), S_IFSOCK | 0600, 0), 0);
  for (const std::string& path : {file, dir, fifo, socket}) EXPECT_TRUE(deleteOne(path)) << path;
  EXPECT_TRUE(tree.list().empty());
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, ALinkToAFileGoesAndTheFileStays) {
  const std::string file = tree.file("file", "text");
  EXPECT_TRUE(deleteOne(tree.link("link", file)));
  EXPECT_EQ(tree.list(), Paths{"file"});
}

TEST_F(DeleteFullDirTest, ALinkToADirectoryGoesAndTheDirectoryStays) {
  tree.file("elsewhere/precious");
  EXPECT_TRUE(deleteOne(tree.link("link", tree.path("elsewhere"))));
  EXPECT_TRUE(deleteOne(tree.link("link", tree.path("elsewhere")) + "/"));
  EXPECT_EQ(tree.list(), (Paths{"elsewhere", "elsewhere/precious"}));
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, ALinkToNothingGoes) {
  EXPECT_TRUE(deleteOne(tree.link("dangling", tree.path("missing"))));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(DeleteFullDirTest, WhereNothingLiesNothingIsSaid) {
  for (const std::string& path : {tree.path("missing"), tree.path("missing/file"), std::string()}) {
    EXPECT_FALSE(deleteOne(path)) << path;
  }
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, ARelativePathAndOneWithoutANameCount) {
  tree.dir("here/inner");
  tree.file("file");
  const fs::path before = fs::current_path();
  fs::current_path(tree.path("here"));
  EXPECT_TRUE(deleteOne("inner"));
  EXPECT_TRUE(deleteOne("../file"));
  EXPECT_FALSE(deleteOne("."));
  EXPECT_FALSE(deleteOne("/"));
  fs::current_path(before);
  EXPECT_EQ(tree.list(), (Paths{"here"}));
  EXPECT_EQ(run.log.lines().size(), 2U) << "neither could be deleted";
}

TEST_F(DeleteFullDirTest, ADirectoryThatIsNotEmptyStaysWithAWarning) {
  tree.file("dir/file");
  EXPECT_FALSE(deleteOne(tree.path("dir")));
  EXPECT_EQ(tree.list(), (Paths{"dir", "dir/file"}));
  expectWarnings({warning("dir", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, AWarningNamesTheErrorOfTheDeletionWhateverRunsBehindIt) {
  tree.file("dir/file");
  {
    const SpoiledErrno spoiled;
    EXPECT_FALSE(deleteOne(tree.path("dir")));
  }
  expectWarnings({warning("dir", ENOTEMPTY)});
}

// The directory is not part of what is deleted, so that its permissions are left as they are.
TEST_F(DeleteFullDirTest, AFileThatMayNotBeDeletedStaysWithAWarning) {
  tree.file("closed/file");
  fs::permissions(tree.path("closed"), fs::perms::owner_read | fs::perms::owner_exec);
  giveAway(tree.root());
  {
    const OrdinaryUser user;
    EXPECT_FALSE(deleteOne(tree.path("closed/file")));
  }
  expectWarnings({warning("closed/file", EACCES)});
}

// Whole trees.

TEST_F(DeleteFullDirTest, AWholeTreeGoesWithoutAWord) {
  tree.file("top/a", "text");
  tree.file("top/one/b");
  tree.file("top/one/two/c");
  tree.dir("top/empty/deep/deeper");
  tree.link("top/one/link", tree.file("other"));
  ASSERT_EQ(::mknod(tree.path("top/one/socket").c_str(), S_IFSOCK | 0600, 0), 0);
  ASSERT_EQ(::mknod(tree.path("top/fifo").c_str(), S_IFIFO | 0600, 0), 0);
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list(), Paths{"other"});
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, ATrailingSeparatorMakesNoDifference) {
  tree.file("top/sub/a");
  EXPECT_FALSE(deleteTree("top/"));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(DeleteFullDirTest, ALargeTreeGoesToo) {
  for (int i = 0; i < 40; ++i) {
    for (int j = 0; j < 40; ++j) tree.file("top/" + std::to_string(i) + "/" + std::to_string(j));
  }
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_TRUE(tree.list().empty());
  EXPECT_EQ(run.progress.steps, 1);
}

TEST_F(DeleteFullDirTest, WhatIsMissingIsNoFailure) {
  EXPECT_FALSE(deleteTree("missing"));
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, AStartThatIsAFileIsDeleted) {
  tree.file("file");
  EXPECT_FALSE(deleteTree("file"));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(DeleteFullDirTest, CancellingDoesNotEndTheDeletion) {
  tree.file("top/sub/a");
  run.cancelFlag.set();
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_TRUE(tree.list().empty());
}

// What stays.

TEST_F(DeleteFullDirTest, AnUndeletableFileStaysWithTheDirectoriesAboveIt) {
  undeletable("top/one/two/kept");
  tree.file("top/one/two/a");
  tree.file("top/one/b");
  tree.file("top/other/deep/c");
  tree.file("top/d");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"one", "one/two", "one/two/kept"}));
}

TEST_F(DeleteFullDirTest, LinksGoAndWhatTheyLeadToStays) {
  tree.file("elsewhere/precious", "text");
  tree.link("top/directory", tree.path("elsewhere"));
  tree.link("top/file", tree.path("elsewhere/precious"));
  tree.link("top/sub/dangling", tree.path("missing"));
  tree.link("top/sub/self", tree.path("top"));
  tree.link("top/sub/inner", tree.file("top/own"));
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list(), (Paths{"elsewhere", "elsewhere/precious"}));
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, AStartThatIsALinkGoesAsALink) {
  tree.file("elsewhere/precious");
  tree.link("link", tree.path("elsewhere"));
  EXPECT_FALSE(deleteTree("link/"));
  EXPECT_EQ(tree.list(), (Paths{"elsewhere", "elsewhere/precious"}));
}

TEST_F(DeleteFullDirTest, EachFailureIsLoggedAsAWarning) {
  undeletable("top/kept");
  EXPECT_FALSE(deleteTree("top"));
  expectWarnings({warning("top/kept", EPERM), warning("top", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, TheDirectoriesAboveALeftoverAreToldOfButNotTheStart) {
  undeletable("top/a/b/kept");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"a", "a/b", "a/b/kept"}));
  expectWarnings(
      {warning("top/a/b/kept", EPERM), warning("top/a/b", ENOTEMPTY), warning("top/a", ENOTEMPTY)});
}

TEST_F(DeleteFullDirTest, WhatIsGoneMeanwhileIsNoFailure) {
  tree.file("top/a/file");
  stubborn.beforeEach = [&](const std::string& name) {
    fs::remove_all(tree.path("top/a/" + name));
  };
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_TRUE(tree.list().empty());
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(DeleteFullDirTest, SiblingsOfALeftoverGo) {
  undeletable("top/a/kept");
  for (const char* name : {"b", "c", "d", "e"}) tree.file(std::string("top/") + name + "/file");
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("top"), (Paths{"a", "a/kept"}));
}

// What lies there in the place of what is meant.

TEST_F(DeleteFullDirTest, OnlyTheExpectedFileGoes) {
  const std::string file = tree.file("file", "ours");
  const auto ours = identityOf(AT_FDCWD, file.c_str());
  fs::rename(file, tree.path("moved"));
  tree.file("file", "not ours");
  EXPECT_FALSE(deletePath(SString(file), run.services, ours));
  EXPECT_EQ(tree.list(), (Paths{"file", "moved"}));
  EXPECT_EQ(run.log.texts(),
            Paths{"Could not delete " + file + " :  something else has taken its place"});
  EXPECT_TRUE(deletePath(SString(tree.path("moved")), run.services, ours));
}

TEST_F(DeleteFullDirTest, OnlyTheExpectedTreeGoes) {
  const std::string top = tree.dir("top");
  const auto ours = identityOf(AT_FDCWD, top.c_str());
  tree.file("elsewhere/precious");
  fs::rename(top, tree.path("moved"));
  const auto deleteIt = [&] {
    EXPECT_FALSE(DeleteFullDir(run.services, ours).navigate(SString(top)));
    EXPECT_EQ(run.log.texts(),
              Paths{"Could not delete " + top + " :  something else has taken its place"});
    run.log.clear();
  };
  tree.link("top", tree.path("elsewhere"));
  deleteIt();
  fs::remove(top);
  tree.file("top/precious");
  deleteIt();
  EXPECT_EQ(tree.list(),
            (Paths{"elsewhere", "elsewhere/precious", "moved", "top", "top/precious"}));
  fs::remove_all(top);
  deleteNothing(top, ours);
}

// An inode number is given out again as soon as its file is gone.
TEST_F(DeleteFullDirTest, ANewTreeWithTheOldNumberStays) {
  const std::string top = tree.dir("top");
  const auto ours = identityOf(AT_FDCWD, top.c_str());
  ASSERT_TRUE(ours.has_value());
  if (ours->birth == 0) GTEST_SKIP() << "the file system does not know when a file was made";
  do {  // until the file system's clock, which is coarse, has moved on
    fs::remove(top);
    fs::create_directory(top);
  } while (identityOf(AT_FDCWD, top.c_str())->birth == ours->birth);
  tree.file("top/precious");
  DeleteFullDir(run.services, ours).navigate(SString(top));
  EXPECT_EQ(tree.list("top"), Paths{"precious"});
}

/// What sandboxes do that are older than the call.
void refuseStatx() {
  sock_filter rules[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_statx, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program = {static_cast<unsigned short>(std::size(rules)), rules};
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

TEST_F(DeleteFullDirTest, ATreeGoesWhereTheSystemTellsNoBirth) {
  const std::string top = tree.dir("top");
  const auto ours = identityOf(AT_FDCWD, top.c_str());
  tree.file("top/a/file");
  EXPECT_EXIT(
      {
        refuseStatx();
        DeleteFullDir(run.services, ours).navigate(SString(top));
        ::_exit(run.log.lines().empty() ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
  EXPECT_FALSE(fs::exists(top));
}

// While a file is deleted, somebody exchanges the directories above it for a link to others.
TEST_F(DeleteFullDirTest, NothingCanBeSwappedInMeanwhile) {
  tree.file("top/sub/deep/file");
  tree.file("elsewhere/deep/file");
  tree.file("elsewhere/precious");
  stubborn.beforeEach = [&](const std::string& name) {
    if (name != "file" || fs::exists(tree.path("moved"))) return;
    fs::rename(tree.path("top"), tree.path("moved"));
    fs::create_directory(tree.path("top"));
    fs::create_directory_symlink(tree.path("elsewhere"), tree.path("top/sub"));
  };
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_EQ(tree.list("elsewhere"), (Paths{"deep", "deep/file", "precious"}));
  EXPECT_EQ(tree.list("top"), Paths{"sub"});
  EXPECT_TRUE(tree.list("moved").empty());
}

// Trees deeper than any path can tell.

TEST_F(DeleteFullDirTest, ATreeDeeperThanTheLongestPathGoes) {
  constexpr int kDepth = 100;  // of 200 bytes each, five times what a path can hold
  const std::string name(200, 'd');
  makeDeep(name, kDepth);
  const std::size_t before = openDescriptors();
  EXPECT_FALSE(deleteTree("top"));
  EXPECT_TRUE(tree.list().empty());
  EXPECT_TRUE(run.log.lines().empty());
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(DeleteFullDirTest, ADeepTreeGoesWithFewDescriptors) {
  makeDeep("d", 200);
  rlimit before = {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit few = {openDescriptors() + 80, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  EXPECT_FALSE(deleteTree("top"));
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_TRUE(tree.list().empty());
}

// What its owner has closed.

class ClosedDirectories : public DeleteFullDirTest, public testing::WithParamInterface<int> {};

TEST_P(ClosedDirectories, AreOpenedAndGo) {
  tree.file("top/closed/file");
  tree.file("top/closed/sub/file");
  fs::permissions(tree.path("top/closed/sub"), fs::perms(GetParam()));
  fs::permissions(tree.path("top/closed"), fs::perms(GetParam()));
  fs::permissions(tree.path("top"), fs::perms(GetParam()));
  giveAway(tree.root());
  {
    const OrdinaryUser user;
    EXPECT_FALSE(deleteTree("top"));
  }
  EXPECT_TRUE(tree.list().empty());
  EXPECT_TRUE(run.log.lines().empty());
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, ClosedDirectories,
                         testing::Values(0500, 0400, 0300, 0200, 0100, 0000));

// What belongs to somebody else.

TEST_F(DeleteFullDirTest, WhatSomebodyElseClosedStays) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be two users";
  tree.file("top/closed/file");
  tree.file("top/open/file");
  giveAway(tree.root());
  ASSERT_EQ(::chown(tree.path("top/closed").c_str(), 0, 0), 0);
  {
    const OrdinaryUser user;
    EXPECT_FALSE(deleteTree("top"));
  }
  EXPECT_EQ(tree.list("top"), (Paths{"closed", "closed/file"}));
  expectWarnings({warning("top/closed/file", EACCES), warning("top/closed", ENOTEMPTY)});
}

}  // namespace
}  // namespace vessant::test
