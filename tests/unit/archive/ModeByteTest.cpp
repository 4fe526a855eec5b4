// The byte just ahead of a launcher file's trailer.

#include <string>

#include <gtest/gtest.h>

#include "launcher/archive/LauncherFormat.h"
#include "support/FakeRun.h"
#include "support/LauncherFileBuilder.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

class ModeByte : public ::testing::Test {
 protected:
  [[nodiscard]] std::int32_t modeOf(const std::string& path) {
    return probe.launcherModeByte(SString(path));
  }
  void writeOwn(int mode) { LauncherFileBuilder().stub("stub").modeByte(mode).write(str(own)); }

  TempTree tree;
  SString own{tree.path("setup.bin")};
  std::int32_t last = kNoModeByte;
  ModeByteProbe probe{own, last};
};

TEST_F(ModeByte, LiesNineBytesBeforeTheEnd) {
  for (const int mode : {0, 1, 2, 127, 128, 254, 255}) {
    LauncherFileBuilder builder;
    builder.stub("stub").add(6, 1, "a", "bytes").modeByte(mode);
    EXPECT_EQ(modeOf(builder.write(tree.path("x"))), mode);
  }
}

TEST_F(ModeByte, NeedsNineBytes) {
  EXPECT_EQ(modeOf(tree.file("nine", "M12345678")), 'M');
  EXPECT_EQ(modeOf(tree.file("eight", "12345678")), -1);
  EXPECT_EQ(modeOf(tree.file("empty")), -1);
}

TEST_F(ModeByte, NeedsNoIdentification) {
  EXPECT_EQ(modeOf(tree.file("text", "some text of any kind")), ' ');
}

TEST_F(ModeByte, IsMissingInWhatCannotBeRead) {
  EXPECT_EQ(modeOf(tree.path("missing")), -1);
  EXPECT_EQ(modeOf(tree.dir("directory")), -1);
  EXPECT_EQ(modeOf(""), -1);
}

TEST_F(ModeByte, IsRememberedForTheLauncherItself) {
  writeOwn(2);
  EXPECT_EQ(probe.ownModeByte(), 2);
  EXPECT_EQ(last, 2);
  writeOwn(5);
  EXPECT_EQ(probe.ownModeByte(), 2);
  EXPECT_EQ(probe.launcherModeByte(own), 2);
}

TEST_F(ModeByte, TakesAValueThatIsKnownAlready) {
  last = 77;
  writeOwn(2);
  EXPECT_EQ(probe.ownModeByte(), 77);
}

TEST_F(ModeByte, IsAskedForAgainAfterAFailure) {
  EXPECT_EQ(probe.ownModeByte(), -1);
  EXPECT_EQ(last, -1);
  writeOwn(3);
  EXPECT_EQ(probe.ownModeByte(), 3);
}

TEST_F(ModeByte, IsNotRememberedForOtherFiles) {
  const std::string other = LauncherFileBuilder().modeByte(1).write(tree.path("other"));
  EXPECT_EQ(modeOf(other), 1);
  EXPECT_EQ(last, kNoModeByte);
  writeOwn(2);
  EXPECT_EQ(probe.ownModeByte(), 2);
  LauncherFileBuilder().modeByte(9).write(other);
  EXPECT_EQ(modeOf(other), 9);
  EXPECT_EQ(last, 2);
}

TEST(WizardMode, IsZeroOrTwo) {
  for (const int mode : {-1, 0, 1, 2, 3, 232, 255}) {
    EXPECT_EQ(isWizardMode(mode), mode == 0 || mode == 2) << mode;
  }
}

}  // namespace
}  // namespace vessant::test
