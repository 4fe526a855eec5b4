// The three passes that turn a command template into a command.

#include "LaunchRoom.h"

namespace vessant::test {
namespace {

class ResolveCommand : public LaunchRoom {};

TEST_F(ResolveCommand, PutsTagsAndVariablesIn) {
  setJvmTag("JVM_HOME", "/opt/java");
  setJvmTag("JVM_EXE", "bin/java");
  run.platform.environment["HOME"] = "/home/me";
  EXPECT_EQ(resolve("\"@JVM_HOME@/@JVM_EXE@\" -Duser=#HOME# #UNSET#."),
            "\"/opt/java/bin/java\" -Duser=/home/me .");
}

TEST_F(ResolveCommand, ExpandsTagsAndVariablesInTheValueOfAFunction) {
  setJvmTag("NAME", "#WHO#");
  setJvmTag("YES", "1");
  run.platform.environment["WHO"] = "me";
  EXPECT_EQ(resolve("%IF_EXISTS%(\"YES\",\"-x @NAME@ #WHO#\")"), "-x me me");
  EXPECT_EQ(resolve("%REPLACE%(\"!\",\"@\",\"!NAME!\")"), "me");
}

TEST_F(ResolveCommand, ExpandsNeitherFunctionsNorTagsInTheValueOfAVariable) {
  setJvmTag("TAG", "tag");
  run.platform.environment["V"] = "@TAG@ %TEMP_DIR%()";
  EXPECT_EQ(resolve("#V#"), "@TAG@ %TEMP_DIR%()");
}

TEST_F(ResolveCommand, ExpandsNoFunctionInTheValueOfATag) {
  setJvmTag("TAG", "%TEMP_DIR%()");
  EXPECT_EQ(resolve("@TAG@"), "%TEMP_DIR%()");
}

TEST_F(ResolveCommand, DropsOneBackslashFromTheEndOfTheHome) {
  setJvmTag("JVM_HOME", "C:\\jdk\\");
  EXPECT_EQ(resolve("@JVM_HOME@"), "C:\\jdk");
  setJvmTag("JVM_HOME", "/usr/jdk/");
  EXPECT_EQ(resolve("@JVM_HOME@"), "/usr/jdk/");
}

TEST_F(ResolveCommand, MakesEveryDoubledDelimiterASingleOne) {
  EXPECT_EQ(resolve("100%%, me@@home, ##1"), "100%, me@home, #1");
}

TEST_F(ResolveCommand, LeavesUnpairedDelimitersAlone) {
  EXPECT_EQ(resolve("50% of me@home is #1"), "50% of me@home is #1");
}

TEST_F(ResolveCommand, AcceptsAnEmptyTemplate) {
  EXPECT_EQ(resolve(""), "");
}

TEST_F(ResolveCommand, CanBeRepeated) {
  LaunchScript script("@A@", true, true, launch);
  setJvmTag("A", "one");
  EXPECT_EQ(script.resolveCommand(jvmFile), "one");
  TagFile otherTags;
  otherTags.setValue("A", "two");
  JVMFile other(otherTags);
  EXPECT_EQ(script.resolveCommand(other), "two");
}

TEST_F(ResolveCommand, LeavesOtherDelimitersToNobody) {
  LaunchScript script("", true, true, launch);
  MacroText command("@A@");
  script.handleMacro(command, '@', 2);
  EXPECT_EQ(command.whole(), "@A@");
}

}  // namespace
}  // namespace vessant::test
