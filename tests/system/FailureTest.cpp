// Every way in which a run ends without having done its job: what the user sees, what the log
// holds, and the exit status.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kNotLoaded = "Could not load the input file.";
constexpr const char* kNotOpened =
    "Unable to open input file specified on the command line after the -in option.";
constexpr const char* kInvalidAction = "Invalid action in input file: ";

struct InputFailure : SystemTest {
  /// A run that ends with status 255, this on the console and this as the log's last line.
  void expectFailure(const std::vector<std::string>& arguments, const std::string& out,
                     const std::string& logged) {
    EXPECT_THAT(runLogged(arguments), Ended(255, out));
    EXPECT_THAT(log(), EndsWith("ERROR: " + logged + "\n"));
  }
  std::string inputFile(const std::string& text) {
    return tree.file("input.tag", tag("LOGFILE", logName()) + text);
  }
};

TEST_F(InputFailure, WithoutAName) {
  EXPECT_THAT(runLogged({"-vs:in"}),
              Ended(255, "An input file name must follow the '-in' command line option.\n"));
  EXPECT_FALSE(std::filesystem::exists(logName()));
}

TEST_F(InputFailure, WithAnEmptyName) {
  const std::string out = std::string(kNotLoaded) + kNotOpened + "\n" + kNotOpened + "\n";
  expectFailure({"-vs:in", ""}, out, kNotOpened);
  expectFailure({"-vs:in", "\"\""}, out, kNotOpened);
}

TEST_F(InputFailure, WithAFileThatCannotBeOpened) {
  expectFailure({"-vs:in", tree.path("missing")},
                std::string(kNotLoaded) + kNotOpened + "\n" + kNotOpened + "\n", kNotOpened);
}

TEST_F(InputFailure, WithADirectoryWhichReadsAsAnEmptyFile) {
  EXPECT_THAT(runLogged({"-vs:in", tree.dir("directory")}),
              Ended(255, std::string(kInvalidAction) + "\n" + kInvalidAction + "\n"));
}

TEST_F(InputFailure, WithASyntaxError) {
  const std::string path = tree.file("input.tag", "ACTION: SEARCH\n\n  oops\n");
  const std::string error =
      "Syntax error in " + path + " at line 3 ==> Missing colon at the end of the tag name.";
  expectFailure({"-vs:in", path}, kNotLoaded + error + "\n" + error + "\n", error);
}

TEST_F(InputFailure, WithASyntaxErrorNamesTheFileAsItWasGiven) {
  const std::string quoted = "\"" + tree.file("in put.tag", "oops\n") + "\"";
  const std::string error =
      "Syntax error in " + quoted + " at line 1 ==> Missing colon at the end of the tag name.";
  expectFailure({"-vs:in", quoted}, kNotLoaded + error + "\n" + error + "\n", error);
}

TEST_F(InputFailure, WithAnUnclosedQuote) {
  const std::string path = tree.file("input.tag", "ACTION: \"SEARCH\n");
  const std::string error = "Expected double quote to end argument near 9";
  expectFailure({"-vs:in", path}, kNotLoaded + error + "\n" + error + "\n", error);
}

struct NamedFile : InputFailure, ::testing::WithParamInterface<const char*> {};

TEST_P(NamedFile, ThatCannotBeReadIsToldTwice) {
  const std::string missing = tree.path("missing.tag");
  const std::string error = "Unable to load input file: " + missing;
  expectFailure({"-vs:in", inputFile("ACTION: RUN_INSTRUCTIONS\n" + tag(GetParam(), missing))},
                error + "\n" + error + "\n", error);
}

TEST_P(NamedFile, WithASyntaxErrorIsToldTwice) {
  const std::string named = tree.file("named.tag", "oops\n");
  const std::string error =
      "Syntax error in " + named + " at line 1 ==> Missing colon at the end of the tag name.";
  expectFailure({"-vs:in", inputFile("ACTION: RUN_INSTRUCTIONS\n" + tag(GetParam(), named))},
                error + "\n" + error + "\n", error);
}

INSTANTIATE_TEST_SUITE_P(Keys, NamedFile, ::testing::Values("INSTRUCTIONS", "LAUNCHSCRIPT", "JVM"));

TEST_F(InputFailure, WithALauncherFileThatCannotBeLoaded) {
  file.add(9, 9, "no such type", "");
  const std::string error =
      "Unable to load the launcher file index. Invalid file type in file index.";
  expectFailure({"-vs:in", inputFile("ACTION: RUN_INSTRUCTIONS\n")}, error + "\n", error);
}

struct MissingKey : InputFailure, ::testing::WithParamInterface<const char*> {};

TEST_P(MissingKey, OfAVerificationIsOnlyLogged) {
  const std::string action = "ACTION: VERIFY_JVM\nSHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 1\n";
  expectFailure({"-vs:in", inputFile(action + GetParam())}, "",
                "TO execute the VERIFY_JVM action, you must also provide values in the input file "
                "for VERIFY_JVM_FILE and VERIFY_JVM_HOME.");
}

INSTANTIATE_TEST_SUITE_P(Keys, MissingKey,
                         ::testing::Values("", "VERIFY_JVM_FILE: a\n", "VERIFY_JVM_HOME: a\n",
                                           "VERIFY_JVM_FILE: \"\"\nVERIFY_JVM_HOME: a\n"));

struct MissingInstallKey : InputFailure, ::testing::WithParamInterface<const char*> {};

TEST_P(MissingInstallKey, OfAnInstallationIsNoFailure) {
  const std::string action = "ACTION: INSTALL_JVM\n" + std::string(GetParam());
  EXPECT_THAT(runLogged({"-vs:in", inputFile(action)}), Ended(0, ""));
  EXPECT_THAT(log(), Not(HasSubstr("ERROR")));
  // The progress count is set all the same.
  EXPECT_THAT(run({"-vs:in", inputFile(action + "SHOW_PROGRESS: 1\n")}), Ended(0, "\n"));
}

INSTANTIATE_TEST_SUITE_P(Keys, MissingInstallKey,
                         ::testing::Values("", "INSTALL_JVM_EXE: a\n", "INSTALL_JVM_DEST: a\n"));

struct UnknownAction : InputFailure, ::testing::WithParamInterface<const char*> {};

TEST_P(UnknownAction, IsToldTwice) {
  const std::string action = GetParam();
  const std::string line = action.empty() ? "" : tag("ACTION", action);
  const std::string error = kInvalidAction + action;
  expectFailure({"-vs:in", inputFile(line)}, error + "\n" + error + "\n", error);
}

INSTANTIATE_TEST_SUITE_P(Values, UnknownAction,
                         ::testing::Values("", "search", "SEARCH ", "SEARCH_ALL_", "RUN"));

TEST_F(InputFailure, IsOnlyLoggedInSilence) {
  expectFailure({"-vs:silent", "-vs:in", inputFile("ACTION: JUMP\n")}, "",
                "Invalid action in input file: JUMP");
  expectFailure({"-silent", "-vs:in", tree.path("missing")}, "", kNotOpened);
}

struct RunStatus : SystemTest {};

TEST_F(RunStatus, IsZeroForOneShotActions) {
  EXPECT_EQ(runBare({"-vs:version"}).status, 0);
  EXPECT_EQ(runBare({"-vs:extract"}).status, 0);
}

TEST_F(RunStatus, IsThatOfTheOptionErrorWithoutADefaultFlow) {
  EXPECT_EQ(runBare({"-vs:extract", "-vs:log"}).status, 255);
}

TEST_F(RunStatus, Is255WithoutAScript) {
  EXPECT_EQ(run().status, 255);
}

TEST_F(RunStatus, Is255ForAnErrorOfTheScript) {
  addScript({"NONSENSE"});
  EXPECT_EQ(run().status, 255);
}

TEST_F(RunStatus, ShowsAnErrorOnceAndLogsIt) {
  addScript({"INSTALL_JVM 1"});
  EXPECT_THAT(runLogged(), Ended(255,
                                 "\nPreparing Java(tm) Virtual Machine...\n"
                                 "No JVM installer was included in the launcher.\n"));
  EXPECT_THAT(log(), EndsWith("ERROR: No JVM installer was included in the launcher.\n"));
}

TEST_F(RunStatus, ShowsNoLaunchFailureOfARunThatEndedWithAnErrorLater) {
  addScript({"FIND_JVM 0 0", "LAUNCH \"@S2@\" 0", "NONSENSE"});
  addLaunchScript(kJavaCommand, "");
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  // The failure message belongs to every result but 0.
  EXPECT_THAT(run(), Ended(255,
                           "Demo\nError in instructions. Invalid command (NONSENSE).  Line "
                           "number (3)\nprogram error\n\n"));
}

}  // namespace
}  // namespace vessant::test
