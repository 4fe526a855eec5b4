// The command line, read by runs over real launcher files.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/driver/CommandLineParser.h"
#include "support/StandardStreams.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kMissingLog =
    "A log file name must be specified after the -log option on the command line.\n";
constexpr const char* kMissingInput =
    "An input file name must follow the '-in' command line option.\n";
constexpr const char* kMissingOriginal = "Missing original launcher file name.\n";

/// A launcher whose script leaves the result 0 and shows in N5 that it ran.
class CommandLineTest : public testing::Test {
 protected:
  CommandLineTest() {
    run.script({"SET N5 = 1"});
    run.state.console.progressShown = false;
  }

  [[nodiscard]] bool scriptRan() const { return run.n(5) == 1; }

  DriverRun run;
};

TEST_F(CommandLineTest, WithoutArgumentsTheScriptRuns) {
  EXPECT_EQ(run.run(), 0);
  EXPECT_TRUE(scriptRan());
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.state.console.progressCount, 100);
}

TEST_F(CommandLineTest, VersionIsPrintedAndTheScriptDoesNotRun) {
  EXPECT_EQ(run.run({"-vs:version"}), 0);
  EXPECT_EQ(run.out, "2.52\n");
  EXPECT_FALSE(scriptRan());
  EXPECT_FALSE(run.state.launcherFile.isLoaded());
}

TEST_F(CommandLineTest, VersionNeedsNoLauncherFile) {
  LauncherMain launcher(run.state);
  const StdoutCapture capture;
  EXPECT_EQ(launcher.run(ArgumentList({"-vs:version"}), "/no/such/launcher"), 0);
  EXPECT_EQ(capture.text(), "2.52\n");
}

TEST_F(CommandLineTest, VersionIsPrintedInItsPlace) {
  run.run({"-vs:version", "-vs:log"});
  EXPECT_EQ(run.out, std::string("2.52\n") + kMissingLog);
}

class SilentVersionTest : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(SilentVersionTest, IsNotPrinted) {
  DriverRun run;
  EXPECT_EQ(run.run(GetParam()), 0);
  EXPECT_EQ(run.out, "");
}

INSTANTIATE_TEST_SUITE_P(EveryPlace, SilentVersionTest,
                         testing::Values(std::vector<std::string>{"-vs:silent", "-vs:version"},
                                         std::vector<std::string>{"-vs:version", "-vs:silent"},
                                         std::vector<std::string>{"-silent", "-vs:version"},
                                         std::vector<std::string>{"-vs:version", "-silent"},
                                         std::vector<std::string>{"-vs:version", "-cp:a", "x",
                                                                  "other", "-silent"}));

TEST_F(CommandLineTest, VersionIsPrintedWhenSilentIsOnlyTheValueOfAnOption) {
  EXPECT_EQ(run.run({"-vs:version", "-cp:a", "-silent", "-vs:javahome", "-vs:silent"}), 0);
  EXPECT_EQ(run.out, "2.52\n");
  EXPECT_FALSE(run.state.console.silent);
}

struct ValueOption {
  const char* name;
  SString LauncherState::*field;
};

const ValueOption kValueOptions[] = {
    {"-vs:orig", &LauncherState::originalLauncherFileName},
    {"-vs:tempdir", &LauncherState::tempDirectory},
    {"-vs:javahome", &LauncherState::javaHome},
    {"-cp:p", &LauncherState::classPathPrefix},
    {"-cp:a", &LauncherState::classPathSuffix},
};

TEST(CommandLineValues, AreTakenAsTheyStand) {
  for (const auto& [name, field] : kValueOptions) {
    DriverRun run;
    run.run({name, "-silent", "-vs:version"});
    EXPECT_EQ(run.state.*field, "-silent") << name;
    EXPECT_FALSE(run.state.console.silent) << name;
    EXPECT_THAT(texts(run.state.passThroughArguments), IsEmpty()) << name;
  }
}

TEST(CommandLineValues, OfALaterOptionWin) {
  for (const auto& [name, field] : kValueOptions) {
    DriverRun run;
    run.run({name, "one", name, "", name, "two words", "-vs:version"});
    EXPECT_EQ(run.state.*field, "two words") << name;
  }
}

TEST(CommandLineValues, OfTheLogAreTakenAsTheyStand) {
  DriverRun run;
  run.run({"-vs:log", "-silent", "-vs:version"});
  EXPECT_EQ(run.state.log.fileName, "-silent");
  EXPECT_FALSE(run.state.console.silent);
}

TEST(CommandLineValues, AreIgnoredWhereTheyAreMissing) {
  for (const char* name : {"-vs:tempdir", "-vs:javahome", "-cp:p", "-cp:a"}) {
    DriverRun run;
    const SString tempDirectory = run.state.tempDirectory;
    EXPECT_EQ(run.run({"-vs:version", name}), 0) << name;
    EXPECT_EQ(run.out, "2.52\n") << name;
    EXPECT_EQ(run.state.tempDirectory, tempDirectory);
    EXPECT_EQ(run.state.javaHome, "");
    EXPECT_EQ(run.state.classPathPrefix, "");
    EXPECT_EQ(run.state.classPathSuffix, "");
    EXPECT_THAT(texts(run.state.passThroughArguments), IsEmpty()) << name;
  }
}

TEST_F(CommandLineTest, LogNamesTheLogFile) {
  const std::string path = run.tree.path("other.txt");
  EXPECT_EQ(run.run({"-vs:log", path}), 0);
  EXPECT_THAT(readFile(path), HasSubstr("------------------\nfile type: 0\n"));
  EXPECT_EQ(run.log(), "");
}

TEST_F(CommandLineTest, LogWithoutAValueIsReportedAndTheScriptRuns) {
  EXPECT_EQ(run.run({"-vs:log"}), 0);
  EXPECT_EQ(run.out, kMissingLog);
  EXPECT_TRUE(scriptRan());
}

TEST_F(CommandLineTest, OriginalWithoutAValueIsReportedAndTheScriptRuns) {
  EXPECT_EQ(run.run({"-vs:orig"}), 0);
  EXPECT_EQ(run.out, kMissingOriginal);
  EXPECT_TRUE(scriptRan());
  EXPECT_FALSE(run.state.originalLauncherMode);
}

TEST_F(CommandLineTest, InputWithoutAValueIsReportedAndNothingElseRuns) {
  EXPECT_EQ(run.run({"-vs:in"}), -1);
  EXPECT_EQ(run.out, kMissingInput);
  EXPECT_FALSE(scriptRan());
  EXPECT_EQ(run.log(), "");
}

TEST_F(CommandLineTest, ErrorsOfOptionsStandWhereNothingRunsAfterwards) {
  EXPECT_EQ(run.run({"-vs:version", "-vs:log"}), -1);
  EXPECT_EQ(run.run({"-vs:version", "-vs:orig"}), -1);
}

TEST_F(CommandLineTest, ErrorsOfOptionsAreHiddenInSilence) {
  for (const char* option : {"-vs:log", "-vs:orig", "-vs:in"}) {
    run.run({"-vs:silent", option});
    EXPECT_EQ(run.out, "") << option;
  }
}

TEST_F(CommandLineTest, ErrorsOfOptionsAreInTheUsersLanguage) {
  run.environment.set("LANG", "nl_NL");
  run.run({"-vs:in"});
  EXPECT_EQ(run.out, std::string(kMessageCatalog[14][30]) + "\n");
  run.run({"-vs:version", "-vs:orig"});
  EXPECT_EQ(run.out, std::string("2.52\n") + kMissingOriginal);
}

TEST_F(CommandLineTest, OriginalSetsBothFlagsAndKeepsTheRunningFile) {
  const std::string outer = run.file.write(run.tree.path("outer.bin"));
  run.run({"-vs:orig", outer});
  EXPECT_TRUE(run.state.originalLauncherMode);
  EXPECT_TRUE(run.state.originalLauncherCleanup);
  EXPECT_EQ(run.state.originalLauncherFileName, SString(outer));
  EXPECT_EQ(run.state.launcherFileName, SString(run.launcherFile));
}

TEST_F(CommandLineTest, OriginalIsTheFileWhoseScriptRuns) {
  DriverRun other;
  other.script({"SET S1 = outer"});
  const std::string outer = other.file.write(run.tree.path("outer.bin"));
  EXPECT_EQ(run.run({"-vs:orig", outer}), 0);
  EXPECT_EQ(run.s(1), "outer");
  EXPECT_FALSE(scriptRan());
}

TEST_F(CommandLineTest, TheCleanUpFlagIsClearedFirst) {
  run.state.originalLauncherCleanup = true;
  run.state.originalLauncherMode = true;
  run.run({"-vs:version"});
  EXPECT_FALSE(run.state.originalLauncherCleanup);
  EXPECT_TRUE(run.state.originalLauncherMode);
}

TEST_F(CommandLineTest, TheProgressCountStartsAtZero) {
  run.state.console.progressCount = 500;
  run.run({"-vs:version"});
  EXPECT_EQ(run.state.console.progressCount, 0);
}

struct PassedThrough {
  std::vector<std::string> arguments;
  std::vector<std::string> passed;
  bool silent;
  bool console;
};

const PassedThrough kPassedThrough[] = {
    {{"-silent"}, {"-silent"}, true, false},
    {{"-vs:silent"}, {}, true, false},
    {{"-console"}, {"-console"}, false, true},
    {{"-accessibility"}, {"-console"}, false, true},
    {{"-vs:javaconsole"}, {}, false, true},
    {{"-foo", "bar", "", "two words", "a\"b"},
     {"-foo", "bar", "", "two words", "a\"b"},
     false,
     false},
    {{"-vs:tmpdir", "x", "-vs:", "-VS:LOG", "-vs:log=x", "-Silent", "-vs:silent "},
     {"-vs:tmpdir", "x", "-vs:", "-VS:LOG", "-vs:log=x", "-Silent", "-vs:silent "},
     false,
     false},
    {{"one", "-cp:p", "two", "three", "-console", "-accessibility", "-silent"},
     {"one", "three", "-console", "-console", "-silent"},
     true,
     true},
};

TEST(CommandLineArguments, ReachTheJavaProgramUnlessTheyAreTheLaunchers) {
  for (const PassedThrough& expected : kPassedThrough) {
    DriverRun run;
    run.script({"// nothing"});
    EXPECT_EQ(run.run(expected.arguments), 0);
    EXPECT_EQ(texts(run.state.passThroughArguments), expected.passed);
    EXPECT_EQ(run.state.console.silent, expected.silent) << expected.arguments.front();
    EXPECT_EQ(run.state.javaConsole, expected.console) << expected.arguments.front();
    EXPECT_EQ(texts(run.state.commandLineArguments), expected.arguments);
  }
}

TEST_F(CommandLineTest, ReadingGoesOnBehindAnErrorAndBehindTheVersion) {
  const std::string in = run.inputFile("ACTION: RUN_INSTRUCTIONS\n");
  run.run({"-vs:version", "one", "-vs:in", in, "-vs:javahome", "/jdk", "two", "-vs:log"});
  EXPECT_EQ(run.state.javaHome, "/jdk");
  EXPECT_THAT(texts(run.state.passThroughArguments), ElementsAre("one", "two"));
}

/// Records what the command line asks for at once, instead of doing it.
class RecordingParserActions : public CommandLineParser::Actions {
 public:
  void extractFiles() override { asked.emplace_back("extract"); }
  void loadInputFile(const SString& value, CommandLineParser::Outcome& outcome) override {
    asked.push_back("in " + str(value));
    outcome = decision;
  }

  std::vector<std::string> asked;
  CommandLineParser::Outcome decision;
};

struct ParserFixture {
  CommandLineParser::Outcome parse(const std::vector<std::string>& arguments) {
    const StdoutCapture capture;
    return CommandLineParser(state, services, actions).parse(ArgumentList(arguments));
  }

  LauncherState state;
  LauncherServices services{state};
  RecordingParserActions actions;
};

TEST(CommandLineActions, HappenInTheirOrderAndAsOftenAsTheyAreAskedFor) {
  ParserFixture fixture;
  fixture.parse({"-vs:in", "a", "-vs:extract", "x", "-vs:in", "-vs:extract", "-vs:extract"});
  EXPECT_THAT(fixture.actions.asked, ElementsAre("in a", "extract", "in -vs:extract", "extract"));
}

TEST(CommandLineActions, LeaveTheDecisionAboutTheScriptToTheInputFile) {
  ParserFixture fixture;
  fixture.actions.decision = {.result = -1, .runDefaultFlow = false};
  EXPECT_FALSE(fixture.parse({"-vs:in", "a"}).runDefaultFlow);
  EXPECT_EQ(fixture.parse({"-vs:in", "a"}).result, -1);
  fixture.actions.decision = {};
  EXPECT_TRUE(fixture.parse({"-vs:version", "-vs:extract", "-vs:in", "a"}).runDefaultFlow);
  EXPECT_FALSE(fixture.parse({"-vs:in", "a", "-vs:version"}).runDefaultFlow);
}

}  // namespace
}  // namespace vessant::test
