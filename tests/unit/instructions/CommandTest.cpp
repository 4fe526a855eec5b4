// What each command hands over to the launcher.

#include "InstructionsFixture.h"

namespace vessant::test {
namespace {

class Command : public InstructionsFixture {
 protected:
  struct Row {
    const char* statement;
    const char* call;
  };

  /// Each statement alone makes exactly its call.
  template <std::size_t count>
  void expectCalls(const Row (&rows)[count]) {
    for (const Row& row : rows) {
      actions.calls.clear();
      run({row.statement});
      EXPECT_EQ(actions.calls, std::vector<std::string>{row.call}) << row.statement;
    }
  }
};

TEST_F(Command, HandsItsArgumentsOver) {
  expectCalls({
      {"FIND_JVM 1 0", "findJvm(1, 0)"},
      {"FIND_JVM 0 1", "findJvm(0, 1)"},
      {"ILAUNCH 7 30", "launchWithEmbeddedJvmFile(7, 30)"},
      {"INITIALIZE_UI", "beginProgress()"},
      {"INSTALL_JVM 0", "installEmbeddedJvm(0)"},
      {"INSTALL_JVM 1", "installEmbeddedJvm(1)"},
      {"INSTALL_JVM 2", "installEmbeddedJvm(2)"},
      {"LAUNCH /opt/my.jvm 5", "launchWithJvmFile(/opt/my.jvm, 5)"},
      {"VERIFY 1 0 12", "verifyEmbeddedJvmFile(1, 0, 12)"},
      {"VERIFY 0 1 13", "verifyEmbeddedJvmFile(0, 1, 13)"},
      {"EXECUTE_LAUNCHER 4", "runEmbeddedLauncher(4)"},
  });
}

TEST_F(Command, IgnoresFurtherTokens) {
  expectCalls({
      {"FIND_JVM 1 1 x", "findJvm(1, 1)"},
      {"ILAUNCH 7 30 x y", "launchWithEmbeddedJvmFile(7, 30)"},
      {"INITIALIZE_UI @ \" x", "beginProgress()"},
      {"INSTALL_JVM 2 3", "installEmbeddedJvm(2)"},
      {"LAUNCH my.jvm 5 x", "launchWithJvmFile(my.jvm, 5)"},
      {"VERIFY 0 0 12 x", "verifyEmbeddedJvmFile(0, 0, 12)"},
      {"EXECUTE_LAUNCHER 4 x", "runEmbeddedLauncher(4)"},
  });
}

TEST_F(Command, TakesAnyWhitespaceBetweenTokens) {
  expectCalls({
      {"FIND_JVM\t1\t \t0", "findJvm(1, 0)"},
      {"  ILAUNCH \v 7 \f 30  ", "launchWithEmbeddedJvmFile(7, 30)"},
      {"LAUNCH\r\nmy.jvm\n5", "launchWithJvmFile(my.jvm, 5)"},
  });
}

TEST_F(Command, ReadsNumbersAsScanfDoes) {
  expectCalls({
      {"VERIFY 1st 0x1 12th", "verifyEmbeddedJvmFile(1, 0, 12)"},
      {"ILAUNCH -1 -30", "launchWithEmbeddedJvmFile(-1, -30)"},
      {"ILAUNCH +7 32768", "launchWithEmbeddedJvmFile(7, -32768)"},
      {"ILAUNCH 2147483648 65537", "launchWithEmbeddedJvmFile(2147483647, 1)"},
      {"EXECUTE_LAUNCHER -99999999999999999999", "runEmbeddedLauncher(-2147483648)"},
  });
}

TEST_F(Command, SubstitutesVariablesInEveryArgument) {
  actions.setNumericVariable(1, 1);
  actions.setNumericVariable(2, 0);
  actions.setNumericVariable(3, 12);
  actions.setStringVariable(2, "/opt/a file.jvm");
  expectCalls({
      {"FIND_JVM @N1@ @N2@", "findJvm(1, 0)"},
      {"ILAUNCH @N3@ 1@N3@", "launchWithEmbeddedJvmFile(12, 112)"},
      {"INSTALL_JVM @N1@", "installEmbeddedJvm(1)"},
      {"LAUNCH @S2@ @N3@", "launchWithJvmFile(/opt/a file.jvm, 12)"},
      {"VERIFY @N2@ @N1@ @N3@", "verifyEmbeddedJvmFile(0, 1, 12)"},
      {"EXECUTE_LAUNCHER @N3@", "runEmbeddedLauncher(12)"},
  });
}

TEST_F(Command, MayBeAComment) {
  EXPECT_EQ(run({"//", "// FIND_JVM 1 1", "// @ \" :"}), 0);
  EXPECT_TRUE(actions.calls.empty());
}

}  // namespace
}  // namespace vessant::test
