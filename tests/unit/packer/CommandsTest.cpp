// vspack's command line: help, version, and what a wrong call is told.

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/Commands.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;

class CommandsTest : public testing::Test {
 protected:
  int run(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "vspack");
    out.str("");
    err.str("");
    Session session{out, err};
    return runPacker(static_cast<int>(arguments.size()), arguments.data(), session);
  }

  /// The error of a call that is wrong, and writes nothing else.
  std::string errorOf(std::vector<const char*> arguments) {
    EXPECT_EQ(run(std::move(arguments)), kTrouble);
    EXPECT_EQ(out.str(), "");
    return err.str();
  }

  std::ostringstream out;
  std::ostringstream err;
};

TEST_F(CommandsTest, TellsItsVersion) {
  EXPECT_EQ(run({"--version"}), kFine);
  EXPECT_EQ(out.str(), "vspack 2.52\n");
}

TEST_F(CommandsTest, HelpsOnStandardOutput) {
  EXPECT_EQ(run({"--help"}), kFine);
  EXPECT_THAT(out.str(), HasSubstr("pack  "));
  EXPECT_EQ(err.str(), "");
  EXPECT_EQ(run({"pack", "--help"}), kFine);
  EXPECT_THAT(out.str(), HasSubstr("Usage: vspack pack [OPTIONS] MANIFEST"));
  EXPECT_EQ(run({"list", "-h"}), kFine);
  EXPECT_THAT(out.str(), HasSubstr("Usage: vspack list [OPTIONS] INSTALLER"));
}

TEST_F(CommandsTest, SuggestsTheNearestWord) {
  EXPECT_EQ(errorOf({"pakc"}), "vspack: there is no command \"pakc\"; did you mean \"pack\"?\n");
  EXPECT_EQ(errorOf({"--versoin"}),
            "vspack: there is no option \"--versoin\"; did you mean \"--version\"?\n");
  EXPECT_EQ(errorOf({"pack", "m", "--ouptut", "x"}),
            "vspack: there is no option \"--ouptut\"; did you mean \"--output\"?\n");
  EXPECT_EQ(errorOf({"frobnicate"}),
            "vspack: there is no command \"frobnicate\"; vspack --help lists them\n");
  EXPECT_EQ(errorOf({"init", "d", "--jra=x"}),
            "vspack: there is no option \"--jra=x\"; did you mean \"--jar\"?\n");
}

TEST_F(CommandsTest, TellsWhatIsMissingOrTooMuch) {
  EXPECT_EQ(errorOf({}), "vspack: a command is missing; vspack --help lists them\n");
  EXPECT_EQ(errorOf({"list"}),
            "vspack: INSTALLER is required; vspack list --help tells how it is called\n");
  EXPECT_EQ(errorOf({"list", "a", "b"}), "vspack: \"b\" is one argument too many\n");
  EXPECT_EQ(errorOf({"pack", "a", "-o"}),
            "vspack: --output needs a value; vspack pack --help tells how it is called\n");
}

TEST_F(CommandsTest, AnOptionTakesOneValueEachTime) {
  EXPECT_EQ(errorOf({"pack", "-I", "/", "-I", "/tmp", "none"}),
            "vspack: none: No such file or directory\n");
}

TEST_F(CommandsTest, ADirectoryToSearchMustBeThere) {
  EXPECT_THAT(errorOf({"pack", "-I", "/nowhere", "none"}), HasSubstr("/nowhere is no directory"));
}

TEST_F(CommandsTest, AProgramIsNoManifest) {
  EXPECT_EQ(errorOf({"pack", "/proc/self/exe"}),
            "vspack: /proc/self/exe: is a program and no manifest\n");
  EXPECT_THAT(errorOf({"check", "/bin/true"}), HasSubstr("is neither an installer"));
}

TEST_F(CommandsTest, AFileThatIsNotThereIsTrouble) {
  EXPECT_EQ(errorOf({"list", "/none"}), "vspack: /none: No such file or directory\n");
}

}  // namespace
}  // namespace vessant::test
