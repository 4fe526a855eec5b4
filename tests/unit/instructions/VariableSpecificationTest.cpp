// The reading of a variable's type and number.

#include "InstructionsFixture.h"
#include "launcher/instructions/StatementArguments.h"

namespace vessant::test {
namespace {

void expectRefused(const char* text, const std::string& message) {
  const ScriptError error =
      scriptError([&] { static_cast<void>(parseVariableSpecification(text, "In front.")); });
  EXPECT_EQ(error, (ScriptError{"In front. " + message, ScriptError::kNoLine})) << text;
}

TEST(VariableSpecificationReading, YieldsTypeAndNumber) {
  struct Row {
    const char* text;
    char type;
    std::int32_t number;
  };
  const Row rows[] = {{"N1", 'N', 1},     {"N5", 'N', 5},  {"n3", 'N', 3},  {"S1", 'S', 1},
                      {"S10", 'S', 10},   {"s4", 'S', 4},  {"N1x", 'N', 1}, {"s 3", 'S', 3},
                      {"S\t\n7", 'S', 7}, {"N+2", 'N', 2}, {"S05", 'S', 5}, {"N4.9", 'N', 4}};
  for (const Row& row : rows) {
    const VariableSpecification variable = parseVariableSpecification(row.text, "");
    EXPECT_EQ(variable.type, row.type) << row.text;
    EXPECT_EQ(variable.number, row.number) << row.text;
  }
}

TEST(VariableSpecificationReading, RefusesLessThanTwoCharacters) {
  for (const char* text : {"", "N", "S", "1"}) {
    expectRefused(text, "Variable references must be at least 2 characters (e.g. N1 and S10).");
  }
}

TEST(VariableSpecificationReading, RefusesAnotherType) {
  for (const std::string text : {"X1", "11", " N1", "@1", "M5", "T5"}) {
    expectRefused(text.c_str(), "Invalid variable reference (" + text +
                                    "). Must use N or S as the variable type, e.g. N2 or S1.");
  }
}

TEST(VariableSpecificationReading, RefusesANumberOutOfBounds) {
  for (const std::string rest : {"0", "6", "10", "-1", "99999999999", "x", " ", "-", "+ 1"}) {
    expectRefused(("N" + rest).c_str(), "Variable number is invalid (" + rest + ")");
  }
  for (const std::string rest : {"0", "11", "-10", "4294967297", "ten"}) {
    expectRefused(("S" + rest).c_str(), "Variable number is invalid (" + rest + ")");
  }
}

TEST(VariableText, IsTheValueInDecimalOrAsItStands) {
  RecordingActions actions;
  actions.setNumericVariable(5, -2147483647 - 1);
  actions.setStringVariable(10, " @N1@ ");
  EXPECT_EQ(variableText({'N', 5}, actions), "-2147483648");
  EXPECT_EQ(variableText({'N', 1}, actions), "0");
  EXPECT_EQ(variableText({'S', 10}, actions), " @N1@ ");
  EXPECT_EQ(variableText({'S', 1}, actions), "");
}

}  // namespace
}  // namespace vessant::test
