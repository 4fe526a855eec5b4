// What the program gets as its class path, system properties and Java arguments: options, side
// files, the JVM file, the launch script and the embedded archives.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

struct ClassPath : SystemTest {
  /// Prints each argument of the command's text on a line.
  void addPrinter(const std::string& command, const std::string& jvmTags = "",
                  const std::string& launchTags = "") {
    addScript({"ILAUNCH 3 0"});
    const std::string printer =
        tree.program("print", "#!/bin/sh\n" + std::string(kPrintArguments) + " \"$@\"\n");
    addLaunchScript(printer + " " + command, "DISPLAY_CONSOLE: 1\n" + launchTags);
    addJvmFile("17", jvmTags);
  }
  /// A file next to the launcher, which the suffix ties to it.
  void sideFile(const std::string& suffix, const std::string& text) {
    tree.file("app/setup." + suffix, text);
  }
};

TEST_F(ClassPath, IsTwoEmptyEntriesWhenThereIsNothingToSay) {
  addPrinter("%CP%()");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n<-cp>\n<:>\n"));
  EXPECT_THAT(log(), HasSubstr("/print -cp \"\":\"\" in working directory"));
}

TEST_F(ClassPath, JoinsItsPiecesInTheirOrder) {
  addPrinter("%CP%(\"first arg.jar\",\"\",\"second.jar\")", "JVM_CLASSPATH: jvm.jar\n",
             tag("ARCHIVE", "%REPLACE%(\"x\",\"y\",\"x.jar\")"));
  file.add(kClassPathArchive, 30, "one.jar", "1");
  file.add(kClassPathArchive, 31, "two.jar", "2");
  sideFile("cp1", "before.jar\n");
  sideFile("cp", "x.jar\n\n");
  sideFile("cp2", "after.jar\nlast.jar");
  const ProcessResult result = runLogged({"-cp:p", "prefix.jar:p 2", "-cp:a", "suffix.jar"});
  EXPECT_EQ(result.status, 0);
  // The entries of a call stand in the command without quotes of their own.
  EXPECT_THAT(maskTempNames(log()),
              HasSubstr("/print -cp \"prefix.jar:p 2\":before.jar:jvm.jar:x.jar:first "
                        "arg.jar:second.jar:y.jar:\"" +
                        tempRoot + "/vsj/one.jar\":\"" + tempRoot +
                        "/vsj/two.jar\":after.jar:last.jar:\"suffix.jar\" in working directory"));
  EXPECT_THAT(result.out, HasSubstr("<-cp>\n<prefix.jar:p 2:before.jar:jvm.jar:x.jar:first>\n"));
}

TEST_F(ClassPath, TakesTheLastOfSeveralOptions) {
  addPrinter("%CP%()");
  EXPECT_THAT(run({"-cp:p", "a", "-cp:p", "b", "-cp:a", "c", "-cp:a", "-cp:p"}),
              Ended(0, "Demo\n<-cp>\n<b:-cp:p>\n"));
}

TEST_F(ClassPath, DoesNotTakeAnOptionForAListFile) {
  const std::string list = tree.file("list", "listed.jar\n");
  addPrinter("%CP%()");
  EXPECT_THAT(run({"-cp:p", "@" + list}), Ended(0, "Demo\n<-cp>\n<@" + list + ":>\n"));
}

TEST_F(ClassPath, DropsCarriageReturnsAndBlankLinesOfItsSideFiles) {
  sideFile("cp", " a.jar \r\n\r\nb.jar\r\n");
  addPrinter("%CP%()");
  EXPECT_THAT(run(), Ended(0, "Demo\n<-cp>\n<:a.jar:b.jar:>\n"));
}

TEST_F(ClassPath, HasItsSideFilesByTheLaunchersNameWithoutExtension) {
  launcher = tree.path("app/v2.0/setup");
  tree.file("app/v2.0/setup.cp", "right.jar\n");
  tree.file("app/v2.cp", "wrong.jar\n");
  addPrinter("%CP%()");
  EXPECT_THAT(run(), Ended(0, "Demo\n<-cp>\n<:right.jar:>\n"));
}

TEST_F(ClassPath, GoesIntoTheVariableThatTheJvmFileNames) {
  addPrinter("\"$PROGRAM_CP\" %CP%(\"\"\"a b.jar\"\"\",\"c.jar\") end",
             "USE_CP_ENV_VAR: 1\nCP_ENV_VAR: PROGRAM_CP\n", tag("ARCHIVE", "\"d.jar\""));
  file.add(kClassPathArchive, 30, "one.jar", "1");
  sideFile("cp", "x.jar\n");
  const ProcessResult result = runLogged({"-cp:p", "prefix"});
  const std::string value =
      "\"prefix\":x.jar:a b.jar:c.jar:d.jar:" + tempRoot + "/vsj/one.jar:\"\"";
  EXPECT_EQ(maskTempNames(result.out), "Demo\n<" + value + ">\n<end>\n");
  EXPECT_THAT(maskTempNames(log()), HasSubstr("Set env var PROGRAM_CP to " + value + "\n\n"));
}

TEST_F(ClassPath, GoesNowhereWhenTheJvmFileNamesNoVariable) {
  addPrinter("%CP%() end", "USE_CP_ENV_VAR: 1\n");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n<end>\n"));
  EXPECT_THAT(logLines(),
              Contains("ERROR: If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file "
                       "should also define CP_ENV_VAR."));
}

TEST_F(ClassPath, GoesIntoTheCommandUnlessTheSwitchIsExactlyOne) {
  addPrinter("%CP%()", "USE_CP_ENV_VAR: 01\nCP_ENV_VAR: PROGRAM_CP\n");
  EXPECT_THAT(run(), Ended(0, "Demo\n<-cp>\n<:>\n"));
}

TEST_F(ClassPath, ComesWithTheSystemPropertiesOfTheSideFile) {
  sideFile("sp", "a=b=c\nno property\nhome=@JVM_EXE@\n=\n");
  addPrinter("%RUNTIME_SYSTEMPROP%()");
  EXPECT_THAT(run(), Ended(0, "Demo\n<-Da=b=c>\n<-Dhome=bin/java>\n<-D=>\n"));
}

TEST_F(ClassPath, ComesWithTheJavaArgumentsOfTheSideFileAndTheJvm) {
  sideFile("ja", "-Xmx64m -Xss1m\n\n@NONE@\n-Djvm=@JVM_EXE@\n");
  addPrinter("%RUNTIME_JAVAARGS%()", "REQ_JAVA_ARGS: -server\n");
  EXPECT_THAT(run(), Ended(0, "Demo\n<-Xmx64m>\n<-Xss1m>\n<-Djvm=bin/java>\n<-server>\n"));
}

TEST_F(ClassPath, PutsABlankBeforeTheJvmsOwnArguments) {
  addPrinter("x%RUNTIME_JAVAARGS%()", "REQ_JAVA_ARGS: -Xmx64m\n");
  EXPECT_THAT(run(), Ended(0, "Demo\n<x>\n<-Xmx64m>\n"));
}

TEST_F(ClassPath, OfAVerificationHasNoArchives) {
  addScript({"FIND_JVM 0 0"});
  addLaunchScript(kJavaCommand);
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")) + "REQ_JAVA_ARGS: -Xint\n");
  file.add(kClassPathArchive, 30, "one.jar", "1");
  sideFile("cp", "x.jar\n");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n"));
  EXPECT_THAT(maskTempNames(log()),
              HasSubstr("-cp \"\":x.jar:\"" + tempRoot +
                        "/vsj/verify.jar\":\"\"  -Xint \"Verify\" java.version in working"));
}

}  // namespace
}  // namespace vessant::test
