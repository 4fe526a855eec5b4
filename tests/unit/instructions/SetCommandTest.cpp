// SET: a variable, an equals sign and a value.

#include "InstructionsFixture.h"

namespace vessant::test {
namespace {

class SetCommand : public InstructionsFixture {
 protected:
  /// The text that "SET S1" and `assignment` leave in S1.
  std::string text(const std::string& assignment) {
    run({"SET S1 " + assignment});
    return stringVariable(1);
  }
  std::int32_t number(const std::string& assignment) {
    run({"SET N1 " + assignment});
    return actions.getNumericVariable(1);
  }
};

const char* const kLeftSide = "Invalid variable specified on left hand side of SET statement. ";

TEST_F(SetCommand, CutsAPlainTextAtTheFirstBlank) {
  EXPECT_EQ(text("= hello world"), "hello");
  EXPECT_EQ(text("= hi\tworld"), "hi");
  EXPECT_EQ(text("=tight"), "tight");
}

TEST_F(SetCommand, KeepsTheBlanksOfAQuotedText) {
  EXPECT_EQ(text("= \"hello world\""), "hello world");
  EXPECT_EQ(text("= \"  padded \" and more"), "  padded ");
  EXPECT_EQ(text("=\"say \"\"hi\"\" now\""), "say \"hi\" now");
}

TEST_F(SetCommand, SplitsAtTheFirstEqualsSign) {
  EXPECT_EQ(text("= a=b"), "a=b");
  EXPECT_EQ(text("== b"), "=");
}

TEST_F(SetCommand, LeavesAnEmptyRightSideEmpty) {
  actions.setStringVariable(1, "before");
  EXPECT_EQ(text("="), "");
  EXPECT_EQ(text("= \t "), "");
}

TEST_F(SetCommand, SubstitutesVariablesInTheText) {
  actions.setStringVariable(2, "two words");
  actions.setNumericVariable(3, -8);
  EXPECT_EQ(text("= @S2@/@N3@"), "two words/-8");
  EXPECT_EQ(text("= \"@S2@ too\""), "two words too");
  EXPECT_EQ(text("= @S4@"), "");
}

TEST_F(SetCommand, CopiesNumbers) {
  actions.setNumericVariable(1, 77);
  run({"SET N2 = @N1@"});
  EXPECT_EQ(actions.getNumericVariable(2), 77);
}

TEST_F(SetCommand, ReadsNumbersAsScanfDoes) {
  EXPECT_EQ(number("= 42"), 42);
  EXPECT_EQ(number("= -7x"), -7);
  EXPECT_EQ(number("= \"  +12 monkeys\""), 12);
  EXPECT_EQ(number("= 99999999999"), 2147483647);
  EXPECT_EQ(number("= -99999999999"), -2147483647 - 1);
}

TEST_F(SetCommand, ReachesEveryVariable) {
  for (std::int32_t i = 1; i <= InstructionActions::kStringVariables; ++i) {
    run({"SET S" + std::to_string(i) + " = value" + std::to_string(i)});
    EXPECT_EQ(stringVariable(i), "value" + std::to_string(i));
  }
  for (std::int32_t i = 1; i <= InstructionActions::kNumericVariables; ++i) {
    run({"SET n" + std::to_string(i) + " = " + std::to_string(i * 10)});
    EXPECT_EQ(actions.getNumericVariable(i), i * 10);
  }
}

TEST_F(SetCommand, TakesALowerCaseTypeAndBlanksAroundTheVariable) {
  run({"SET   s 4   =  x"});
  EXPECT_EQ(stringVariable(4), "x");
}

TEST_F(SetCommand, NeedsAnEqualsSign) {
  EXPECT_EQ(errorIn("SET S3"), (ScriptError{"SET statement is missing =.", kLine}));
  EXPECT_EQ(errorIn("SET S3 : x"), (ScriptError{"SET statement is missing =.", kLine}));
}

TEST_F(SetCommand, RefusesABadVariableWithoutALine) {
  const std::pair<const char*, const char*> rows[] = {
      {"SET = 3", "Variable references must be at least 2 characters (e.g. N1 and S10)."},
      {"SET S = 3", "Variable references must be at least 2 characters (e.g. N1 and S10)."},
      {"SET X1 = 3",
       "Invalid variable reference (X1). Must use N or S as the variable type, e.g. N2 or S1."},
      {"SET N6 = 3", "Variable number is invalid (6)"},
      {"SET S11 = 3", "Variable number is invalid (11)"},
      {"SET S0 = 3", "Variable number is invalid (0)"},
      {"SET Sx = 3", "Variable number is invalid (x)"},
  };
  for (const auto& [statement, message] : rows) {
    EXPECT_EQ(errorIn(statement),
              (ScriptError{std::string(kLeftSide) + message, ScriptError::kNoLine}));
  }
}

TEST_F(SetCommand, SubstitutesNothingOnTheLeftSide) {
  actions.setStringVariable(1, "N1");
  EXPECT_EQ(errorIn("SET @S1@ = 3"),
            (ScriptError{std::string(kLeftSide) +
                             "Invalid variable reference (@S1@). Must use N or S as the variable "
                             "type, e.g. N2 or S1.",
                         ScriptError::kNoLine}));
}

TEST_F(SetCommand, RefusesATextThatIsNoNumberWithoutALine) {
  const std::string message =
      "Invalid value specified for SET command Invalid numeric expression in ";
  EXPECT_EQ(errorIn("SET N1 = x"), (ScriptError{message + "x", ScriptError::kNoLine}));
  EXPECT_EQ(errorIn("SET N1 ="), (ScriptError{message, ScriptError::kNoLine}));
  actions.setStringVariable(1, "no number");
  EXPECT_EQ(errorIn("SET N1 = @S1@"), (ScriptError{message + "no number", ScriptError::kNoLine}));
}

TEST_F(SetCommand, RefusesAQuotedEmptyText) {
  const ScriptError error{"Invalid expression specified for SET command Empty expression.", kLine};
  EXPECT_EQ(errorIn("SET S1 = \"\""), error);
  EXPECT_EQ(errorIn("SET N1 = \"\""), error);
}

TEST_F(SetCommand, TellsABadReferenceInTheText) {
  EXPECT_EQ(errorIn("SET S1 = me@home"),
            (ScriptError{"Invalid expression specified for SET command Invalid variable "
                         "specification.",
                         kLine}));
}

TEST_F(SetCommand, TellsAMissingQuoteWithoutALine) {
  EXPECT_EQ(errorIn("SET S1 = \"open"),
            (ScriptError{"Expected double quote to end argument near 1", ScriptError::kNoLine}));
  EXPECT_EQ(errorIn("SET S1 = \"open\"\""),
            (ScriptError{"Expected double quote to end argument near -1", ScriptError::kNoLine}));
}

TEST_F(SetCommand, ChangesNothingWhenItFails) {
  actions.setNumericVariable(1, 5);
  actions.setStringVariable(1, "kept");
  EXPECT_EQ(errorIn("SET N1 = x").line, ScriptError::kNoLine);
  EXPECT_EQ(errorIn("SET S1 = @").line, kLine);
  EXPECT_EQ(actions.getNumericVariable(1), 5);
  EXPECT_EQ(stringVariable(1), "kept");
}

}  // namespace
}  // namespace vessant::test
