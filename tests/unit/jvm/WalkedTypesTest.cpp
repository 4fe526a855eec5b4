// What the walk takes for a directory, by the type that the directory tells and by asking for it:
// both must decide as bit 0x4000 of the mode does.
#include <algorithm>

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "launcher/jvm/FindFiles.h"
#include "unit/jvm/JvmFixture.h"

namespace {

bool typesAreHidden = false;
int questions = 0;

}  // namespace

// The linker puts these in front of the library's.
extern "C" {

ssize_t __real_getdents64(int fd, void* buffer, std::size_t size);
ssize_t __wrap_getdents64(int fd, void* buffer, std::size_t size);
int __real_fstatat(int fd, const char* path, struct stat* status, int flags);
int __wrap_fstatat(int fd, const char* path, struct stat* status, int flags);

ssize_t __wrap_getdents64(int fd, void* buffer, std::size_t size) {
  const ssize_t filled = __real_getdents64(fd, buffer, size);
  if (!typesAreHidden) return filled;
  for (ssize_t position = 0; position < filled;) {
    auto* entry = reinterpret_cast<dirent64*>(static_cast<char*>(buffer) + position);
    entry->d_type = DT_UNKNOWN;
    position += entry->d_reclen;
  }
  return filled;
}

int __wrap_fstatat(int fd, const char* path, struct stat* status, int flags) {
  ++questions;
  return __real_fstatat(fd, path, status, flags);
}

}  // extern "C"

namespace vessant::test {
namespace {

constexpr mode_t kDirectoryBit = 0x4000;
using Paths = std::vector<std::string>;

class Recorder : public FileFindListener {
 public:
  bool fileFound(const SString& path) override {
    files.push_back(str(path));
    return false;
  }
  Paths files;
};

/// Makes every kind of entry, each by the name that is looked for.
class WalkedTypes : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    tree.file("file/bin/java");
    tree.dir("directory/bin/java/bin");
    tree.file("nested/bin/java/bin/java");
    tree.link("linkToFile/bin/java", tree.path("file/bin/java"));
    tree.link("linkToDirectory/bin/java", tree.path("nested"));
    tree.link("linkToNothing/bin/java", "nowhere");
    ASSERT_EQ(::mkfifo(place("pipe").c_str(), 0600), 0);
    ASSERT_EQ(::mknod(place("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    typesAreHidden = GetParam();
    questions = 0;
  }
  void TearDown() override { typesAreHidden = false; }

  std::string place(const std::string& home) { return tree.dir(home + "/bin") + "/java"; }

  Paths walked() {
    StringDeque suffixes;
    suffixes.add("bin/java");
    Recorder recorder;
    FindFiles(run.services, suffixes, recorder, "/tmp").navigate(text(tree.root()));
    std::sort(recorder.files.begin(), recorder.files.end());
    return recorder.files;
  }

  /// The same by the mode of each entry.
  void collect(const std::string& directory, Paths& files) {
    DIR* stream = ::opendir(directory.c_str());
    if (stream == nullptr) return;
    while (const dirent* entry = ::readdir(stream)) {
      const std::string name = entry->d_name;
      if (name == "." || name == "..") continue;
      const std::string path = directory + "/" + name;
      struct stat status = {};
      const bool known = ::lstat(path.c_str(), &status) == 0;
      ++entries;
      if (known && (status.st_mode & kDirectoryBit) != 0) {
        collect(path, files);
      } else if (path.ends_with("/bin/java")) {
        files.push_back(path);
      }
    }
    ::closedir(stream);
  }
  Paths expected() {
    Paths files;
    collect(tree.root(), files);
    std::sort(files.begin(), files.end());
    return files;
  }

  TempTree tree;
  FakeRun run;
  int entries = 0;
};

INSTANTIATE_TEST_SUITE_P(Types, WalkedTypes, testing::Values(false, true),
                         [](const auto& item) { return item.param ? "AskedFor" : "Told"; });

TEST_P(WalkedTypes, DecideByTheDirectoryBit) {
  const Paths files = {tree.path("file/bin/java"),
                       tree.path("linkToDirectory/bin/java"),
                       tree.path("linkToFile/bin/java"),
                       tree.path("linkToNothing/bin/java"),
                       tree.path("nested/bin/java/bin/java"),
                       tree.path("pipe/bin/java")};
  EXPECT_EQ(walked(), files);
  EXPECT_EQ(expected(), files);
}

TEST_P(WalkedTypes, DevicesOfCharactersAreFilesAndOfBlocksAreNot) {
  const dev_t nullDevice = makedev(1, 3);
  if (::mknod(place("characters").c_str(), S_IFCHR | 0600, nullDevice) != 0 ||
      ::mknod(place("blocks").c_str(), S_IFBLK | 0600, makedev(7, 255)) != 0) {
    GTEST_SKIP() << "no devices can be made here";
  }
  const Paths files = walked();
  EXPECT_EQ(std::count(files.begin(), files.end(), tree.path("characters/bin/java")), 1);
  EXPECT_EQ(std::count(files.begin(), files.end(), tree.path("blocks/bin/java")), 0);
  EXPECT_EQ(files, expected());
}

TEST_P(WalkedTypes, AreAskedForOnlyWhenTheDirectoryDoesNotTell) {
  expected();
  walked();
  EXPECT_EQ(questions, GetParam() ? entries : 0);
}

/// Takes the rights of the superuser away while it lives.
class OrdinaryUser {
 public:
  OrdinaryUser() : user_(::geteuid()) {
    if (user_ == 0 && ::seteuid(kSomeUser) != 0) ADD_FAILURE() << "cannot become another user";
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (user_ == 0 && ::seteuid(user_) != 0) ADD_FAILURE() << "cannot become the superuser again";
  }

 private:
  static constexpr uid_t kSomeUser = 65534;
  uid_t user_;
};

TEST_P(WalkedTypes, OfAnUnreadableDirectoryStayUnknown) {
  tree.file("locked/bin/java");
  ASSERT_EQ(::chmod(tree.root().c_str(), 0755), 0);
  ASSERT_EQ(::chmod(tree.path("locked").c_str(), 0), 0);
  const OrdinaryUser user;
  const Paths files = walked();
  EXPECT_EQ(files, expected());
  EXPECT_EQ(std::count(files.begin(), files.end(), tree.path("locked/bin/java")), 0);
}

}  // namespace
}  // namespace vessant::test
