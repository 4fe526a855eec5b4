// Output files: nothing under their name, or anywhere, until they are whole.

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "packer/LauncherFileWriter.h"
#include "packer/OutputFile.h"
#include "packer/PendingWork.h"
#include "packer/Text.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <class Action>
std::string errorOf(const Action& action) {
  try {
    action();
  } catch (const LauncherException& error) {
    return str(error.message());
  }
  return "no error";
}

class OutputFileTest : public testing::Test {
 protected:
  TempTree tree;
};

TEST_F(OutputFileTest, TakesItsNameWhenItIsPublished) {
  OutputFile file(tree.path("out"));
  file.write("abc");
  EXPECT_FALSE(std::filesystem::exists(tree.path("out")));
  file.padTo(5);
  EXPECT_EQ(file.position(), 5U);
  file.publish();
  EXPECT_EQ(readFile(tree.path("out")), std::string("abc\0\0", 5));
  EXPECT_THAT(tree.list(), ElementsAre("out"));
}

TEST_F(OutputFileTest, VanishesWhenItIsNot) {
  { OutputFile(tree.path("out")).write("abc"); }
  EXPECT_THAT(tree.list(), IsEmpty());
}

TEST_F(OutputFileTest, GetsThePermissionsOfANewFile) {
  const mode_t mask = ::umask(027);
  OutputFile(tree.path("data")).publish();
  OutputFile(tree.path("program"), OutputFile::kProgram).publish();
  ::umask(mask);
  struct stat status = {};
  ASSERT_EQ(::stat(tree.path("data").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  ASSERT_EQ(::stat(tree.path("program").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0750U);
}

TEST_F(OutputFileTest, AppendsALargeSourceInOrder) {
  std::string bytes;
  for (int i = 0; bytes.size() < 600000; ++i) bytes += std::to_string(i);
  tree.file("source", bytes);
  OutputFile file(tree.path("out"));
  std::uint64_t told = 0;
  file.write("<");
  file.append(ByteSource(tree.path("source")), [&told](std::uint64_t count) { told += count; });
  file.write(">");
  file.publish();
  EXPECT_EQ(readFile(tree.path("out")), "<" + bytes + ">");
  EXPECT_EQ(told, bytes.size());
}

TEST_F(OutputFileTest, ASourceThatEndsEarlyOrCannotBeReadLeavesNothing) {
  const ByteSource source(tree.file("source", "abcdef"));
  std::filesystem::resize_file(tree.path("source"), 3);
  EXPECT_EQ(errorOf([&] { OutputFile(tree.path("out")).append(source); }),
            tree.path("source") + ": ends early");
  // The first page of a process's memory is there and cannot be read.
  const ByteSource memory = ByteSource("/proc/self/mem").part(0, 10, "memory");
  EXPECT_EQ(errorOf([&] { OutputFile(tree.path("out")).append(memory); }),
            "memory: Input/output error");
  EXPECT_THAT(tree.list(), ElementsAre("source"));
}

TEST_F(OutputFileTest, NamesTheFileThatCannotBeMade) {
  EXPECT_EQ(errorOf([&] { OutputFile(tree.path("none/out")); }),
            tree.path("none/out") + ": No such file or directory");
  EXPECT_EQ(errorOf([&] { OutputFile(tree.dir("dir")); }), tree.path("dir") + ": Is a directory");
}

TEST_F(OutputFileTest, WritesADeviceStraight) {
  OutputFile("/dev/null").publish();
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
  EXPECT_EQ(errorOf([] {
              OutputFile file("/dev/full");
              file.write("x");
              file.publish();
            }),
            "/dev/full: No space left on device");
}

TEST_F(OutputFileTest, AnInterruptRemovesIt) {
  const auto interrupted = [this] {
    const PendingWork pendingWork;
    OutputFile file(tree.path("out"));
    file.write(std::string(100000, 'x'));
    ::raise(SIGTERM);
  };
  EXPECT_EXIT(interrupted(), testing::KilledBySignal(SIGTERM), "");
  EXPECT_THAT(tree.list(), IsEmpty());
}

TEST_F(OutputFileTest, AnIgnoredSignalStaysIgnored) {
  ::signal(SIGHUP, SIG_IGN);
  {
    const PendingWork pendingWork;
    ::raise(SIGHUP);
  }
  EXPECT_EQ(::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST_F(OutputFileTest, AFileThatChangesWhileItIsPackedIsTold) {
  tree.file("stub", "stub");
  tree.file("data", "data");
  tree.file("m", "OUTPUT: out\nLAUNCHER: stub\nFILES: archive data\n");
  Findings findings;
  const Manifest manifest = readManifest(tree.path("m"), {}, findings);
  const LauncherFileWriter writer(manifest, findings);
  tree.file("data", "other");
  const Session session{std::cout, std::cerr};
  EXPECT_EQ(errorOf([&] { writer.write(session); }),
            tree.path("data") + ": was changed while it was being packed");
  EXPECT_THAT(tree.list(), ElementsAre("data", "m", "stub"));
}

}  // namespace
}  // namespace vessant::test
