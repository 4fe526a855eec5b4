#include <filesystem>
#include <limits>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/linux/LinuxPlatformImpl.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"
#include "unit/linux/ForkedRun.h"

namespace vessant::test {
namespace {

struct Case {
  const char* name;
  std::uint32_t bytes;
  std::uint32_t files;
  DiskSpace space;
  bool fits;
};

void PrintTo(const Case& item, std::ostream* out) {
  *out << item.name;
}

std::string nameOf(const testing::TestParamInfo<Case>& item) {
  return item.param.name;
}

constexpr std::uint32_t kNegative = 0xFFFFFFFFU;  // -1 as the check reads it
constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

class FreeSpace : public testing::TestWithParam<Case> {};

TEST_P(FreeSpace, DecidesByWholeBlocks) {
  const Case& item = GetParam();
  EXPECT_EQ(fitsOnDisk(item.bytes, item.files, item.space), item.fits);
}

INSTANTIATE_TEST_SUITE_P(
    OneFile, FreeSpace,
    testing::Values(Case{"WholeBlocksThatFillTheDisk", 8192, 1, {4096, 2}, true},
                    Case{"WholeBlocksOneTooMany", 8192, 1, {4096, 1}, false},
                    Case{"PartOfABlockNeedsAWholeOne", 8193, 1, {4096, 2}, false},
                    Case{"PartOfABlockThatFits", 8193, 1, {4096, 3}, true},
                    Case{"OneByteOnAFullDisk", 1, 1, {4096, 0}, false},
                    Case{"NothingOnAFullDisk", 0, 1, {4096, 0}, true}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    SeveralFiles, FreeSpace,
    testing::Values(Case{"EachMayNeedABlockMore", 8192, 3, {4096, 5}, true},
                    Case{"OneBlockTooFew", 8192, 3, {4096, 4}, false},
                    Case{"PartOfABlockCountsWithTheFiles", 8193, 2, {4096, 4}, true},
                    Case{"EmptyFilesNeedBlocksToo", 0, 2, {4096, 1}, false}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    NoFiles, FreeSpace,
    testing::Values(Case{"WholeBlocksOnly", 8193, 0, {4096, 2}, true},
                    Case{"WholeBlocksTooMany", 8192, 0, {4096, 1}, false},
                    Case{"NegativeCountAddsNothing", 8192, kNegative, {4096, 2}, true}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    SignedBytes, FreeSpace,
    testing::Values(Case{"JustBelowTwoGiBIsChecked", 0x7FFFFFFFU, 1, {4096, 524287}, false},
                    Case{"JustBelowTwoGiBFits", 0x7FFFFFFFU, 1, {4096, 524288}, true},
                    Case{"TwoGiBAlwaysPass", 0x80000000U, 1, {4096, 0}, true},
                    Case{"TwoGiBOfSeveralFilesPass", 0x80000000U, 100, {4096, 0}, true},
                    Case{"MoreFilesThanNegativeBlocks", 0x80000000U, 524289, {4096, 0}, false},
                    Case{"FourGiBLessOnePassesInPartBlocks", kNegative, 0, {4096, 0}, true},
                    Case{"ItsPartBlockIsTakenUnsigned", kNegative, 1, {4096, 0}, false}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OddNumbers, FreeSpace,
    testing::Values(Case{"NoBlockSizeCountsBytes", 10, 1, {0, 10}, true},
                    Case{"NoBlockSizeCountsBytesTooMany", 11, 1, {0, 10}, false},
                    Case{"HugeDisk", 0x7FFFFFFFU, 0x7FFFFFFFU, {kHuge, kHuge}, true},
                    Case{"BlocksLargerThanTheFile", 5, 1, {1U << 20, 1}, true}),
    nameOf);

SString currentPath() {
  return std::string_view(std::filesystem::current_path().native());
}

bool isSameFileSystem(const DiskSpace& space, const char* path) {
  struct statvfs status = {};
  return ::statvfs(path, &status) == 0 && space.fragmentSize == status.f_frsize;
}

TEST(DiskSpace, AsksTheFileSystemOfAnAbsoluteDirectory) {
  const TempTree tree;
  const DiskSpace space = queryDiskSpace(std::string_view(tree.root()));
  EXPECT_GT(space.fragmentSize, 0U);
  EXPECT_TRUE(isSameFileSystem(space, tree.root().c_str()));
}

TEST(DiskSpace, AsksTheCurrentDirectoryForARelativeOne) {
  EXPECT_NO_THROW(static_cast<void>(queryDiskSpace("no/such/directory")));
  EXPECT_TRUE(isSameFileSystem(queryDiskSpace("no/such/directory"), currentPath().cString()));
}

TEST(DiskSpace, AsksTheCurrentDirectoryForAnEmptyText) {
  EXPECT_TRUE(isSameFileSystem(queryDiskSpace(""), currentPath().cString()));
}

TEST(DiskSpace, FailsWithTheSystemsTextAlone) {
  const TempTree tree;
  try {
    static_cast<void>(queryDiskSpace(std::string_view(tree.path("missing"))));
    FAIL() << "no exception";
  } catch (const LauncherException& error) {
    EXPECT_EQ(error.message(), "No such file or directory");
  }
}

TEST(DiskSpace, CannotAskACurrentDirectoryWithALongPath) {
  TempTree tree;
  const std::string deep = tree.dir(std::string(200, 'a') + "/" + std::string(200, 'b'));
  const ForkedResult result = runForked([&] {
    std::filesystem::current_path(deep);
    return LinuxPlatformImpl().hasFreeSpace("relative", 0, 0) ? 0 : 1;
  });
  EXPECT_EQ(result.status, kThrown);
  EXPECT_EQ(result.err, "No such file or directory");
}

TEST(DiskSpace, ThePlatformChecksAFileSystemWithoutRoom) {
  struct statvfs status = {};
  if (::statvfs("/proc", &status) != 0 || status.f_bavail != 0) {
    GTEST_SKIP() << "/proc is no file system without room";
  }
  const LinuxPlatformImpl platform;
  EXPECT_FALSE(platform.hasFreeSpace("/proc", 1, 1));
  EXPECT_TRUE(platform.hasFreeSpace("/proc", 0, 1));
  EXPECT_TRUE(platform.hasFreeSpace("/proc", 0x80000000U, 5));
}

}  // namespace
}  // namespace vessant::test
