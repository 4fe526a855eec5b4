// The replacement of @N1@ and @S1@ by the variables' values.

#include "InstructionsFixture.h"

namespace vessant::test {
namespace {

class VariableReference : public InstructionsFixture {
 protected:
  VariableReference() {
    actions.setNumericVariable(1, 12);
    actions.setStringVariable(1, "one");
  }

  std::string substituted(const char* text, const char* context = "") {
    SString result = text;
    InstructionRun(tags_, actions).substituteVariables(result, context);
    return str(result);
  }
  ScriptError errorFor(const char* text, const char* context) {
    return scriptError([&] { substituted(text, context); });
  }

 private:
  TagFile tags_;
};

TEST_F(VariableReference, IsReplacedByTheValue) {
  EXPECT_EQ(substituted("@N1@"), "12");
  EXPECT_EQ(substituted("@s1@"), "one");
  EXPECT_EQ(substituted("a@S1@b@N1@c"), "aoneb12c");
  EXPECT_EQ(substituted("@S1@@S1@"), "oneone");
  EXPECT_EQ(substituted("@N1@ @S2@"), "12 ");
}

TEST_F(VariableReference, LeavesOtherTextAlone) {
  EXPECT_EQ(substituted("no reference"), "no reference");
  EXPECT_EQ(substituted(" "), " ");
}

TEST_F(VariableReference, StandsForOneMarkWhenDoubled) {
  EXPECT_EQ(substituted("@@"), "@");
  EXPECT_EQ(substituted("me@@home"), "me@home");
  EXPECT_EQ(substituted("@@@@"), "@@");
  EXPECT_EQ(substituted("@@N1@@"), "@N1@");
}

TEST_F(VariableReference, IsReplacedAgainInsideAValue) {
  actions.setStringVariable(2, "<@N1@>");
  actions.setStringVariable(3, "(@S2@@S2@)");
  EXPECT_EQ(substituted("@S2@"), "<12>");
  EXPECT_EQ(substituted("@S3@!"), "(<12><12>)!");
}

TEST_F(VariableReference, MayBeMadeUpOfAValue) {
  actions.setStringVariable(2, "[@N");
  EXPECT_EQ(substituted("@S2@1@] @S1@"), "[12] one");
}

TEST_F(VariableReference, IsScannedBehindTheFirstCharacterOfAValue) {
  const ScriptError error{" Invalid variable specification.", 1};
  for (const char* value : {"@", "@N1@", ""}) {
    actions.setStringVariable(2, value);
    EXPECT_EQ(errorFor("@S2@@N1@", ""), error) << value;
  }
  actions.setStringVariable(2, "@N1@");
  EXPECT_EQ(errorFor("@S2@", ""), error);
}

TEST_F(VariableReference, MakesADoubledMarkBesideItASingleOne) {
  EXPECT_EQ(errorFor("@@ @N1@", ""), (ScriptError{" Invalid variable specification.", 1}));
}

TEST_F(VariableReference, NeedsAText) {
  EXPECT_EQ(errorFor("", ""), (ScriptError{" Empty expression.", 1}));
  EXPECT_EQ(errorFor("", "In front."), (ScriptError{"In front. Empty expression.", 1}));
}

TEST_F(VariableReference, MayLeaveAnEmptyText) {
  EXPECT_EQ(substituted("@S9@"), "");
}

TEST_F(VariableReference, NeedsItsClosingMark) {
  for (const char* text : {"@", "@N1", "a@", "@N1@@", "@@@"}) {
    EXPECT_EQ(errorFor(text, "In front."),
              (ScriptError{"In front. Invalid variable specification.", 1}))
        << text;
  }
}

TEST_F(VariableReference, RefusesABadSpecificationBehindTwoBlanks) {
  EXPECT_EQ(errorFor("@N6@", ""), (ScriptError{"  Variable number is invalid (6)", 0}));
  EXPECT_EQ(errorFor("a@X1@", "In front."),
            (ScriptError{"In front.  Invalid variable reference (X1). Must use N or S as the "
                         "variable type, e.g. N2 or S1.",
                         0}));
  EXPECT_EQ(errorFor("@N@", "In front."),
            (ScriptError{"In front.  Variable references must be at least 2 characters (e.g. N1 "
                         "and S10).",
                         0}));
}

}  // namespace
}  // namespace vessant::test
