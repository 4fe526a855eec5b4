// What a launch command is told that calls its macro functions wrongly.

#include "LaunchRoom.h"

namespace vessant::test {
namespace {

class FunctionError : public LaunchRoom {
 protected:
  /// The list of `count` arguments.
  static std::string list(int count) {
    std::string arguments;
    for (int i = 0; i < count; ++i) arguments += ",\"" + std::to_string(i) + "\"";
    return "(" + (arguments.empty() ? arguments : arguments.substr(1)) + ")";
  }
};

TEST_F(FunctionError, TellsAWrongCountOfArguments) {
  struct Row {
    const char* function;
    std::vector<int> counts;
    const char* message;
  };
  const Row rows[] = {
      {"REPLACE", {0, 1, 2, 4}, "REPLACE function requires 3 arguments."},
      {"RUNTIME_SYSTEMPROP", {1, 2}, "RUNTIME_SYSTEMPROP function takes no arguments."},
      {"RUNTIME_JAVAARGS", {1, 2}, "RUNTIME_JAVAARGS function takes no arguments."},
      {"SYSTEMPROP", {0, 1, 3}, "SYSTEMPROP function requires 2 arguments."},
      {"IF_EXISTS", {0, 1, 3}, "IF_EXISTS function requires 2 arguments."},
      {"LAUNCHER_FILE", {1, 2}, "LAUNCHER_FILE function takes 0 arguments."},
      {"LAUNCHER_DIR", {1, 2}, "LAUNCHER_DIR function takes 0 arguments."},
      {"APPLICATION_ARCHIVE", {2, 3}, "APPLICATION_ARCHIVE function takes 0 arguments."},
      {"TEMP_DIR", {1, 2}, "TEMP_DIR function takes 0 arguments."},
  };
  for (const Row& row : rows) {
    for (const int count : row.counts) {
      const std::string call = std::string("%") + row.function + "%" + list(count);
      run.log.clear();
      EXPECT_EQ(scriptError("java " + call), row.message) << call;
      EXPECT_EQ(run.log.texts(), (Texts{"Launch command:", "java " + call}));
    }
  }
}

TEST_F(FunctionError, TellsAnUnknownNameWithoutReadingItsList) {
  for (const std::string name : {"NOPE", "temp_dir", "TEMP_DIRS", "CP ", " CP", "-"}) {
    for (const char* tail : {"()", "", "(\"", "(x"}) {
      EXPECT_EQ(scriptError("%" + name + "%" + tail), "Invalid function name (" + name + ").");
    }
  }
}

TEST_F(FunctionError, ReadsTheListBeforeItsCountIsChecked) {
  EXPECT_EQ(scriptError("%REPLACE%(\"a\" x"), "Expected right parenthesis. (near character 13)");
  EXPECT_EQ(scriptError("%TEMP_DIR%"), "Expected left parenthesis. (near character 10)");
  EXPECT_EQ(scriptError("%IF_EXISTS%(\"X\",'y')"), "Expected string arg. (near character 16)");
}

TEST_F(FunctionError, ShowsTheCommandAsFarAsItIsExpanded) {
  EXPECT_EQ(scriptError("%LAUNCHER_FILE%() %TEMP_DIR%(\"x\") %LAUNCHER_FILE%()"),
            "TEMP_DIR function takes 0 arguments.");
  const std::string launcher = str(launcherFileName);
  EXPECT_EQ(run.log.lines(), (std::vector<Line>{{"Launch command:", LogLevel::Information},
                                                {launcher + " %TEMP_DIR%(\"x\") %LAUNCHER_FILE%()",
                                                 LogLevel::Information}}));
}

TEST_F(FunctionError, CountsThePositionInTheExpandedText) {
  launcherFileName = "/x/y";
  EXPECT_EQ(scriptError("%LAUNCHER_FILE%()%TEMP_DIR%"),
            "Expected left parenthesis. (near character 14)");
}

TEST_F(FunctionError, LeavesTheLogAloneForAMissingQuote) {
  EXPECT_EQ(thrownMessage([&] { static_cast<void>(resolve("%REPLACE%(\"a")); }),
            "Expected double quote to end argument near 11");
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(FunctionError, TakesAPercentSignAndWhatFollowsForAName) {
  EXPECT_EQ(resolve("100%%"), "100%");
  EXPECT_EQ(scriptError("100%% %TEMP_DIR%()"), "Invalid function name (% ).");
  EXPECT_EQ(scriptError("%%%%"), "Invalid function name (%).");
}

TEST_F(FunctionError, EndsAFunctionThatCallsItself) {
  launcherFileName = text("/" + std::string(4000, 'x') + "/%LAUNCHER_FILE%()");
  EXPECT_EQ(scriptError("%LAUNCHER_FILE%()"),
            "The expansion of a macro never ends: %LAUNCHER_FILE%()");
  setJvmTag("SYSTEM", std::string(4000, 'x') + "%SYSTEMPROP%(\"a\",\"b\")");
  EXPECT_EQ(scriptError("%SYSTEMPROP%(\"a\",\"b\")"),
            "The expansion of a macro never ends: %SYSTEMPROP%(\"a\",\"b\")");
}

TEST_F(FunctionError, EndsAClassPathThatHoldsItself) {
  setJvmTag("JVM_CLASSPATH", "%CP%()");
  EXPECT_EQ(scriptError("java %CP%()"), "The expansion of a macro never ends: java %CP%()");
}

TEST_F(FunctionError, EndsATagAndAVariableThatLeadBackToThemselves) {
  setJvmTag("A", "@B@");
  setJvmTag("B", "x @A@");
  EXPECT_EQ(scriptError("@A@"), "The expansion of a macro never ends: @A@");
  run.platform.environment["LOOP"] = "#LOOP#";
  EXPECT_EQ(scriptError("#LOOP#"), "The expansion of a macro never ends: #LOOP#");
}

TEST_F(FunctionError, LogsTheCommandAsItWasBeforeTheEndlessPass) {
  setJvmTag("LOOP", "x@LOOP@");
  EXPECT_EQ(scriptError("%IF_EXISTS%(\"LOOP\",\"yes\") @LOOP@"),
            "The expansion of a macro never ends: yes @LOOP@");
  EXPECT_EQ(run.log.texts(), (Texts{"Launch command:", "yes @LOOP@"}));
}

TEST_F(FunctionError, LogsTheCommandWhenAnArgumentNeverEnds) {
  setJvmTag("LOOP", "@LOOP@");
  EXPECT_EQ(scriptError("a %SYSTEMPROP%(\"n\",\"@LOOP@\")"),
            "The expansion of a macro never ends: @LOOP@");
  EXPECT_EQ(run.log.texts(), (Texts{"Launch command:", "a %SYSTEMPROP%(\"n\",\"@LOOP@\")"}));
}

/// What one failed run leaves behind does not reach the next.
TEST_F(FunctionError, OfAnArchiveIsTheSameTheSecondTime) {
  TagFile tags;
  tags.setValue("COMMAND", "%CP%()");
  tags.setValue("ARCHIVE", "%NONE%()");
  LaunchScript script(tags, true, launch);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(thrownMessage([&] { static_cast<void>(script.resolveCommand(jvmFile)); }),
              "Launch script error: Invalid function name (NONE).");
  }
}

}  // namespace
}  // namespace vessant::test
