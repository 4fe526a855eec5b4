// The readers of arguments that the commands share, with a context in front of their errors.

#include "InstructionsFixture.h"

namespace vessant::test {
namespace {

class ValueReader : public InstructionsFixture {
 protected:
  TagFile tags;
  InstructionRun reader{tags, actions};

  template <class Value>
  static ScriptError errorFrom(Value&& value) {
    return scriptError([&] { static_cast<void>(value()); });
  }
};

TEST_F(ValueReader, ReadsNumbers) {
  actions.setNumericVariable(2, 34);
  EXPECT_EQ(reader.numericValue("12", ""), 12);
  EXPECT_EQ(reader.numericValue("1@N2@", ""), 134);
  EXPECT_EQ(reader.numericValue("-5 apples", ""), -5);
  EXPECT_EQ(reader.shortValue("12", ""), 12);
  EXPECT_EQ(reader.shortValue("@N2@", ""), 34);
  EXPECT_EQ(reader.shortValue("98304", ""), -32768);
}

TEST_F(ValueReader, ReadsBooleans) {
  EXPECT_TRUE(reader.booleanValue("1", ""));
  EXPECT_FALSE(reader.booleanValue("0", ""));
  EXPECT_FALSE(reader.booleanValue("@N1@", ""));
}

TEST_F(ValueReader, LeavesTheTokenAsItIs) {
  const SString token = "@N1@";
  EXPECT_EQ(reader.numericValue(token, ""), 0);
  EXPECT_EQ(token, "@N1@");
}

TEST_F(ValueReader, PutsTheContextRightInFrontOfABadNumber) {
  actions.setStringVariable(1, "abc");
  EXPECT_EQ(errorFrom([&] { return reader.numericValue("@S1@d", "Here."); }),
            (ScriptError{"Here.Invalid numeric expression (abcd)", 1}));
  EXPECT_EQ(errorFrom([&] { return reader.numericValue("@S2@", "Here."); }),
            (ScriptError{"Here.Invalid numeric expression ()", 1}));
}

TEST_F(ValueReader, PutsABlankBehindTheContextOfABadShort) {
  actions.setStringVariable(1, "abc");
  EXPECT_EQ(errorFrom([&] { return reader.shortValue("@S1@d", "Here."); }),
            (ScriptError{"Here. Invalid numeric expression (abcd)", 1}));
}

TEST_F(ValueReader, QuotesABadBooleanAsWritten) {
  actions.setNumericVariable(1, 2);
  EXPECT_EQ(errorFrom([&] { return reader.booleanValue("@N1@", "Here."); }),
            (ScriptError{"Here. Invalid boolean value (@N1@)", 1}));
  EXPECT_EQ(errorFrom([&] { return reader.booleanValue("yes", "Here."); }),
            (ScriptError{"Here.Invalid numeric expression (yes)", 1}));
}

TEST_F(ValueReader, RefusesAnEmptyToken) {
  const ScriptError error{"Here. Empty expression.", 1};
  EXPECT_EQ(errorFrom([&] { return reader.numericValue("", "Here."); }), error);
  EXPECT_EQ(errorFrom([&] { return reader.shortValue("", "Here."); }), error);
  EXPECT_EQ(errorFrom([&] { return reader.booleanValue("", "Here."); }), error);
  EXPECT_EQ(errorFrom([&] { return reader.textValue("", "Here."); }), error);
  EXPECT_EQ(errorFrom([&] { return reader.textValue("\"\"", "Here."); }), error);
}

TEST_F(ValueReader, ReadsTexts) {
  actions.setStringVariable(1, "a b");
  EXPECT_EQ(reader.textValue("plain text", ""), "plain");
  EXPECT_EQ(reader.textValue("cut\vnot", ""), "cut\vnot");
  EXPECT_EQ(reader.textValue("\"two words\" more", ""), "two words");
  EXPECT_EQ(reader.textValue("\"@S1@ c\"", ""), "a b c");
  EXPECT_EQ(reader.textValue("@S1@", ""), "a b");
}

TEST_F(ValueReader, LeavesTheQuotesOfAValue) {
  actions.setStringVariable(1, "\"quoted\"");
  EXPECT_EQ(reader.textValue("@S1@", ""), "\"quoted\"");
}

TEST_F(ValueReader, CutsATextThatBeginsWithABlankToNothing) {
  EXPECT_EQ(errorFrom([&] { return reader.textValue(" text", "Here."); }),
            (ScriptError{"Here. Empty expression.", 1}));
}

}  // namespace
}  // namespace vessant::test
