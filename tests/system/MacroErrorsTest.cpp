// Errors in launch commands: nothing is run, the user sees one line, the log the command.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

struct BadCommand {
  const char* command;
  const char* message;
};

void PrintTo(const BadCommand& bad, std::ostream* out) {
  *out << ::testing::PrintToString(std::string(bad.command));
}

struct MacroErrors : SystemTest {
  ProcessResult launch(const std::string& command, const std::string& more = "") {
    addScript({"ILAUNCH 3 0"});
    addLaunchScript(command, "DISPLAY_CONSOLE: 1\n" + more);
    addJvmFile("17", "JVM_HOME: /opt/java17\nEMPTY: \"\"\n");
    return runLogged();
  }
};

struct MacroError : MacroErrors, ::testing::WithParamInterface<BadCommand> {};

TEST_P(MacroError, IsShownAndTheCommandLogged) {
  const std::string message = "Launch script error: " + std::string(GetParam().message);
  EXPECT_THAT(launch(GetParam().command), Ended(255, "Demo\n" + message + "\n"));
  EXPECT_THAT(log(), EndsWith("Launch command:\n" + std::string(GetParam().command) +
                              "\nERROR: " + message + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, MacroError,
    ::testing::Values(
        BadCommand{"%TEMP_DIR%", "Expected left parenthesis. (near character 10)"},
        BadCommand{"a %TEMP_DIR%  x", "Expected left parenthesis. (near character 12)"},
        BadCommand{"%CP%(", "Expected string arg. (near character 5)"},
        BadCommand{"%CP%('x')", "Expected string arg. (near character 5)"},
        BadCommand{"%IF_EXISTS%(\"X\",'y')", "Expected string arg. (near character 16)"},
        BadCommand{"%CP%(\"x\" \"y\")", "Expected right parenthesis. (near character 8)"},
        BadCommand{"%NO_SUCH%()", "Invalid function name (NO_SUCH)."},
        BadCommand{"%cp%()", "Invalid function name (cp)."},
        BadCommand{"100%% %TEMP_DIR%()", "Invalid function name (% )."},
        BadCommand{"%%%%", "Invalid function name (%)."},
        BadCommand{"%REPLACE%(\"a\",\"b\")", "REPLACE function requires 3 arguments."},
        BadCommand{"%RUNTIME_SYSTEMPROP%(\"a\")",
                   "RUNTIME_SYSTEMPROP function takes no arguments."},
        BadCommand{"%RUNTIME_JAVAARGS%(\"a\")", "RUNTIME_JAVAARGS function takes no arguments."},
        BadCommand{"%SYSTEMPROP%(\"a\")", "SYSTEMPROP function requires 2 arguments."},
        BadCommand{"%IF_EXISTS%()", "IF_EXISTS function requires 2 arguments."},
        BadCommand{"%LAUNCHER_FILE%(\"a\")", "LAUNCHER_FILE function takes 0 arguments."},
        BadCommand{"%LAUNCHER_DIR%(\"a\")", "LAUNCHER_DIR function takes 0 arguments."},
        BadCommand{"%APPLICATION_ARCHIVE%(\"a\",\"b\")",
                   "APPLICATION_ARCHIVE function takes 0 arguments."},
        BadCommand{"%TEMP_DIR%(\"a\")", "TEMP_DIR function takes 0 arguments."}));

TEST_F(MacroErrors, TellWhereAQuoteWasOpenedAndLogNoCommand) {
  EXPECT_THAT(launch("%CP%(\"x)"),
              Ended(255, "Demo\nExpected double quote to end argument near 6\n"));
  EXPECT_THAT(log(), Not(HasSubstr("Launch command:")));
}

TEST_F(MacroErrors, ShowTheCommandAsFarAsItIsExpanded) {
  EXPECT_EQ(launch("%LAUNCHER_DIR%() %NONE%()").status, 255);
  EXPECT_THAT(log(), HasSubstr("Launch command:\n" + tree.path("app") + " %NONE%()\n"));
}

TEST_F(MacroErrors, EndAnArchiveThatHoldsTheClassPath) {
  EXPECT_THAT(launch("echo %CP%()", tag("ARCHIVE", "%CP%()")).status, 255);
}

struct GoodCommand {
  const char* command;
  const char* output;
};

void PrintTo(const GoodCommand& good, std::ostream* out) {
  *out << ::testing::PrintToString(std::string(good.command));
}

struct Macro : MacroErrors, ::testing::WithParamInterface<GoodCommand> {};

TEST_P(Macro, IsReplacedByItsValue) {
  environment["WHERE"] = "@JVM_HOME@ %CP%()";
  EXPECT_THAT(launch("echo '" + std::string(GetParam().command) + "'"),
              Ended(0, "Demo\n" + std::string(GetParam().output) + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, Macro,
    ::testing::Values(GoodCommand{"@JVM_HOME@/@JVM_EXE@", "/opt/java17/bin/java"},
                      GoodCommand{"<@NO_SUCH_TAG@>", "<>"}, GoodCommand{"a@@b", "a@b"},
                      GoodCommand{"#WHERE#", "@JVM_HOME@ %CP%()"},
                      GoodCommand{"<#NO_SUCH_VARIABLE#>", "<>"}, GoodCommand{"100%%", "100%"},
                      GoodCommand{"a lone % stays", "a lone % stays"},
                      GoodCommand{"%SYSTEMPROP%(\"a.b\",\"@JVM_EXE@\")", "-Da.b=bin/java"},
                      GoodCommand{"%IF_EXISTS%(\"JVM_EXE\",\"yes @JVM_EXE@\")", "yes bin/java"},
                      GoodCommand{"<%IF_EXISTS%(\"EMPTY\",\"yes\")>", "<>"},
                      GoodCommand{"<%IF_EXISTS%(\"NONE\",\"yes\")>", "<>"},
                      GoodCommand{"%IF_EXISTS%( \"JVM_EXE\" ,\t\"y\" , )", "y"},
                      GoodCommand{"%REPLACE%(\"a\",\"aa\",\"banana\")", "baanaanaa"},
                      GoodCommand{"%REPLACE%(\"\",\"x\",\"text\")", "text"},
                      GoodCommand{"%REPLACE%(\"/\",\"@EMPTY@:\",\"a/b\")", "a:b"},
                      GoodCommand{"%REPLACE%(\"x\",\"\"\"\",\"say xhix\")", "say \"hi\""},
                      GoodCommand{"%REPLACE%(\"x\",\"%SYSTEMPROP%(\"\"n\"\",\"\"v\"\")\",\"x\")",
                                  "-Dn=v"}));

TEST_F(MacroErrors, AreNoneWhenTheLastCallLacksOnlyItsParenthesis) {
  EXPECT_THAT(launch("echo %IF_EXISTS%(\"JVM_EXE\",\"B\""), Ended(0, "Demo\nB\n"));
}

TEST_F(MacroErrors, GoWithAnEmptyCommandThatRunsNothing) {
  EXPECT_THAT(launch(""), Ended(0, "Demo\n"));
}

TEST_F(MacroErrors, AreNotWhatACommandThatDoesNotExistGives) {
  const ProcessResult result = launch("/no/such/program");
  EXPECT_EQ(result.status, 127);
  EXPECT_EQ(result.out, "Demo\n");
}

TEST_F(MacroErrors, EndAValueThatNeverEnds) {
  const std::string values[] = {"@LOOP@", "@LOOP@@LOOP@", "@LOOP@ x", "x @LOOP@"};
  addScript({"ILAUNCH 3 0"});
  addLaunchScript("java @LOOP@", "DISPLAY_CONSOLE: 1\n");
  for (const std::string& value : values) {
    writeFile(tree.path("log"), "");
    const LauncherFileBuilder saved = file;
    addJvmFile("17", "LOOP: " + value + "\n");
    const std::string message =
        "Launch script error: The expansion of a macro never ends: java @LOOP@";
    EXPECT_THAT(runLogged(), Ended(255, "Demo\n" + message + "\n"));
    EXPECT_THAT(log(), EndsWith("Launch command:\njava @LOOP@\nERROR: " + message + "\n"));
    file = saved;
  }
}

TEST_F(MacroErrors, AreNoneInACommandOf20000Macros) {
  std::string macros;
  for (int i = 0; i < 20000; ++i) macros += "@EMPTY@";
  EXPECT_THAT(launch("echo '<" + macros + ">done'"), Ended(0, "Demo\n<>done\n"));
}

}  // namespace
}  // namespace vessant::test
