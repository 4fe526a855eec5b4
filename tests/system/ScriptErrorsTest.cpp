// Errors of instruction scripts as the user sees them: one line, status 255, nothing left behind.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::EndsWith;

struct BadStatement {
  const char* statement;
  const char* message;
};

void PrintTo(const BadStatement& bad, std::ostream* out) {
  *out << ::testing::PrintToString(std::string(bad.statement));
}

struct ScriptErrors : SystemTest {
  void expectError(const std::string& statement, const std::string& message) {
    addScript({"SET N2 = 2", statement, "NEVER_REACHED"});
    EXPECT_THAT(runLogged(), Ended(255, message + "\n"));
    EXPECT_THAT(log(), EndsWith("ERROR: " + message + "\n"));
  }
};

/// Errors that tell their line.
struct ScriptError : ScriptErrors, ::testing::WithParamInterface<BadStatement> {};

TEST_P(ScriptError, IsShownWithItsLine) {
  expectError(GetParam().statement,
              "Error in instructions. " + std::string(GetParam().message) + " Line number (2)");
}

INSTANTIATE_TEST_SUITE_P(
    Commands, ScriptError,
    ::testing::Values(
        BadStatement{"  ", "No command specified."},
        BadStatement{"find_jvm 0 0", "Invalid command (find_jvm). "},
        BadStatement{"//comment", "Invalid command (//comment). "},
        BadStatement{"\"SET\" N1 = 1", "Invalid command (\"SET\"). "},
        BadStatement{"FIND_JVM",
                     "The first argument to FIND_JVM should be a 1 if the UI should be displayed "
                     "or a 0 if the UI should be suppressed."},
        BadStatement{"FIND_JVM 0",
                     "The second argument to FIND_JVM should be a 1 if a find failure message "
                     "should be displayed in a UI or 0 if no message should be displayed."},
        BadStatement{"FIND_JVM 1 2", " Invalid boolean value (2)"},
        BadStatement{"FIND_JVM @N2@ 1", " Invalid boolean value (@N2@)"},
        BadStatement{"FIND_JVM x 1", "Invalid numeric expression (x)"},
        BadStatement{"GOTO", "The GOTO command requires a label as its only argument."},
        BadStatement{"GOTO nowhere", "Label not found (nowhere)"},
        BadStatement{"GOTO NEVER_REACHED", "Label not found (NEVER_REACHED)"},
        BadStatement{"GOTO @S1@", "Label @S1@ resolved to a blank string. Labels cannot be blank."},
        BadStatement{"GOTO @", "Invalid label specified. Invalid variable specification."},
        BadStatement{"ILAUNCH",
                     "The first argument to ILAUNCH should be the file index number of the jvm "
                     "file."},
        BadStatement{"ILAUNCH 1",
                     "The second argument to ILAUNCH should be the number of seconds to display "
                     "the UI during the launch."},
        BadStatement{"ILAUNCH 1 x", " Invalid numeric expression (x)"},
        BadStatement{"INSTALL_JVM", "The first argument to INSTALL_JVM should be a 0, 1 or 2."},
        BadStatement{"INSTALL_JVM 3", "The first argument to INSTALL_JVM should be a 0, 1 or 2."},
        BadStatement{"INSTALL_JVM -1", "The first argument to INSTALL_JVM should be a 0, 1 or 2."},
        BadStatement{"INSTALL_JVM x", "Invalid numeric expression (x)"},
        BadStatement{"JMP0", "The second argument to JMP0 must be numeric. Empty expression."},
        BadStatement{"JMP0 x y",
                     "The second argument to JMP0 must be numeric.Invalid numeric expression (x)"},
        BadStatement{"JMP0 0", "JMP0 requires a jump label as its second argument."},
        BadStatement{"JMP0 1", "JMP0 requires a jump label as its second argument."},
        BadStatement{"LAUNCH", "Invalid jvm file name specified in LAUNCH. Empty expression."},
        BadStatement{"LAUNCH @S1 5",
                     "Invalid jvm file name specified in LAUNCH. Invalid variable specification."},
        BadStatement{"LAUNCH \"a b\"",
                     "The second argument to LAUNCH should be the number of seconds to display the "
                     "UI during the launch."},
        BadStatement{"SET S3", "SET statement is missing =."},
        BadStatement{"SET", "SET statement is missing =."},
        BadStatement{"SET S1 = \"\"",
                     "Invalid expression specified for SET command Empty expression."},
        BadStatement{"SET S1 = @S2",
                     "Invalid expression specified for SET command Invalid variable "
                     "specification."},
        BadStatement{"VERIFY",
                     "The first argument to VERIFY should be a 1 if the UI should be displayed or "
                     "a 0 if the UI should be suppressed."},
        BadStatement{"VERIFY 0",
                     "The second argument to VERIFY should be a 1 if a find failure message should "
                     "be displayed in a UI or 0 if no message should be displayed."},
        BadStatement{"VERIFY 0 0",
                     "The third argument to VERIFY should be the file index number of the jvm "
                     "file."},
        BadStatement{"EXECUTE_LAUNCHER",
                     "The first argument to ILAUNCH should be the file index number of the jvm "
                     "file."}));

/// Errors that come from below the script, without a line.
struct PlainError : ScriptErrors, ::testing::WithParamInterface<BadStatement> {};

TEST_P(PlainError, IsShownAsItIs) {
  expectError(GetParam().statement, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, PlainError,
    ::testing::Values(
        BadStatement{"SET N1 = x",
                     "Invalid value specified for SET command Invalid numeric expression in x"},
        BadStatement{"SET N1 =",
                     "Invalid value specified for SET command Invalid numeric expression in "},
        BadStatement{"SET N6 = 1",
                     "Invalid variable specified on left hand side of SET statement. Variable "
                     "number is invalid (6)"},
        BadStatement{"SET S11 = 1",
                     "Invalid variable specified on left hand side of SET statement. Variable "
                     "number is invalid (11)"},
        BadStatement{"SET S = 1",
                     "Invalid variable specified on left hand side of SET statement. Variable "
                     "references must be at least 2 characters (e.g. N1 and S10)."},
        BadStatement{"SET X1 = 1",
                     "Invalid variable specified on left hand side of SET statement. Invalid "
                     "variable reference (X1). Must use N or S as the variable type, e.g. N2 or "
                     "S1."},
        BadStatement{"SET S1 = @N6@",
                     "Invalid expression specified for SET command  Variable number is invalid "
                     "(6)"},
        BadStatement{"SET S1 = \"open", "Expected double quote to end argument near 1"},
        BadStatement{"LAUNCH \"open 5",
                     "Expected ending quote in \"open 5Invalid jvm file name specified in LAUNCH."},
        BadStatement{"INSTALL_JVM 0", "No JVM installer was included in the launcher."},
        BadStatement{"VERIFY 0 0 99",
                     "Cannot verify jvm file at index 99 because it does not "
                     "exist."},
        BadStatement{"VERIFY 0 0 1",
                     "To verify a JVM, use an index of a jvm file. The index passed in was 1 which "
                     "corresponds to the file named install.script"}));

TEST_F(ScriptErrors, ALabelInTheFirstStatementIsNeverFound) {
  addScript({":start", "GOTO start"});
  EXPECT_THAT(run(),
              Ended(255, "Error in instructions. Label not found (start) Line number (2)\n"));
}

TEST_F(ScriptErrors, AFileToLaunchThatIsNotThereIsTold) {
  addScript({"LAUNCH \"no such file\" 0"});
  addLaunchScript(kJavaCommand);
  EXPECT_THAT(run(), Ended(255, "Demo\nUnable to load input file: no such file\n"));
}

TEST_F(ScriptErrors, ADoubledMarkInAnArgumentStandsForOne) {
  addScript({"LAUNCH a@@b 0"});
  addLaunchScript(kJavaCommand);
  EXPECT_THAT(run(), Ended(255, "Demo\nUnable to load input file: a@b\n"));
}

TEST_F(ScriptErrors, AreOnlyLoggedInSilence) {
  addScript({"NONSENSE"});
  EXPECT_THAT(runLogged({"-vs:silent"}), Ended(255, ""));
  EXPECT_THAT(log(), EndsWith("ERROR: Error in instructions. Invalid command (NONSENSE).  Line "
                              "number (1)\n"));
}

TEST_F(ScriptErrors, LeaveNothingOfWhatTheScriptMadeBefore) {
  addScript({"FIND_JVM 0 0", "LAUNCH @S2@ 0", "NONSENSE"});
  addLaunchScript("cat %APPLICATION_ARCHIVE%()");
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  file.add(kApplicationArchive, 9, "archive", "content\n");
  environment["PATH"] = "/usr/bin:/bin";
  EXPECT_THAT(run(), Ended(255,
                           "Demo\ncontent\nError in instructions. Invalid command (NONSENSE). "
                           " Line number (3)\n"));
}

struct ScriptFlow : ScriptErrors {
  /// What the variable holds when the statements are done, as an error message shows it.
  std::string valueAfter(std::vector<std::string> statements, const std::string& variable) {
    statements.push_back("SET S8 = \"<@" + variable + "@>\"");
    statements.push_back("SET N5 = \"@S8@\"");
    addScript(statements);
    const ProcessResult result = run();
    EXPECT_EQ(result.status, 255);
    const std::size_t start = result.out.find('<');
    return start == std::string::npos
               ? result.out
               : result.out.substr(start + 1, result.out.rfind('>') - start - 1);
  }
};

struct Assignment {
  const char* statement;
  const char* variable;
  const char* value;
};

void PrintTo(const Assignment& assignment, std::ostream* out) {
  *out << ::testing::PrintToString(std::string(assignment.statement));
}

struct ScriptAssignment : ScriptFlow, ::testing::WithParamInterface<Assignment> {};

TEST_P(ScriptAssignment, StoresItsValue) {
  EXPECT_EQ(valueAfter({"SET N1 = 41", "SET S2 = \"two words\"", GetParam().statement},
                       GetParam().variable),
            GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Statements, ScriptAssignment,
    ::testing::Values(Assignment{"SET S1 = hello world", "S1", "hello"},
                      Assignment{"SET S1 = \"hello world\" more", "S1", "hello world"},
                      Assignment{"SET S1=\"say \"\"hi\"\"\" ", "S1", "say \"hi\""},
                      Assignment{"SET S1 = a=b", "S1", "a=b"},
                      Assignment{"SET S1 = \"<@S2@>\"", "S1", "<two words>"},
                      Assignment{"SET s 10x = ok", "S10", "ok"},
                      Assignment{"SET N2 = @N1@", "N2", "41"},
                      Assignment{"SET N2 = @N1@1", "N2", "411"},
                      Assignment{"SET n2 = -5 and more", "N2", "-5"},
                      Assignment{"SET N2 = 99999999999", "N2", "2147483647"},
                      Assignment{"SET N2 = -99999999999", "N2", "-2147483648"}));

TEST_F(ScriptFlow, JumpsOverWhatAValueOfZeroLeavesOut) {
  EXPECT_EQ(valueAfter({"SET N1 = 0", "JMP0 @N1@ done", "SET S1 = not jumped", ":done"}, "S1"), "");
}

TEST_F(ScriptFlow, GoesOnAtAValueThatIsNotZero) {
  EXPECT_EQ(valueAfter({"SET N1 = -1", "JMP0 @N1@ done", "SET S1 = reached", ":done"}, "S1"),
            "reached");
}

TEST_F(ScriptFlow, JumpsToComputedLabelsForwardsAndBackwards) {
  EXPECT_EQ(valueAfter({"SET S1 = forth", "GOTO @S1@", ":back", "SET S2 = done", "GOTO out",
                        "// never here", ":forth", "SET S3 = been", "GOTO back", ":out"},
                       "S2"),
            "done");
}

TEST_F(ScriptFlow, DoesNothingForLabelsAndComments) {
  EXPECT_EQ(valueAfter({":label with more", "// a comment", "SET S1 = end"}, "S1"), "end");
}

}  // namespace
}  // namespace vessant::test
