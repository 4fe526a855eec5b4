// Whatever way the bytes take into a new file, they come in order and whole.

#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "packer/BlockWriter.h"
#include "packer/Text.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

std::string numbers(std::size_t size) {
  std::string text;
  for (int i = 0; text.size() < size; ++i) text += std::to_string(i) + ' ';
  text.resize(size);
  return text;
}

class BlockWriterTest : public testing::Test {
 protected:
  BlockWriter writer(int flags = O_WRONLY | O_CREAT | O_TRUNC) {
    return {UniqueFd(::open(tree.path("out").c_str(), flags | O_CLOEXEC, 0644)), "out"};
  }
  [[nodiscard]] std::string written() const { return readFile(tree.path("out")); }

  TempTree tree;
  const std::string bytes = numbers(3'000'000);
  const ByteSource source{tree.file("source", bytes)};
};

// From within a page, from its border and from around the sizes at which the ways part; to the
// start of the file, to a page's border and to anywhere.
TEST_F(BlockWriterTest, AppendsStretchesOfEverySizeFromAndToEveryPlace) {
  for (const std::uint64_t to : {0U, 1U, 4096U, 65536U, 131071U}) {
    for (const std::uint64_t from : {0U, 1U, 4096U, 5000U}) {
      for (const std::uint64_t size : {0U, 1U, 65535U, 65536U, 131072U, 131073U, 2'990'000U}) {
        std::uint64_t told = 0;
        BlockWriter file = writer();
        file.padTo(to);
        file.append(source.part(from, size, "part"), [&told](std::uint64_t n) { told += n; });
        file.write("end");
        EXPECT_EQ(file.position(), to + size + 3);
        file.flush();
        EXPECT_EQ(told, size);
        ASSERT_EQ(written(), std::string(to, '\0') + bytes.substr(from, size) + "end")
            << to << ' ' << from << ' ' << size;
      }
    }
  }
}

TEST_F(BlockWriterTest, WritesSmallAndLargeTextsInOrder) {
  std::string all;
  BlockWriter file = writer();
  for (const std::size_t size : {1U, 131071U, 1U, 131072U, 300000U, 5U}) {
    file.write(bytes.substr(0, size));
    all += bytes.substr(0, size);
  }
  file.flush();
  EXPECT_EQ(written(), all);
}

TEST_F(BlockWriterTest, GoesOnWhereTheFileStands) {
  tree.file("out", "head");
  for (const int flags : {O_WRONLY, O_WRONLY | O_APPEND}) {
    tree.file("out", "head");
    UniqueFd fd(::open(tree.path("out").c_str(), flags | O_CLOEXEC));
    ::lseek(fd.get(), 4, SEEK_SET);
    BlockWriter file(std::move(fd), "out");
    file.append(source);
    file.flush();
    ASSERT_EQ(written(), "head" + bytes) << flags;
  }
}

TEST_F(BlockWriterTest, TakesNoMoreRoomThanTheBytesNeed) {
  BlockWriter file = writer();
  file.append(source);
  file.flush();
  struct stat status = {};
  ASSERT_EQ(::stat(tree.path("out").c_str(), &status), 0);
  constexpr blkcnt_t kUnit = 512;
  EXPECT_LE(status.st_blocks, static_cast<blkcnt_t>(bytes.size()) / kUnit + 64);
}

TEST_F(BlockWriterTest, TellsASourceThatEndsEarly) {
  tree.file("source", bytes.substr(0, 70000));
  BlockWriter file = writer();
  try {
    file.append(source);
    FAIL() << "no error";
  } catch (const LauncherException& error) {
    EXPECT_EQ(str(error.message()), tree.path("source") + ": ends early");
  }
}

}  // namespace
}  // namespace vessant::test
