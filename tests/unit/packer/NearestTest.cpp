// Which known word a wrong one may have been meant for.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/Text.h"

namespace vessant::test {
namespace {

const std::vector<std::string> kWords = {"pack", "check", "list", "--launcher", "JVM_PROPERTIES"};

TEST(Nearest, CountsChangesAdditionsOmissionsAndSwaps) {
  EXPECT_EQ(editDistance("", ""), 0);
  EXPECT_EQ(editDistance("abc", ""), 3);
  EXPECT_EQ(editDistance("pack", "park"), 1);
  EXPECT_EQ(editDistance("pack", "packs"), 1);
  EXPECT_EQ(editDistance("pack", "pck"), 1);
  EXPECT_EQ(editDistance("pack", "pakc"), 1);
  EXPECT_EQ(editDistance("kitten", "sitting"), 3);
}

TEST(Nearest, TakesSmallAndCapitalLettersForEqual) {
  EXPECT_EQ(editDistance("pack", "PACK"), 0);
  EXPECT_EQ(nearest("jvm_properties", kWords), "JVM_PROPERTIES");
}

TEST(Nearest, FindsTheWordThatWasMeant) {
  EXPECT_EQ(nearest("pakc", kWords), "pack");
  EXPECT_EQ(nearest("chekc", kWords), "check");
  EXPECT_EQ(nearest("--laucnher", kWords), "--launcher");
  EXPECT_EQ(nearest("JVM_PROPERTY", kWords), "JVM_PROPERTIES");
  EXPECT_EQ(nearest("--lau", kWords), "--launcher");
}

TEST(Nearest, TakesTheFirstOfEquals) {
  EXPECT_EQ(nearest("S3", {"S1", "S2"}), "S1");
}

TEST(Nearest, SuggestsNothingFarFetched) {
  EXPECT_EQ(nearest("frobnicate", kWords), std::nullopt);
  EXPECT_EQ(nearest("", kWords), std::nullopt);
  EXPECT_EQ(nearest("li", {"unrelated"}), std::nullopt);
  EXPECT_EQ(nearest(std::string(100000, 'x'), {std::string(100000, 'x')}), std::nullopt);
}

TEST(Nearest, MakesAHalfSentence) {
  EXPECT_EQ(suggestion("pakc", kWords), "; did you mean \"pack\"?");
  EXPECT_EQ(suggestion("frobnicate", kWords), "");
}

}  // namespace
}  // namespace vessant::test
