// The texts of statements that a command refuses. They carry the number of their statement.

#include "InstructionsFixture.h"

namespace vessant::test {
namespace {

class CommandError : public InstructionsFixture {
 protected:
  struct Row {
    const char* statement;
    const char* message;
  };

  template <std::size_t count>
  void expectErrors(const Row (&rows)[count]) {
    for (const Row& row : rows) {
      EXPECT_EQ(errorIn(row.statement), (ScriptError{row.message, kLine})) << row.statement;
      EXPECT_TRUE(actions.calls.empty()) << row.statement;
    }
  }
};

TEST_F(CommandError, TellsAMissingArgument) {
  expectErrors({
      {"FIND_JVM",
       "The first argument to FIND_JVM should be a 1 if the UI should be displayed or a 0 if the "
       "UI should be suppressed."},
      {"FIND_JVM 1",
       "The second argument to FIND_JVM should be a 1 if a find failure message should be "
       "displayed in a UI or 0 if no message should be displayed."},
      {"GOTO", "The GOTO command requires a label as its only argument."},
      {"ILAUNCH", "The first argument to ILAUNCH should be the file index number of the jvm file."},
      {"ILAUNCH 3",
       "The second argument to ILAUNCH should be the number of seconds to display the UI during "
       "the launch."},
      {"INSTALL_JVM", "The first argument to INSTALL_JVM should be a 0, 1 or 2."},
      {"JMP0 0", "JMP0 requires a jump label as its second argument."},
      {"JMP0 1", "JMP0 requires a jump label as its second argument."},
      {"LAUNCH my.jvm",
       "The second argument to LAUNCH should be the number of seconds to display the UI during "
       "the launch."},
      {"LAUNCH \"my jvm.jvm\"",
       "The second argument to LAUNCH should be the number of seconds to display the UI during "
       "the launch."},
      {"SET", "SET statement is missing =."},
      {"VERIFY",
       "The first argument to VERIFY should be a 1 if the UI should be displayed or a 0 if the UI "
       "should be suppressed."},
      {"VERIFY 1",
       "The second argument to VERIFY should be a 1 if a find failure message should be displayed "
       "in a UI or 0 if no message should be displayed."},
      {"VERIFY 1 0",
       "The third argument to VERIFY should be the file index number of the jvm file."},
      {"EXECUTE_LAUNCHER",
       "The first argument to ILAUNCH should be the file index number of the jvm file."},
  });
}

TEST_F(CommandError, CountsBlanksAtTheEndAsMissing) {
  expectErrors({
      {"GOTO  \t ", "The GOTO command requires a label as its only argument."},
      {"INSTALL_JVM ", "The first argument to INSTALL_JVM should be a 0, 1 or 2."},
      {"JMP0 0 ", "JMP0 requires a jump label as its second argument."},
      {"VERIFY 1 0  ",
       "The third argument to VERIFY should be the file index number of the jvm file."},
  });
}

TEST_F(CommandError, RefusesAnInstallModeBeyondTwo) {
  const char* const message = "The first argument to INSTALL_JVM should be a 0, 1 or 2.";
  expectErrors({
      {"INSTALL_JVM 3", message},
      {"INSTALL_JVM -1", message},
      {"INSTALL_JVM 99999999999", message},
  });
}

TEST_F(CommandError, TellsABadNumberInTheReadersOwnWords) {
  expectErrors({
      {"FIND_JVM x 1", "Invalid numeric expression (x)"},
      {"FIND_JVM 1 y", "Invalid numeric expression (y)"},
      {"ILAUNCH x 1", "Invalid numeric expression (x)"},
      {"INSTALL_JVM x", "Invalid numeric expression (x)"},
      {"VERIFY x 0 1", "Invalid numeric expression (x)"},
      {"VERIFY 0 - 1", "Invalid numeric expression (-)"},
      {"VERIFY 0 0 x", "Invalid numeric expression (x)"},
      {"EXECUTE_LAUNCHER \"4\"", "Invalid numeric expression (\"4\")"},
  });
}

TEST_F(CommandError, TellsABadNumberOfSecondsBehindABlank) {
  expectErrors({
      {"ILAUNCH 3 x", " Invalid numeric expression (x)"},
      {"LAUNCH my.jvm x", " Invalid numeric expression (x)"},
  });
}

TEST_F(CommandError, TellsABooleanOtherThanZeroAndOne) {
  expectErrors({
      {"FIND_JVM 1 2", " Invalid boolean value (2)"},
      {"FIND_JVM -1 1", " Invalid boolean value (-1)"},
      {"VERIFY 2 1 1", " Invalid boolean value (2)"},
      {"VERIFY 1 10x 1", " Invalid boolean value (10x)"},
  });
}

TEST_F(CommandError, TellsAnUnpairedVariableMark) {
  expectErrors({
      {"FIND_JVM @N1 1", " Invalid variable specification."},
      {"ILAUNCH 1 @", " Invalid variable specification."},
      {"INSTALL_JVM 1@", " Invalid variable specification."},
  });
}

TEST_F(CommandError, NamesJmp0InFrontOfABadValue) {
  expectErrors({
      {"JMP0 x label",
       "The second argument to JMP0 must be numeric.Invalid numeric expression (x)"},
      {"JMP0 @ label",
       "The second argument to JMP0 must be numeric. Invalid variable specification."},
      {"JMP0", "The second argument to JMP0 must be numeric. Empty expression."},
  });
}

TEST_F(CommandError, ChecksTheArgumentsFromLeftToRight) {
  expectErrors({
      {"FIND_JVM x", "Invalid numeric expression (x)"},
      {"VERIFY 1 2", " Invalid boolean value (2)"},
      {"ILAUNCH x", "Invalid numeric expression (x)"},
      {"JMP0 x", "The second argument to JMP0 must be numeric.Invalid numeric expression (x)"},
  });
}

}  // namespace
}  // namespace vessant::test
