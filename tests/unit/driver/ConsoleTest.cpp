// The console on streams of the test's own.

#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "launcher/driver/output/Console.h"
#include "support/FakeRun.h"
#include "support/ProcessScope.h"
#include "support/StandardStreams.h"

namespace vessant::test {
namespace {

struct ConsoleFixture {
  explicit ConsoleFixture(const std::string& answer = "") : in(fileWith(answer)) {}

  [[nodiscard]] std::string text() const { return contentOf(out.get()); }

  FakeRun run;
  ConsoleState state;
  ScopedFile out = fileWith();
  ScopedFile err = fileWith();
  ScopedFile in;
  Console console{
      state,
      run.messages,
      run.cancelFlag,
      {.in = ::fileno(in.get()), .out = ::fileno(out.get()), .err = ::fileno(err.get())}};
};

/// What a console prints while `use` uses it.
template <class Use>
std::string printed(ConsoleFixture& fixture, Use use) {
  const std::size_t before = fixture.text().size();
  use(fixture.console);
  return fixture.text().substr(before);
}

TEST(Console, ShowsAMessageAsALine) {
  ConsoleFixture fixture;
  fixture.console.showMessage("100% %s");
  fixture.console.showMessage("");
  EXPECT_EQ(fixture.text(), "100% %s\n\n");
}

TEST(Console, ShowsMessagesWhateverTheProgressDisplay) {
  ConsoleFixture fixture;
  fixture.console.disableProgress();
  fixture.console.showMessage("text");
  EXPECT_EQ(fixture.text(), "text\n");
}

TEST(Console, HidesMessagesInSilence) {
  ConsoleFixture fixture;
  fixture.console.setSilent(true);
  fixture.console.showMessage("text");
  EXPECT_EQ(fixture.text(), "");
  fixture.console.setSilent(false);
  fixture.console.showMessage("text");
  EXPECT_EQ(fixture.text(), "text\n");
}

TEST(Console, PrintsResultsAlsoInSilence) {
  ConsoleFixture fixture;
  fixture.console.setSilent(true);
  fixture.console.disableProgress();
  fixture.console.printResult("1");
  EXPECT_EQ(fixture.text(), "1\n");
}

TEST(Console, ShowsAdviceOnStandardErrorAlone) {
  ConsoleFixture fixture;
  fixture.console.disableProgress();
  fixture.console.showAdvice("fetch it again");
  EXPECT_EQ(contentOf(fixture.err.get()), "fetch it again\n");
  EXPECT_EQ(fixture.text(), "");
}

TEST(Console, ShowsNoAdviceInSilence) {
  ConsoleFixture fixture;
  fixture.console.setSilent(true);
  fixture.console.showAdvice("fetch it again");
  EXPECT_EQ(contentOf(fixture.err.get()), "");
}

struct StageLines {
  Stage stage;
  const char* text;
};

constexpr StageLines kStages[] = {
    {Stage::Initializing, "\nInitializing Product...\n"},
    {Stage::SearchingForJvm, "\nSearching for Java(tm) Virtual Machine...\n"},
    {Stage::Failed, "\nNo Java(tm) Virtual Machine was found.Product could not be launched.\n"},
    {Stage::Running, "\nRunning Product...\n"},
    {Stage::PreparingJvm, "\nPreparing Java(tm) Virtual Machine...\n"},
    {static_cast<Stage>(5), ""},
    {static_cast<Stage>(-1), ""},
};

TEST(Console, ShowsTheStages) {
  ConsoleFixture fixture;
  fixture.state.uiTitle = "Product";
  for (const auto& [stage, text] : kStages) {
    EXPECT_EQ(printed(fixture, [&, shown = stage](Console& console) { console.showStage(shown); }),
              text);
  }
}

TEST(Console, HidesTheStagesInSilenceAndWithoutProgressDisplay) {
  ConsoleFixture fixture;
  fixture.console.disableProgress();
  for (const auto& [stage, text] : kStages) fixture.console.showStage(stage);
  fixture.state.progressShown = true;
  fixture.state.silent = true;
  for (const auto& [stage, text] : kStages) fixture.console.showStage(stage);
  EXPECT_EQ(fixture.text(), "");
}

TEST(Console, ShowsTheStagesInTheUsersLanguage) {
  ConsoleFixture fixture;
  fixture.run.platform.environment["LANG"] = "nl_NL";
  fixture.state.uiTitle = "Product";
  fixture.console.showStage(Stage::Running);
  EXPECT_EQ(fixture.text(), "\n" + str(fixture.run.messages.formatMessage(7, "Product")) + "\n");
  EXPECT_NE(fixture.text(), "\nRunning Product...\n");
}

struct PhaseLines {
  SearchPhase phase;
  const char* text;
};

constexpr PhaseLines kPhases[] = {
    {SearchPhase::Searching, "\nSearching for Java 17\n"},
    {SearchPhase::Scanning, "\nScanning disk(s) for a Java(tm) Virtual Machine...\n"},
    {SearchPhase::Verifying, "\nVerifying Java 17\n"},
};

TEST(Console, ShowsTheSearchPhases) {
  ConsoleFixture fixture;
  for (const auto& [phase, text] : kPhases) {
    EXPECT_EQ(
        printed(fixture, [&, shown = phase](
                             Console& console) { console.showSearchPhase(shown, "Java 17"); }),
        text);
    EXPECT_EQ(fixture.state.searchPhase, phase);
  }
}

TEST(Console, ShowsAPhaseAgainWhenItComesAgain) {
  ConsoleFixture fixture;
  fixture.console.showSearchPhase(SearchPhase::Verifying, "A");
  fixture.console.showSearchPhase(SearchPhase::Verifying, "B");
  EXPECT_EQ(fixture.text(), "\nVerifying A\n\nVerifying B\n");
}

TEST(Console, ForgetsThePhaseForAnyOtherKind) {
  for (const int kind : {0, 4, -1}) {
    ConsoleFixture fixture;
    fixture.state.searchPhase = SearchPhase::Scanning;
    fixture.console.showSearchPhase(static_cast<SearchPhase>(kind), "x");
    EXPECT_EQ(fixture.state.searchPhase, SearchPhase::None);
    EXPECT_EQ(fixture.text(), "");
  }
}

TEST(Console, ChangesThePhaseUnseenWithoutProgressDisplay) {
  ConsoleFixture fixture;
  fixture.console.disableProgress();
  for (const auto& [phase, text] : kPhases) {
    fixture.console.showSearchPhase(phase, "Java 17");
    EXPECT_EQ(fixture.state.searchPhase, phase);
  }
  EXPECT_EQ(fixture.text(), "");
}

TEST(Console, KeepsThePhaseInSilence) {
  ConsoleFixture fixture;
  fixture.state.searchPhase = SearchPhase::Scanning;
  fixture.console.setSilent(true);
  fixture.console.showSearchPhase(SearchPhase::Verifying, "x");
  fixture.console.resetSearchPhase();
  EXPECT_EQ(fixture.state.searchPhase, SearchPhase::Scanning);
  EXPECT_EQ(fixture.text(), "");
}

TEST(Console, CountsTwiceTheDotsItPrints) {
  ConsoleFixture fixture;
  fixture.console.addProgressDots(10);
  EXPECT_EQ(fixture.text(), "..........");
  EXPECT_EQ(fixture.state.progressCount, 20);
  fixture.console.addProgressDots(1);
  EXPECT_EQ(fixture.state.progressCount, 22);
}

TEST(Console, EndsTheLineOfDotsAtSeventyUnits) {
  ConsoleFixture fixture;
  fixture.console.addProgressDots(40);
  EXPECT_EQ(fixture.text(), std::string(40, '.') + "\n");
  EXPECT_EQ(fixture.state.progressCount, 80);
  EXPECT_EQ(fixture.state.progressLines, 1);
}

TEST(Console, BreaksTheLineBehindTheDotThatFillsIt) {
  ConsoleFixture fixture;
  for (int i = 0; i < 71; ++i) fixture.console.addProgressDots(1);
  EXPECT_EQ(fixture.text(), std::string(35, '.') + "\n" + std::string(35, '.') + "\n.");
}

TEST(Console, BreaksTheLineOnceForSeveralStepsOfSeventy) {
  ConsoleFixture fixture;
  fixture.console.addProgressDots(200);
  EXPECT_EQ(fixture.text(), std::string(200, '.') + "\n");
  EXPECT_EQ(fixture.state.progressLines, 5);
}

TEST(Console, PrintsNoDotsForNone) {
  ConsoleFixture fixture;
  fixture.console.addProgressDots(0);
  EXPECT_EQ(fixture.text(), "");
  EXPECT_EQ(fixture.state.progressCount, 0);
}

TEST(Console, CountsOnFromTheSmallestNumberBehindTheLargest) {
  ConsoleFixture fixture;
  fixture.state.progressCount = 2147483646;
  fixture.console.addProgressDots(1);
  EXPECT_EQ(fixture.state.progressCount, -2147483647 - 1);
  EXPECT_EQ(fixture.text(), ".");
}

TEST(Console, CountsOnWithoutProgressDisplay) {
  ConsoleFixture fixture;
  fixture.console.disableProgress();
  fixture.console.addProgressDots(40);
  EXPECT_EQ(fixture.text(), "");
  EXPECT_EQ(fixture.state.progressCount, 80);
  EXPECT_EQ(fixture.state.progressLines, 0);
}

TEST(Console, NeitherPrintsNorCountsDotsInSilence) {
  ConsoleFixture fixture;
  fixture.console.setSilent(true);
  fixture.console.addProgressDots(40);
  fixture.console.setProgress(100);
  EXPECT_EQ(fixture.text(), "");
  EXPECT_EQ(fixture.state.progressCount, 0);
  EXPECT_EQ(fixture.state.progressLines, 0);
}

struct ProgressStep {
  std::int32_t value;
  const char* text;
  std::int32_t lines;
};

TEST(Console, BreaksTheLineWhenTheCountPassesASeventieth) {
  constexpr ProgressStep kSteps[] = {{0, "", 0},     {69, "", 0},      {70, "\n", 1}, {139, "", 1},
                                     {100, "", 1},   {0, "", 1},       {-70, "", 1},  {70, "", 1},
                                     {140, "\n", 2}, {1000, "\n", 14}, {140, "", 14}};
  ConsoleFixture fixture;
  for (const auto& [value, text, lines] : kSteps) {
    EXPECT_EQ(printed(fixture, [&, set = value](Console& console) { console.setProgress(set); }),
              text)
        << value;
    EXPECT_EQ(fixture.state.progressCount, value);
    EXPECT_EQ(fixture.state.progressLines, lines) << value;
  }
}

TEST(Console, EndsARunWithoutDotsWithOneLineBreak) {
  ConsoleFixture fixture;
  fixture.console.setProgress(0);
  fixture.console.setProgress(100);
  EXPECT_EQ(fixture.text(), "\n");
}

TEST(Console, SetsTheCountUnseenWithoutProgressDisplay) {
  ConsoleFixture fixture;
  fixture.console.disableProgress();
  fixture.console.setProgress(100);
  EXPECT_EQ(fixture.text(), "");
  EXPECT_EQ(fixture.state.progressCount, 100);
  EXPECT_EQ(fixture.state.progressLines, 0);
}

TEST(Console, AsksForTheDestinationAndReadsOneWord) {
  ConsoleFixture fixture(" \n\t/opt/jvm here\n");
  EXPECT_EQ(fixture.console.askDestinationDirectory(), "/opt/jvm");
  EXPECT_EQ(fixture.text(), "Supply the destination directory for the Java Virtual Machine:\n");
  EXPECT_EQ(fixture.console.askDestinationDirectory(), "here");
}

TEST(Console, AsksUnseenWithoutProgressDisplay) {
  ConsoleFixture fixture("/opt\n");
  fixture.console.disableProgress();
  EXPECT_EQ(fixture.console.askDestinationDirectory(), "/opt");
  EXPECT_EQ(fixture.text(), "");
}

TEST(Console, AsksNothingInSilence) {
  ConsoleFixture fixture("/opt\n");
  fixture.console.setSilent(true);
  EXPECT_EQ(fixture.console.askDestinationDirectory(), "");
  EXPECT_EQ(fixture.text(), "");
  EXPECT_EQ(::lseek(::fileno(fixture.in.get()), 0, SEEK_CUR), 0) << "something was read";
}

TEST(Console, TakesTheEndOfTheInputForAnEmptyAnswer) {
  for (const char* input : {"", " \n\n"}) {
    ConsoleFixture fixture(input);
    EXPECT_EQ(fixture.console.askDestinationDirectory(), "");
  }
}

TEST(Console, CutsAnAnswerAfter1023Bytes) {
  ConsoleFixture fixture(std::string(3000, 'a'));
  EXPECT_EQ(str(fixture.console.askDestinationDirectory()), std::string(1023, 'a'));
}

TEST(Console, TakesNoAnswerFromAUserWhoCancels) {
  ConsoleFixture fixture("/opt\n");
  fixture.run.cancelFlag.set();
  EXPECT_EQ(fixture.console.askDestinationDirectory(), "");
}

/// A reader at the other end of a pipe sees each dot when it is printed.
TEST(Console, HoldsNothingBack) {
  FakeRun run;
  ConsoleState state;
  int ends[2] = {-1, -1};
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
  Console console(state, run.messages, run.cancelFlag, {.out = ends[1]});
  char bytes[16] = {};
  console.addProgressDots(1);
  EXPECT_EQ(::read(ends[0], bytes, sizeof(bytes)), 1);
  console.showMessage("text");
  EXPECT_EQ(::read(ends[0], bytes, sizeof(bytes)), 5);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(Console, SetsAndPrintsTheTitle) {
  ConsoleFixture fixture;
  EXPECT_FALSE(fixture.console.hasTitle());
  fixture.console.setUiTitle("Product");
  EXPECT_EQ(fixture.text(), "Product\n");
  EXPECT_EQ(fixture.state.uiTitle, "Product");
  EXPECT_TRUE(fixture.console.hasTitle());
}

TEST(Console, DecodesTheEscapesOfATitle) {
  ConsoleFixture fixture;
  fixture.console.setUiTitle("\\u0041\\U0062c \\n \\u004");
  EXPECT_EQ(fixture.state.uiTitle, "Abc \\n \\u004");
  EXPECT_EQ(fixture.text(), "Abc \\n \\u004\n");
}

TEST(Console, PutsAQuestionMarkForWhatTheLocaleCannotShow) {
  const ScopedEnvironment environment("LC_ALL", "C");
  ConsoleFixture fixture;
  fixture.console.setUiTitle("\\u4E2D\\u6587 1");
  EXPECT_EQ(fixture.state.uiTitle, "?? 1");
}

TEST(Console, SetsTheTitleUnseenInSilenceAndWithoutProgressDisplay) {
  ConsoleFixture fixture;
  fixture.console.disableProgress();
  fixture.console.setUiTitle("One");
  EXPECT_EQ(fixture.state.uiTitle, "One");
  fixture.state.progressShown = true;
  fixture.console.setSilent(true);
  fixture.console.setUiTitle("Two");
  EXPECT_EQ(fixture.state.uiTitle, "Two");
  EXPECT_EQ(fixture.text(), "");
}

TEST(Console, ShowsATitleWithoutSettingIt) {
  ConsoleFixture fixture;
  fixture.state.uiTitle = "Product";
  fixture.console.showTitle("Other\\u0021");
  EXPECT_EQ(fixture.text(), "Other!\n");
  EXPECT_EQ(fixture.state.uiTitle, "Product");
}

TEST(Console, PrintsAnEmptyTitleAsAnEmptyLine) {
  ConsoleFixture fixture;
  fixture.console.setUiTitle("");
  EXPECT_EQ(fixture.text(), "\n");
}

TEST(Console, TurnsTheProgressDisplayOnAndOff) {
  ConsoleFixture fixture;
  EXPECT_TRUE(fixture.console.isProgressShown());
  fixture.console.disableProgress();
  EXPECT_FALSE(fixture.console.isProgressShown());
  fixture.console.enableProgress();
  EXPECT_TRUE(fixture.console.isProgressShown());
}

TEST(Console, TurnsTheProgressDisplayOffByTurningItOnInSilence) {
  ConsoleFixture fixture;
  fixture.console.setSilent(true);
  EXPECT_TRUE(fixture.console.isSilent());
  EXPECT_TRUE(fixture.console.isProgressShown());
  fixture.console.enableProgress();
  EXPECT_FALSE(fixture.console.isProgressShown());
}

}  // namespace
}  // namespace vessant::test
