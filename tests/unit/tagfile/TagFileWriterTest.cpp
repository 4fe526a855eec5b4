// The written form of a tag file.

#include <csignal>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "TagFileFixture.h"

namespace vessant::test {
namespace {

struct WrittenValue {
  const char* name;
  const char* value;
  const char* written;
};

const WrittenValue kWrittenValues[] = {
    {"Plain", "blue sky", "blue sky"},
    {"Empty", "", "\"\""},
    {"BlankInFront", " a", "\" a\""},
    {"BlankBehind", "a ", "\"a \""},
    {"TabInFront", "\ta", "\"\ta\""},
    {"OnlyABlank", " ", "\" \""},
    {"QuoteInside", "a\"b", "\"a\"\"b\""},
    {"OnlyAQuote", "\"", "\"\"\"\""},
    {"QuotesAround", "\"a b\"", "\"\"\"a b\"\"\""},
    {"QuoteAndBlank", " \"", "\" \"\"\""},
    {"Colon", "a: b:", "a: b:"},
    {"Backslash", "C:\\x\\", "C:\\x\\"},
    {"VerticalTab", "\va\f", "\va\f"},
    {"BytesBeyondAscii", "\xE4\xFF", "\xE4\xFF"},
};

void PrintTo(const WrittenValue& value, std::ostream* out) {
  *out << value.value;
}

class TagFileWrittenValue : public TagFileFixture,
                            public ::testing::WithParamInterface<WrittenValue> {
 protected:
  void expectReadBack() { EXPECT_EQ(tagsIn(saved()), tagsOf(file)); }
};

TEST_P(TagFileWrittenValue, StandsOnTheLineOfItsName) {
  file.setValue("TAG", GetParam().value);
  EXPECT_EQ(saved(), std::string("TAG:  ") + GetParam().written + "\n");
  expectReadBack();
}

TEST_P(TagFileWrittenValue, StandsOnALineOfABlock) {
  file.addValue("TAG", "first");
  file.addValue("TAG", GetParam().value);
  EXPECT_EQ(saved(), std::string("TAG:\n  first\n  ") + GetParam().written + "\n/:\n");
  expectReadBack();
}

INSTANTIATE_TEST_SUITE_P(TagFile, TagFileWrittenValue, ::testing::ValuesIn(kWrittenValues),
                         [](const auto& value) { return std::string(value.param.name); });

class TagFileWriter : public TagFileFixture {};

TEST_F(TagFileWriter, WritesTagsInTheirOrder) {
  file.setValue("B", "1");
  file.setValue("A", "2");
  file.addValue("B", "3");
  EXPECT_EQ(saved(), "B:\n  1\n  3\n/:\nA:  2\n");
}

TEST_F(TagFileWriter, WritesAnEmptyFileForNoTags) {
  EXPECT_EQ(saved(), "");
}

// Plain, it would end the block that it stands in.
TEST_F(TagFileWriter, QuotesTheBlockEndAsAValueOfABlock) {
  file.addValue("L", "a");
  file.addValue("L", "/:");
  file.addValue("L", "b");
  EXPECT_EQ(saved(), "L:\n  a\n  \"/:\"\n  b\n/:\n");
  EXPECT_EQ(tagsIn(saved()), tagsOf(file));
}

TEST_F(TagFileWriter, WritesTheBlockEndPlainAsASingleValue) {
  file.setValue("A", "/:");
  EXPECT_EQ(saved(), "A:  /:\n");
  EXPECT_EQ(tagsIn(saved()), tagsOf(file));
}

TEST_F(TagFileWriter, KeepsTagsAndValuesThroughASecondReading) {
  read("/:\na\nb\n/:\n: \"\"\nMY TAG:\n\" x \"\n\"a\"\"b\"\n/:\nZ: last");
  EXPECT_EQ(tagsIn(saved()), tagsOf(file));
}

TEST_F(TagFileWriter, ReplacesAnOlderFile) {
  const std::string path = tree.file("old.tag", std::string(10'000, 'x'));
  file.setValue("A", "1");
  file.save(SString(path));
  EXPECT_EQ(readFile(path), "A:  1\n");
}

TEST_F(TagFileWriter, WritesAFileOfManyTags) {
  constexpr int kCount = 50'000;
  std::string text;
  for (int i = 0; i < kCount; ++i) text += "TAG_" + std::to_string(i) + ":  value\n";
  read(text);
  EXPECT_EQ(saved(), text);
}

TEST_F(TagFileWriter, KeepsQuietWhenTheFileCannotBeCreated) {
  file.setValue("A", "1");
  file.save(SString(tree.path("missing/file.tag")));
  file.save(SString(tree.root()));
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(TagFileWriter, KeepsQuietWhenTheDirectoryIsReadOnly) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  ASSERT_EQ(::chmod(tree.dir("locked").c_str(), 0500), 0);
  file.setValue("A", "1");
  file.save(SString(tree.path("locked/file.tag")));
  EXPECT_TRUE(tree.list("locked").empty());
}

/// Lets files grow to a few bytes while it lives.
class FullDisk {
 public:
  FullDisk() {
    ::getrlimit(RLIMIT_FSIZE, &previous_);
    rlimit few = previous_;
    few.rlim_cur = 4;
    ::setrlimit(RLIMIT_FSIZE, &few);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &previous_);
    ::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit previous_ = {};
  sighandler_t handler_ = ::signal(SIGXFSZ, SIG_IGN);
};

// A cut tag file could pass for a whole one.
TEST_F(TagFileWriter, LeavesNoCutFileOnAFullDisk) {
  file.setValue("A", "a long value");
  {
    const FullDisk full;
    file.save(SString(tree.path("full.tag")));
  }
  EXPECT_TRUE(tree.list().empty());
}

TEST_F(TagFileWriter, EmptiesACutFileBehindALinkAndLeavesTheLink) {
  const std::string path = tree.file("file.tag", "A: old\n");
  tree.link("link.tag", path);
  file.setValue("A", "a long value");
  {
    const FullDisk full;
    file.save(SString(tree.path("link.tag")));
  }
  EXPECT_EQ(tree.list().size(), 2U);
  EXPECT_EQ(readFile(path), "");
}

TEST_F(TagFileWriter, LeavesADeviceThatTakesNothingWhereItIs) {
  const std::string device = tree.path("full");
  // The numbers of /dev/full.
  if (::mknod(device.c_str(), S_IFCHR | 0600, makedev(1, 7)) != 0) GTEST_SKIP() << "no devices";
  file.setValue("A", "1");
  file.save(SString(device));
  EXPECT_EQ(tree.list(), std::vector<std::string>{"full"});
}

TEST_F(TagFileWriter, LeavesALinkToADeviceWhereItIs) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
  tree.link("full.tag", "/dev/full");
  file.setValue("A", "1");
  file.save(SString(tree.path("full.tag")));
  EXPECT_EQ(tree.list(), std::vector<std::string>{"full.tag"});
}

}  // namespace
}  // namespace vessant::test
