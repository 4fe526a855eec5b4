// SHA-256 sums of installers, and what is said of sums that do not fit.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/Sums.h"
#include "support/LauncherFileBuilder.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string kEmptySum = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
const std::string kAbcSum = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

std::vector<std::string> linesOf(const Findings& findings) {
  std::vector<std::string> lines;
  for (const Finding& finding : findings.sorted()) lines.push_back(lineOf(finding));
  return lines;
}

class SumsTest : public testing::Test {
 protected:
  std::vector<SumLine> sums() {
    LauncherFileBuilder builder;
    builder.stub("launcher").add(3, 1, "abc", "abc").add(3, 2, "empty", "");
    const Installer installer(builder.write(tree.path("setup")));
    OnePass pass(installer);
    return sumsOf(installer, pass);
  }

  TempTree tree;
  Findings findings;
};

TEST_F(SumsTest, AreThoseOfTheStandard) {
  EXPECT_EQ(Sha256().finish(), kEmptySum);
  Sha256 sum;
  sum.add("a");
  sum.add("bc");
  EXPECT_EQ(sum.finish(), kAbcSum);
}

TEST_F(SumsTest, ComeForTheWholeFileAndThenForEach) {
  const std::vector<SumLine> all = sums();
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0].name, "setup");
  Sha256 whole;
  whole.add(readFile(tree.path("setup")));
  EXPECT_EQ(all[0].sum, whole.finish());
  EXPECT_EQ(lineOf(all[1]), kAbcSum + "  abc");
  EXPECT_EQ(lineOf(all[2]), kEmptySum + "  empty");
}

TEST_F(SumsTest, WhatWasReadAlreadyIsNotReadAgain) {
  LauncherFileBuilder builder;
  builder.stub(std::string(300000, 'l')).add(3, 1, "b", std::string(600000, 'b'));
  const Installer installer(builder.add(3, 2, "c", "c").write(tree.path("setup")));
  OnePass plain(installer);
  OnePass offered(installer);
  const std::string bytes = readFile(tree.path("setup"));
  offered.offer(bytes.size() - 100, std::string_view(bytes).substr(bytes.size() - 100));
  offered.offer(0, std::string_view(bytes).substr(0, 290000));
  offered.offer(100, std::string_view(bytes).substr(100, 1000));
  offered.offer(280000, std::string_view(bytes).substr(280000, 100000));
  EXPECT_EQ(offered.wholeSum(), plain.wholeSum());
  EXPECT_EQ(offered.fileSums(), plain.fileSums());
}

TEST_F(SumsTest, AreReadAsSha256sumWritesThem) {
  const auto read = readSums(
      "f", kAbcSum + "  a b\n\n" + kEmptySum + " *b\r\n\\" + kAbcSum + "  a\\\\b\\nc\n", findings);
  EXPECT_TRUE(findings.isEmpty());
  ASSERT_EQ(read.size(), 3U);
  EXPECT_EQ(read[0].name, "a b");
  EXPECT_EQ(read[1].name, "b");
  EXPECT_EQ(read[1].line, 3);
  EXPECT_EQ(read[2].name, "a\\b\nc");
  EXPECT_EQ(lineOf(read[2]), "\\" + kAbcSum + "  a\\\\b\\nc");
}

TEST_F(SumsTest, OtherLinesAreFindings) {
  static_cast<void>(readSums("f", "hello\n" + kAbcSum + " x\n" + kAbcSum + "\n", findings));
  const auto bad = [](int line) {
    return "f:" + std::to_string(line) +
           ": error: expected 64 hexadecimal digits, two blanks, a name [bad-sum]";
  };
  EXPECT_THAT(linesOf(findings), ElementsAre("f: error: there are no sums in this file [bad-sum]",
                                             bad(1), bad(2), bad(3)));
}

TEST_F(SumsTest, DifferencesAreToldOneByOne) {
  const std::vector<SumLine> got = sums();
  const Installer installer(tree.path("setup"));
  std::vector<SumLine> wanted = {
      {kEmptySum, "other name", 1}, {kEmptySum, "abc", 2}, {kAbcSum, "more", 3}};
  compareSums(installer, got, "f", wanted, findings);
  EXPECT_THAT(
      linesOf(findings),
      ElementsAre("f: error: \"empty\" has no sum here [wrong-sum]",
                  HasSubstr("f:1: error: " + tree.path("setup") + " as a whole has another"),
                  "f:2: error: \"abc\" has another sum [wrong-sum]",
                  "f:3: error: \"more\" is not in the installer [wrong-sum]"));
  wanted = got;
  wanted[0].name = "renamed since";
  Findings none;
  compareSums(installer, got, "f", wanted, none);
  EXPECT_TRUE(none.isEmpty());
}

}  // namespace
}  // namespace vessant::test
