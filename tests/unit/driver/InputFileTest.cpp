// Loading an input file, applying its settings and choosing its action.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FakeJavaHome.h"
#include "unit/driver/DriverRun.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kNotLoaded = "Could not load the input file.";
constexpr const char* kNotOpened =
    "Unable to open input file specified on the command line after the -in option.";

class InputFileTest : public testing::Test {
 protected:
  InputFileTest() { run.script({"SET N5 = 1"}); }

  /// Runs with an input file of this text.
  std::int32_t runWith(const std::string& text) { return run.run({"-vs:in", run.inputFile(text)}); }
  [[nodiscard]] bool scriptRan() const { return run.n(5) == 1; }

  DriverRun run;
};

TEST_F(InputFileTest, ThatRunsTheInstructionsIsLikeNoneWithoutProgressAndLog) {
  EXPECT_EQ(run.run({"-vs:in", run.inputFile("ACTION: RUN_INSTRUCTIONS\n", false)}), 0);
  EXPECT_TRUE(scriptRan());
  EXPECT_EQ(run.out, "");
  EXPECT_FALSE(run.state.console.progressShown);
  EXPECT_EQ(run.state.log.fileName, "");
  EXPECT_EQ(run.state.console.progressCount, 100);
}

TEST_F(InputFileTest, IsNamedInTheLogOfBefore) {
  const std::string in =
      run.tree.file("in.tag", "LOGFILE: " + run.tree.path("new.txt") + "\nACTION: X\n");
  run.run({"-vs:in", in});
  EXPECT_EQ(run.log(), "------------------\nLoading input file " + in + "\n");
  EXPECT_THAT(readFile(run.tree.path("new.txt")), Not(HasSubstr("------")));
}

TEST_F(InputFileTest, NamesTheLogOfTheRun) {
  run.state.log.fileName = "";
  runWith("ACTION: RUN_INSTRUCTIONS\n");
  EXPECT_THAT(run.log(), StartsWith("------------------\nfile type: 0\n"));
}

TEST_F(InputFileTest, MayBeGivenInQuotes) {
  const std::string in = run.tree.file("in put.tag", "ACTION: RUN_INSTRUCTIONS\n");
  for (const std::string& value : {"\"" + in + "\"", "\"" + in, in + "\""}) {
    DriverRun other;
    other.script({"SET N5 = 1"});
    EXPECT_EQ(other.run({"-vs:in", value}), 0) << value;
    EXPECT_EQ(other.n(5), 1);
    EXPECT_THAT(other.log(), HasSubstr("\nLoading input file " + value + "\n"));
  }
}

class UnopenedInputFileTest : public testing::TestWithParam<const char*> {};

TEST_P(UnopenedInputFileTest, IsReportedTwice) {
  DriverRun run;
  run.script({"SET N5 = 1"});
  EXPECT_EQ(run.run({"-vs:in", GetParam()}), -1);
  EXPECT_EQ(run.out, std::string(kNotLoaded) + kNotOpened + "\n" + kNotOpened + "\n");
  EXPECT_EQ(run.log(), "------------------\n" + errorLine(kNotOpened));
  EXPECT_EQ(run.n(5), 0);
}

INSTANTIATE_TEST_SUITE_P(EveryKind, UnopenedInputFileTest,
                         testing::Values("", "\"", "\"\"", "/no/such/input.tag",
                                         "\"\"/no/such/input.tag\"\""));

TEST_F(InputFileTest, WithASyntaxErrorIsReportedTwice) {
  const std::string in = run.inputFile("ACTION: SEARCH\nno colon\n");
  EXPECT_EQ(run.run({"-vs:in", in}), -1);
  const std::string text =
      "Syntax error in " + in + " at line 3 ==> Missing colon at the end of the tag name.";
  EXPECT_EQ(run.out, kNotLoaded + text + "\n" + text + "\n");
  EXPECT_THAT(run.log(), HasSubstr(errorLine(text)));
  EXPECT_FALSE(run.state.launcherFile.isLoaded());
}

TEST_F(InputFileTest, ThatIsADirectoryIsEmpty) {
  EXPECT_EQ(run.run({"-vs:in", run.tree.dir("directory")}), -1);
  EXPECT_THAT(run.out, HasSubstr("Invalid action in input file: \n"));
}

class UnreadableFileTest : public testing::TestWithParam<const char*> {};

TEST_P(UnreadableFileTest, IsReportedTwice) {
  DriverRun run;
  const std::string in =
      run.inputFile(std::string("ACTION: RUN_INSTRUCTIONS\n") + GetParam() + ": /no/such/file\n");
  EXPECT_EQ(run.run({"-vs:in", in}), -1);
  const std::string text = "Unable to load input file: /no/such/file";
  EXPECT_EQ(run.out, text + "\n" + text + "\n");
  EXPECT_THAT(run.log(), testing::EndsWith(errorLine(text)));
  EXPECT_FALSE(run.state.launcherFile.isLoaded());
}

INSTANTIATE_TEST_SUITE_P(EveryKey, UnreadableFileTest,
                         testing::Values("INSTRUCTIONS", "LAUNCHSCRIPT", "JVM"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(InputFileTest, BesideABrokenLauncherFileIsReportedOnce) {
  run.file.add(9, 1, "x", "");
  EXPECT_EQ(runWith("ACTION: SEARCH\n"), -1);
  const std::string text =
      "Unable to load the launcher file index. Invalid file type in file index.";
  EXPECT_EQ(run.out, text + "\n");
  EXPECT_THAT(run.log(), HasSubstr(errorLine(text)));
}

TEST_F(InputFileTest, WithAnUnknownActionIsReportedTwice) {
  const struct {
    const char* line;
    const char* value;
  } kActions[] = {{"", ""},
                  {"ACTION: \"\"\n", ""},
                  {"ACTION: search\n", "search"},
                  {"ACTION: SEARCH_ALL_\n", "SEARCH_ALL_"},
                  {"ACTION: \"SEARCH \"\n", "SEARCH "},
                  {"ACTION: 1\n", "1"}};
  for (const auto& [line, value] : kActions) {
    DriverRun other;
    other.script({"SET N5 = 1"});
    EXPECT_EQ(other.run({"-vs:in", other.inputFile(line)}), -1);
    const std::string text = std::string("Invalid action in input file: ") + value;
    EXPECT_EQ(other.out, text + "\n" + text + "\n");
    EXPECT_THAT(other.log(), testing::EndsWith(errorLine(text)));
    EXPECT_EQ(other.n(5), 0);
  }
}

TEST_F(InputFileTest, ReportsNothingOnTheConsoleInSilence) {
  EXPECT_EQ(run.run({"-vs:silent", "-vs:in", "/no/such/input.tag"}), -1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.log(), HasSubstr(errorLine(kNotOpened)));
}

struct ProgressSwitch {
  const char* keys;
  bool shown;
};

TEST_F(InputFileTest, SwitchesTheProgressDisplay) {
  constexpr ProgressSwitch kSwitches[] = {
      {"", false},
      {"SHOW_PROGRESS: 1\n", true},
      {"SHOW_FAIL_MSG: 1\n", true},
      {"SHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 0\n", true},
      {"SHOW_PROGRESS: 0\nSHOW_FAIL_MSG: 0\n", false},
      {"SHOW_PROGRESS: true\nSHOW_FAIL_MSG: yes\n", false},
      {"SHOW_PROGRESS: -2\n", true},
      {"SHOW_PROGRESS: 65536\n", false},
      {"SHOW_PROGRESS: 3x\n", true},
  };
  for (const auto& [keys, shown] : kSwitches) {
    DriverRun other;
    other.script({"// nothing"});
    other.run({"-vs:in", other.inputFile(std::string("ACTION: RUN_INSTRUCTIONS\n") + keys)});
    EXPECT_EQ(other.state.console.progressShown, shown) << keys;
    other.run({"-vs:silent", "-vs:in",
               other.inputFile(std::string("ACTION: RUN_INSTRUCTIONS\n") + keys)});
    EXPECT_FALSE(other.state.console.progressShown) << keys;
  }
}

/// An action before moves the count to 100; one that ends without moving it shows what the input
/// file did.
TEST_F(InputFileTest, StartsTheProgressCountOnlyWhenProgressIsAskedFor) {
  const struct {
    const char* keys;
    std::int32_t count;
  } kCounts[] = {{"SHOW_PROGRESS: 1\n", 0}, {"SHOW_FAIL_MSG: 1\n", 100}, {"", 100}};
  for (const auto& [keys, count] : kCounts) {
    DriverRun other;
    const std::string before = other.tree.file("before.tag", "ACTION: INSTALL_JVM\n");
    const std::string in = other.inputFile(std::string("ACTION: VERIFY_JVM\n") + keys);
    other.run({"-vs:in", before, "-vs:in", in});
    EXPECT_EQ(other.state.console.progressCount, count) << keys;
  }
}

/// What stands in front of an input file that runs the instructions.
class EarlierOptionTest : public InputFileTest {
 protected:
  std::int32_t runBehind(std::vector<std::string> arguments) {
    const ScopedDirectory directory(run.tree.dir("work"));
    const std::string in = run.inputFile("ACTION: RUN_INSTRUCTIONS\n");
    arguments.insert(arguments.end(), {"-vs:in", in});
    return run.run(arguments);
  }
};

TEST_F(EarlierOptionTest, ThatShowsTheVersionDoesNotKeepTheScriptFromRunning) {
  EXPECT_EQ(runBehind({"-vs:version"}), 0);
  EXPECT_EQ(run.out, "2.52\n");
  EXPECT_TRUE(scriptRan());
}

TEST_F(EarlierOptionTest, ThatExtractedDoesNotKeepTheScriptFromBeingBuiltAndRun) {
  run.jvmFile(10, "DESC: Java\n").launchScript("exit 0", "DESC: Product\n");
  EXPECT_EQ(runBehind({"-vs:extract"}), 0);
  EXPECT_TRUE(scriptRan());
  EXPECT_EQ(run.state.console.uiTitle, "Product");
}

TEST_F(EarlierOptionTest, ThatFailedDoesNotDecideTheResult) {
  const std::string failing = run.tree.file("failing.tag", "ACTION: VERIFY_JVM\n");
  EXPECT_EQ(runBehind({"-vs:in", failing}), 0);
  EXPECT_TRUE(scriptRan());
}

TEST_F(EarlierOptionTest, ThatInstalledAJvmDoesNotKeepTheScriptFromRunning) {
  EXPECT_EQ(runBehind({"-vs:in", run.tree.file("other.tag", "ACTION: INSTALL_JVM\n")}), 0);
  EXPECT_TRUE(scriptRan());
}

TEST_F(EarlierOptionTest, IsOverruledOnlyByALaterOne) {
  const std::string in = run.inputFile("ACTION: RUN_INSTRUCTIONS\n");
  EXPECT_EQ(run.run({"-vs:in", in, "-vs:version"}), 0);
  EXPECT_FALSE(scriptRan());
}

TEST_F(InputFileTest, BringsAScriptInPlaceOfTheEmbeddedOne) {
  const std::string script = run.tree.file("own.tag", "INSTRUCTIONS: SET S1 = own\n");
  EXPECT_EQ(runWith("ACTION: RUN_INSTRUCTIONS\nINSTRUCTIONS: " + script + "\n"), 0);
  EXPECT_EQ(run.s(1), "own");
  EXPECT_FALSE(scriptRan());
}

TEST_F(InputFileTest, BringsALaunchScriptInPlaceOfTheEmbeddedOne) {
  run.launchScript("exit 1", "DESC: Embedded\n");
  const std::string script = run.tree.file("own.tag", "DESC: Own\nCOMMAND: exit 3\n");
  const std::string instructions =
      run.tree.file("i.tag", "INSTRUCTIONS: LAUNCH " + run.tree.file("a.jvm") + " 0\n");
  EXPECT_EQ(runWith("ACTION: RUN_INSTRUCTIONS\nLAUNCHSCRIPT: " + script +
                    "\nINSTRUCTIONS: " + instructions + "\n"),
            3);
  EXPECT_EQ(run.out, "Own\n");
  EXPECT_EQ(run.state.console.uiTitle, "Own");
}

TEST_F(InputFileTest, LetsItsTitleWinOverTheLaunchScripts) {
  const std::string script = run.tree.file("own.tag", "DESC: Script\nCOMMAND: x\n");
  runWith("ACTION: RUN_INSTRUCTIONS\nUI_TITLE: Title\nLAUNCHSCRIPT: " + script + "\n");
  EXPECT_EQ(run.out, "Script\nTitle\n");
  EXPECT_EQ(run.state.console.uiTitle, "Title");
}

TEST_F(InputFileTest, LetsItsTitleWinOverTheEmbeddedLaunchScripts) {
  run.launchScript("x", "DESC: Embedded\n");
  runWith("ACTION: RUN_INSTRUCTIONS\nUI_TITLE: Title\n");
  EXPECT_EQ(run.out, "Title\nEmbedded\n");
  EXPECT_EQ(run.state.console.uiTitle, "Title");
}

TEST_F(InputFileTest, PrintsNoTitleInSilence) {
  run.run({"-silent", "-vs:in", run.inputFile("ACTION: RUN_INSTRUCTIONS\nUI_TITLE: Title\n")});
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.state.console.uiTitle, "Title");
}

/// What SEARCH tries, from the log.
class SearchedFilesTest : public InputFileTest {
 protected:
  std::string search(const std::string& keys) {
    runWith("ACTION: SEARCH\n" + keys);
    std::string descriptions;
    const std::string log = run.log();
    const std::string mark = "Searching for ";
    const std::string kind = " using path hints";
    for (std::size_t at = log.find(mark); at != std::string::npos; at = log.find(mark, at + 1)) {
      const std::string line = log.substr(at + mark.size(), log.find('\n', at) - at - mark.size());
      if (line.ends_with(kind)) descriptions += line.substr(0, line.size() - kind.size());
    }
    return descriptions;
  }
  std::string jvmFile(const std::string& description) {
    return run.tree.file(description + ".jvm", "DESC: " + description + "\nJVM_PROPERTIES: a=b\n");
  }
};

TEST_F(SearchedFilesTest, ComeInTheirOrderAndBeforeTheEmbeddedOnes) {
  run.jvmFile(10, "DESC: C\nJVM_PROPERTIES: a=b\n");
  EXPECT_EQ(search("JVM:\n" + jvmFile("B") + "\n" + jvmFile("A") + "\n/:\n"), "BAC");
}

TEST_F(SearchedFilesTest, LeaveOutEmptyNames) {
  EXPECT_EQ(search("JVM:\n\"\"\n" + jvmFile("A") + "\n\"\"\n/:\n"), "A");
  EXPECT_EQ(run.out, "0\n");
}

TEST_F(SearchedFilesTest, AreMarkedInTheLauncherFileAlsoWhenTheirNamesAreEmpty) {
  const struct {
    const char* keys;
    bool marked;
  } kMarks[] = {{"", false}, {"JVM: \"\"\n", true}};
  for (const auto& [keys, marked] : kMarks) {
    DriverRun other;
    other.script({"// nothing"});
    other.run({"-vs:in", other.inputFile(std::string("ACTION: RUN_INSTRUCTIONS\n") + keys)});
    EXPECT_EQ(other.state.launcherFile.hasJvmFilesFromInput(), marked) << keys;
  }
  search("JVM: " + jvmFile("A") + "\n");
  EXPECT_TRUE(run.state.launcherFile.hasJvmFilesFromInput());
}

class VerificationClassTest : public InputFileTest {
 protected:
  /// The command by which a JVM is verified with the keys.
  std::string commandWith(const std::string& keys) {
    run.verificationClass();
    const std::string jvm =
        run.tree.file("a.jvm", jvmFileText("17", "PATH_HINT: " + run.javaHome("jdk", "17") + "\n"));
    runWith("ACTION: SEARCH\nJVM: " + jvm + "\n" + keys);
    const std::string mark = "Executing launch script command: ";
    const std::string log = run.log();
    const std::size_t start = log.find(mark) + mark.size();
    return log.substr(start, log.find(" in working directory", start) - start);
  }
};

TEST_F(VerificationClassTest, IsTheOneThatTheInputFileNames) {
  EXPECT_THAT(commandWith("VERIFY_CLASSPATH: /my/verify.jar\nVERIFY_CLASS_NAME: MyVerify\n"),
              testing::AllOf(HasSubstr("/my/verify.jar"), HasSubstr(" MyVerify java.version")));
  EXPECT_THAT(run.tempFiles(), IsEmpty());
}

TEST_F(VerificationClassTest, IsTheEmbeddedOneUnlessBothKeysAreThere) {
  EXPECT_THAT(commandWith("VERIFY_CLASSPATH: /my/verify.jar\n"),
              testing::AllOf(Not(HasSubstr("/my/")), HasSubstr("\"Verify\" java.version")));
}

TEST_F(VerificationClassTest, IsTheEmbeddedOneWithoutAClassPath) {
  EXPECT_THAT(commandWith("VERIFY_CLASS_NAME: MyVerify\n"), HasSubstr("\"Verify\" java.version"));
}

TEST_F(InputFileTest, SetsNothingOfTheRunWhenItCannotBeRead) {
  const std::string before = str(run.state.log.fileName);
  run.run({"-vs:in", run.inputFile("LOGFILE: /other\nno colon\n")});
  EXPECT_EQ(str(run.state.log.fileName), before);
}

}  // namespace
}  // namespace vessant::test
