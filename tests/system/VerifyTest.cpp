// Verification: what a Java must answer to be taken, and the VERIFY instruction.

#include <algorithm>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr const char* kInvalid = "The JVM is not valid.\n";

struct Verify : SystemTest {
  /// Verifies the home of the command line, or the JVM file's own, and launches when it is valid.
  void addVerification(const std::string& jvmTags = "") {
    addScript({"VERIFY 0 1 3", "JMP0 @N1@ end", "SET N5 = \"@S1@\"", ":end"});
    addLaunchScript(kJavaCommand);
    addJvmFile("17.0.1", jvmTags);
  }
  /// A valid home ends the script with an error that shows S1.
  static std::string valid(const std::string& home) {
    return "Invalid value specified for SET command Invalid numeric expression in " + home + "\n";
  }
};

TEST_F(Verify, AcceptsTheHomeOfTheCommandLine) {
  addVerification("JVM_HOME: /never/tried\n");
  const std::string home = javaHome("java", "17.0.1");
  EXPECT_THAT(runLogged({"-vs:javahome", home}), Ended(255, "Demo\n" + valid(home)));
  EXPECT_THAT(logLines(), Contains("After VERIFY, the jvm home is " + home));
}

TEST_F(Verify, KeepsTheHomeAsItWasGiven) {
  addVerification();
  const std::string home = javaHome("java", "17.0.1") + "/";
  EXPECT_THAT(runLogged({"-vs:javahome", home}), Ended(255, "Demo\n" + valid(home)));
  EXPECT_THAT(logLines(), Contains("Verifying JVM at " + home + "bin/java"));
}

TEST_F(Verify, RefusesAHomeOfAnotherVersion) {
  addVerification();
  EXPECT_THAT(runLogged({"-vs:javahome", javaHome("java", "17.0.2")}),
              Ended(0, "Demo\n" + std::string(kInvalid)));
  EXPECT_THAT(log(), EndsWith("In VERIFY, the jvm is invalid.\n"));
}

TEST_F(Verify, AcceptsTheHomeThatTheJvmFileNames) {
  const std::string home = javaHome("java", "17.0.1");
  addVerification(tag("JVM_HOME", home));
  EXPECT_THAT(run(), Ended(255, "Demo\n" + valid(home)));
}

TEST_F(Verify, RefusesAJvmFileWithoutAHome) {
  addVerification();
  EXPECT_THAT(run(), Ended(0, "Demo\n" + std::string(kInvalid)));
}

TEST_F(Verify, SaysNothingUnlessItIsAskedTo) {
  addScript({"VERIFY 0 0 3"});
  addLaunchScript(kJavaCommand);
  addJvmFile("17.0.1");
  EXPECT_THAT(run(), Ended(0, "Demo\n"));
}

TEST_F(Verify, WarnsOfAJvmFileWithoutProperties) {
  addScript({"VERIFY 0 1 3"});
  file.add(kJvmFile, kJvmFileId, "empty.jvm", "JVM_EXE: bin/java\nJVM_HOME: /opt\n");
  EXPECT_THAT(runLogged(), Ended(0, kInvalid));
  EXPECT_THAT(logLines(), Contains("WARNING: Unable to verify empty.jvm because the JVM_PROPERTIES "
                                   "tag was not specified."));
}

TEST_F(Verify, PassesOverAHomeThatCannotStandInACommand) {
  addVerification();
  for (const char* name : {"100% java", "java@home", "java#1#"}) {
    const std::string home = javaHome(name, "17.0.1");
    EXPECT_THAT(runLogged({"-vs:javahome", home}), Ended(0, "Demo\n" + std::string(kInvalid)));
    EXPECT_THAT(log(), HasSubstr("WARNING: Skipping JVM at " + home + ": "));
  }
}

TEST_F(Verify, AcceptsAHomeWithOneNumberSign) {
  addVerification();
  const std::string home = javaHome("java#1", "17.0.1");
  EXPECT_THAT(runLogged({"-vs:javahome", home}), Ended(255, "Demo\n" + valid(home)));
}

TEST_F(Verify, CountsARelativeHomeFromTheUsersDirectory) {
  addScript({"VERIFY 0 1 3", "JMP0 @N1@ end", "ILAUNCH 3 0", "SET N5 = \"@S1@\"", ":end"});
  addLaunchScript("echo @JVM_HOME@");
  addJvmFile("17.0.1");
  const std::string home = javaHome("elsewhere/jdk", "17.0.1");
  EXPECT_THAT(runLogged({"-vs:javahome", "jdk"}),
              Ended(255, "Demo\n" + home + "\n" + valid("jdk")));
  EXPECT_THAT(logLines(), Contains("After VERIFY, the jvm home is jdk"));
}

TEST_F(Verify, UsesTheVerificationClassOfTheInputFile) {
  addVerification();
  tree.program("java/bin/java",
               "#!/bin/sh\necho 1739021872\necho \"$*\" > " + tree.path("said") + "\n");
  EXPECT_EQ(run({"-vs:javahome", tree.path("java"), "-vs:in",
                 tree.file("input.tag",
                           "ACTION: RUN_INSTRUCTIONS\n"
                           "VERIFY_CLASSPATH: \"\"\"my classes\"\"\"\n"
                           "VERIFY_CLASS_NAME: org.Check\n")})
                .status,
            255);
  EXPECT_EQ(readFile(tree.path("said")), "-cp :my classes: org.Check java.version\n");
}

struct Answer {
  const char* name;
  const char* properties;  // the values of JVM_PROPERTIES, one a line
  const char* output;      // what the Java prints, with printf's escapes
  bool accepted;
};

void PrintTo(const Answer& answer, std::ostream* out) {
  *out << answer.name;
}

struct VerifyAnswer : Verify, ::testing::WithParamInterface<Answer> {};

TEST_P(VerifyAnswer, Decides) {
  const std::string home = tree.path("java");
  tree.program("java/bin/java", "#!/bin/sh\nprintf '" + std::string(GetParam().output) + "'\n");
  addScript({"VERIFY 0 1 3"});
  addLaunchScript(kJavaCommand);
  file.add(kJvmFile, kJvmFileId, "java.jvm",
           "DESC: any\nJVM_EXE: bin/java\nJVM_PROPERTIES:\n" + std::string(GetParam().properties) +
               "/:\n");
  EXPECT_THAT(runLogged({"-vs:javahome", home}),
              Ended(0, GetParam().accepted ? "Demo\n" : "Demo\n" + std::string(kInvalid)));
}

INSTANTIATE_TEST_SUITE_P(
    Outputs, VerifyAnswer,
    ::testing::Values(
        Answer{"exact", "a=1\n", "1739021872\\n1\\n", true},
        Answer{"differs", "a=1\n", "1739021872\\n2\\n", false},
        Answer{"noise first", "a=1\n", "hello\\n\\n 17390218720\\n1739021872\\n1\\n", true},
        Answer{"no magic line", "a=1\n", "1\\n", false},
        Answer{"nothing at all", "a=1\n", "", false},
        Answer{"fewer values", "a=1\nb=2\n", "1739021872\\n1\\n", true},
        Answer{"no values", "a=1\nb=2\n", "1739021872", true},
        Answer{"second differs", "a=1\nb=2\n", "1739021872\\n1\\n3\\n", false},
        Answer{"trimmed", "  a =  1  \n", "  1739021872\\r\\n\\t1 \\r\\n", true},
        Answer{"case", "a=X\n", "1739021872\\nx\\n", false},
        Answer{"prefix", "a=1.3...\n", "1739021872\\n1.3.1_02\\n", true},
        Answer{"other prefix", "a=1.3...\n", "1739021872\\n1.4.0\\n", false},
        Answer{"shorter than the prefix", "a=1.3...\n", "1739021872\\n1.\\n", false},
        Answer{"any value", "a=...\n", "1739021872\\nwhatever\\n", true},
        Answer{"longer than exact", "a=ppc\n", "1739021872\\nppc64\\n", false},
        Answer{"value with equals", "a=b=c\n", "1739021872\\nb=c\\n", true},
        Answer{"property without equals", "nonsense\na=1\n", "1739021872\\n1\\n", true}),
    [](const auto& parameter) {
      std::string name = parameter.param.name;
      std::replace(name.begin(), name.end(), ' ', '_');
      return name;
    });

TEST_F(Verify, LogsAnswersWithoutTheMagicLineAndOddProperties) {
  tree.program("java/bin/java", "#!/bin/sh\necho hello\n");
  addScript({"VERIFY 0 0 3"});
  file.add(kJvmFile, kJvmFileId, "java.jvm",
           "JVM_EXE: bin/java\n" + tagBlock("JVM_PROPERTIES", {"odd", "a=1"}));
  EXPECT_THAT(runLogged({"-vs:javahome", tree.path("java")}), Ended(0, ""));
  EXPECT_THAT(log(), HasSubstr("ERROR: Invalid magic value: hello\n\n"));
  EXPECT_THAT(log(), HasSubstr("WARNING: Invalid JVM_PROPERTIES setting (odd) in JVM File \n"));
}

}  // namespace
}  // namespace vessant::test
