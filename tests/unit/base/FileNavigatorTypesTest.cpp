// How a walk takes entries of every type, told by the directory or asked for.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/FakeRun.h"
#include "support/TempTree.h"
#include "unit/base/EntryHook.h"
#include "unit/base/RecordingWalk.h"

namespace vessant::test {
namespace {

using Paths = std::vector<std::string>;

class FileNavigatorTypesTest : public testing::Test {
 protected:
  void makeNode(const std::string& name, mode_t type) {
    ASSERT_EQ(::mknod(tree.path(name).c_str(), type | 0600, 0), 0);
  }
  /// One entry of each type that anyone may make.
  void makeOneOfEach() {
    tree.file("file");
    tree.dir("dir");
    tree.link("link", tree.path("dir"));
    makeNode("fifo", S_IFIFO);
    makeNode("socket", S_IFSOCK);
  }
  [[nodiscard]] Paths sortedVisits() const {
    Paths visits = walk.visited;
    std::sort(visits.begin(), visits.end());
    return visits;
  }

  TempTree tree;
  FakeRun run;
  RecordingWalk walk{run, tree};
};

TEST_F(FileNavigatorTypesTest, AFifoIsAFileAndIsNotOpened) {
  makeNode("fifo", S_IFIFO);
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{"fifo"});
}

TEST_F(FileNavigatorTypesTest, ASocketIsTakenForADirectoryThatCannotBeOpened) {
  makeNode("socket", S_IFSOCK);
  EXPECT_FALSE(walk.walk());
  EXPECT_TRUE(walk.files.empty());
  EXPECT_EQ(walk.visited, (Paths{".", "socket"}));
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(FileNavigatorTypesTest, DevicesDifferInTheDirectoryBit) {
  if (::mknod(tree.path("char").c_str(), S_IFCHR | 0600, 0) != 0 ||
      ::mknod(tree.path("block").c_str(), S_IFBLK | 0600, 0) != 0) {
    GTEST_SKIP() << "only root may make devices, and not everywhere";
  }
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{"char"});
  EXPECT_EQ(walk.visited, (Paths{".", "block"}));
}

TEST_F(FileNavigatorTypesTest, EachTypeIsTakenAlikeWhetherToldOrAskedFor) {
  makeOneOfEach();
  const Paths files = {"fifo", "file", "link"};
  const Paths directories = {".", "dir", "socket"};
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.sortedFiles(), files);
  EXPECT_EQ(sortedVisits(), directories);

  const EntryHook untold([](dirent64& entry) { entry.d_type = DT_UNKNOWN; });
  walk.files.clear();
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.sortedFiles(), files);
  EXPECT_EQ(sortedVisits(), directories);
}

struct TypeCase {
  const char* name;
  unsigned char type;
  bool isDirectory;
};

TEST_F(FileNavigatorTypesTest, TheTypeThatTheDirectoryTellsDecides) {
  const TypeCase table[] = {{"fifo", DT_FIFO, false},    {"character device", DT_CHR, false},
                            {"directory", DT_DIR, true}, {"block device", DT_BLK, true},
                            {"file", DT_REG, false},     {"link", DT_LNK, false},
                            {"socket", DT_SOCK, true},   {"unheard of", DT_WHT, true}};
  tree.file("entry");
  for (const TypeCase& typeCase : table) {
    const EntryHook told([&](dirent64& entry) {
      if (std::strcmp(entry.d_name, "entry") == 0) entry.d_type = typeCase.type;
    });
    walk.files.clear();
    EXPECT_FALSE(walk.walk());
    EXPECT_EQ(walk.files, typeCase.isDirectory ? Paths{} : Paths{"entry"}) << typeCase.name;
    EXPECT_EQ(walk.visited, typeCase.isDirectory ? (Paths{".", "entry"}) : Paths{"."})
        << typeCase.name;
  }
}

TEST_F(FileNavigatorTypesTest, AnEntryThatIsGoneWhenAskedForIsAFile) {
  tree.dir("gone");
  const EntryHook vanishing([&](dirent64& entry) {
    entry.d_type = DT_UNKNOWN;
    if (std::strcmp(entry.d_name, "gone") == 0) ::rmdir(tree.path("gone").c_str());
  });
  EXPECT_FALSE(walk.walk());
  EXPECT_EQ(walk.files, Paths{"gone"});
  EXPECT_EQ(walk.visited, Paths{"."});
}

}  // namespace
}  // namespace vessant::test
