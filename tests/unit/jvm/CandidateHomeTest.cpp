// Homes whose names no command and no JVM file can hold, and such that merely look odd.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;

struct BadHome {
  const char* name;
  std::string_view part;
  const char* reason;
};

void PrintTo(const BadHome& item, std::ostream* out) {
  *out << item.name;
}

const BadHome kBadNames[] = {
    {"Percent", "100%jdk", "its path holds a percent sign"},
    {"PercentPair", "%%", "its path holds a percent sign"},
    {"Function", "%TEMP_DIR%()", "its path holds a percent sign"},
    {"OneAt", "a@b", "its path holds an at sign"},
    {"TagMacro", "a@B@", "its path holds an at sign"},
    {"TwoHashes", "a#b#", "its path holds two number signs"},
    {"HashPair", "##", "its path holds two number signs"},
    {"EnvironmentMacro", "#HOME#", "its path holds two number signs"},
    {"Newline", "a\nb", "its path holds a line break"},
    {"NewlineAtTheEnd", "jdk\n", "its path holds a line break"},
    {"CarriageReturn", "a\rb", "its path holds a line break"},
};
/// Only a setting can hold it, no file name.
const BadHome kZeroByte = {"ZeroByte", std::string_view("a\0b", 3), "its path holds a zero byte"};

std::string nameOf(const testing::TestParamInfo<BadHome>& item) {
  return item.param.name;
}

class BadHomes : public testing::TestWithParam<BadHome> {
 protected:
  BadHomes() {
    if (GetParam().part != kZeroByte.part) fixture.home(std::string(GetParam().part), "17");
  }

  JvmFixture fixture;
};

class BadHomesOnDisk : public BadHomes {};

INSTANTIATE_TEST_SUITE_P(Names, BadHomes, testing::ValuesIn(kBadNames), nameOf);
INSTANTIATE_TEST_SUITE_P(Setting, BadHomes, testing::Values(kZeroByte), nameOf);
INSTANTIATE_TEST_SUITE_P(Names, BadHomesOnDisk, testing::ValuesIn(kBadNames), nameOf);

TEST_P(BadHomes, ArePassedOverWithAWarning) {
  const std::string home = fixture.tree.path(GetParam().part);
  JVMFile& file = fixture.jvmFile(jvmFileText("17"));
  EXPECT_EQ(file.verifyAt(text(home), fixture.verification), nullptr);
  EXPECT_THAT(fixture.run.log.lines(),
              ElementsAre(RecordingLog::Line{"Skipping JVM at " + home + ": " + GetParam().reason,
                                             LogLevel::Warning}));
  EXPECT_TRUE(fixture.run.platform.commands.empty());
  EXPECT_TRUE(fixture.run.progress.phases.empty());
  EXPECT_EQ(file.tag("JVM_HOME"), "");
}

TEST_P(BadHomes, DoNotEndASearch) {
  const std::string bad = fixture.tree.path(GetParam().part);
  fixture.add(jvmFileText("17", "PLATFORM_HINT: HOMES\n"));
  const std::string good = fixture.home("good", "17");
  fixture.run.platform.environment["HOMES"] = bad + ":" + good;
  EXPECT_THAT(fixture.find(), ElementsAre(good));
}

TEST_P(BadHomesOnDisk, AreNotRun) {
  fixture.home("root/" + std::string(GetParam().part), "17");
  const std::string good = fixture.home("root/good", "17");
  fixture.search.fileSystemRoot = text(fixture.tree.path("root"));
  fixture.add(jvmFileText("17"));
  JVMMatchPtrDeque matches;
  fixture.files.findAll(matches, false);
  EXPECT_THAT(homesOf(matches), ElementsAre(good));
  EXPECT_THAT(fixture.verified(), ElementsAre(good));
}

struct OddHome {
  const char* name;
  const char* part;
};

void PrintTo(const OddHome& item, std::ostream* out) {
  *out << item.name;
}

std::string oddName(const testing::TestParamInfo<OddHome>& item) {
  return item.param.name;
}

class OddHomes : public testing::TestWithParam<OddHome> {
 protected:
  std::unique_ptr<JVMMatch> verifyReal() {
    const std::string home = "homes/" + std::string(GetParam().part);
    fixture.tree.program(home + "/bin/java", "#!/bin/sh\necho 1739021872\necho 17\n");
    fixture.runForReal();
    return fixture.jvmFile(jvmFileText("17"))
        .verifyAt(text(fixture.tree.path(home)), fixture.verification);
  }

  JvmFixture fixture;
};

INSTANTIATE_TEST_SUITE_P(
    Names, OddHomes,
    testing::Values(OddHome{"Blank", "my java"}, OddHome{"Tab", "a\tb"},
                    OddHome{"Apostrophe", "it's"}, OddHome{"Operators", "a&b;c|d<e>"},
                    OddHome{"Parentheses", "(x)"}, OddHome{"Star", "*"}, OddHome{"Tilde", "~"},
                    OddHome{"Dash", "-x"}, OddHome{"Colon", "a:b"}, OddHome{"Equals", "="},
                    OddHome{"Backslash", "a\\b"}, OddHome{"BackslashAtTheEnd", "a\\"},
                    OddHome{"OneHash", "a#b"}, OddHome{"Umlaut", "\xC3\xA4"},
                    OddHome{"NoText", "\xFF\x01"}),
    oddName);

TEST_P(OddHomes, AreVerifiedByARealProcess) {
  EXPECT_NE(verifyReal(), nullptr);
}

class UnfitHomes : public OddHomes {};

// Macros and the shell read these in the command. Such a home is no match, and does no harm.
INSTANTIATE_TEST_SUITE_P(Names, UnfitHomes,
                         testing::Values(OddHome{"Quote", "a\"b"}, OddHome{"ShellVariable", "$x"},
                                         OddHome{"TwoBackslashes", "a\\\\b"}),
                         oddName);

TEST_P(UnfitHomes, AreNoMatchAndNoFailure) {
  EXPECT_EQ(verifyReal(), nullptr);
}

}  // namespace
}  // namespace vessant::test
