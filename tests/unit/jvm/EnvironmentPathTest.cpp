#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/jvm/HintSearch.h"
#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EnvironmentPath : public testing::Test {
 protected:
  std::vector<std::string> split(const std::string& value) {
    platform.environment["PATH"] = value;
    return splitVariable("PATH");
  }
  std::vector<std::string> splitVariable(const std::string& name) {
    StringDeque list;
    list.add("old");
    splitEnvironmentPath(list, text(name), platform);
    std::vector<std::string> pieces;
    for (const SString& piece : list) pieces.push_back(str(piece));
    return pieces;
  }

  FakePlatform platform;
};

TEST_F(EnvironmentPath, SplitsAtEveryColon) {
  EXPECT_THAT(split("/usr/java/bin:/usr/bin"), ElementsAre("/usr/java/bin", "/usr/bin"));
  EXPECT_THAT(split("/one"), ElementsAre("/one"));
}

TEST_F(EnvironmentPath, KeepsEmptyPieces) {
  EXPECT_THAT(split(":a::b:"), ElementsAre("", "a", "", "b", ""));
  EXPECT_THAT(split(":"), ElementsAre("", ""));
}

TEST_F(EnvironmentPath, KeepsBlanksAndSemicolons) {
  EXPECT_THAT(split(" a ; b : c"), ElementsAre(" a ; b ", " c"));
}

TEST_F(EnvironmentPath, GivesNothingForNothing) {
  EXPECT_THAT(split(""), IsEmpty());
  EXPECT_THAT(splitVariable("UNSET"), IsEmpty());
}

TEST_F(EnvironmentPath, GivesNothingForAnEmptyName) {
  platform.environment[""] = "/a:/b";
  EXPECT_THAT(splitVariable(""), IsEmpty());
}

}  // namespace
}  // namespace vessant::test
