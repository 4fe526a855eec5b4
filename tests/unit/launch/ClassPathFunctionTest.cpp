// The function CP: the class path in its order, on the command line or in the environment.

#include "LaunchRoom.h"

namespace vessant::test {
namespace {

class ClassPathFunction : public LaunchRoom {
 protected:
  ClassPathFunction() {
    setJvmTag("CLASSPATH", "-cp ");
    setJvmTag("CLASSPATH_SEPARATOR", ":");
  }

  void useEnvironment() {
    setJvmTag("USE_CP_ENV_VAR", "1");
    setJvmTag("CP_ENV_VAR", "CLASSPATH");
  }

  /// Every source of entries, one entry each.
  void fillAll() {
    classPathPrefix = "prefix.jar";
    tree.file("app/setup.cp1", "cp1.jar\n");
    setJvmTag("JVM_CLASSPATH", "jvm.jar");
    tree.file("app/setup.cp", "cp.jar\n");
    file.add(3, 1, "embedded.jar", "bytes");
    load();
    tree.file("app/setup.cp2", "cp2.jar\n");
    classPathSuffix = "suffix.jar";
  }
};

TEST_F(ClassPathFunction, OfNothingHoldsTheTwoQuotedOptions) {
  EXPECT_EQ(resolve("%CP%()"), "-cp \"\":\"\"");
}

TEST_F(ClassPathFunction, PutsTheEntriesInTheirOrder) {
  fillAll();
  EXPECT_EQ(resolveWithArchive("%CP%(\"first.jar\",\"second.jar\") Main", "archive.jar"),
            "-cp \"prefix.jar\":cp1.jar:jvm.jar:cp.jar:first.jar:second.jar:archive.jar:\"" +
                extracted(0) + "\":cp2.jar:\"suffix.jar\" Main");
}

TEST_F(ClassPathFunction, JoinsSeveralLinesOfASideFile) {
  tree.file("app/setup.cp1", "a.jar\r\n\r\nb.jar\r\n");
  tree.file("app/setup.cp", "x.jar\n\n");
  EXPECT_EQ(resolve("%CP%()"), "-cp \"\":a.jar:b.jar:x.jar:\"\"");
}

TEST_F(ClassPathFunction, PassesOverEmptyArguments) {
  EXPECT_EQ(resolve("%CP%(\"\",\"a.jar\",\"\")"), "-cp \"\":a.jar:\"\"");
}

TEST_F(ClassPathFunction, KeepsTheQuotesOfItsArguments) {
  EXPECT_EQ(resolve("%CP%(\"\"\"a b.jar\"\"\")"), "-cp \"\":\"a b.jar\":\"\"");
}

TEST_F(ClassPathFunction, TakesTheOptionsForNoListFiles) {
  classPathPrefix = text("@" + tree.file("list", "listed.jar\n"));
  classPathSuffix = "  ";
  EXPECT_EQ(resolve("%CP%()"), "-cp \"" + str(classPathPrefix) + "\":\"  \"");
}

TEST_F(ClassPathFunction, ExpandsTagsInItsEntriesLater) {
  setJvmTag("JVM_HOME", "/opt/java");
  EXPECT_EQ(resolve("%CP%(\"@JVM_HOME@/lib/tools.jar\")"), "-cp \"\":/opt/java/lib/tools.jar:\"\"");
}

TEST_F(ClassPathFunction, HasNoEmbeddedArchivesInABareTemplateWithoutThem) {
  fillAll();
  LaunchScript script("%CP%()", true, false, launch);
  EXPECT_EQ(script.resolveCommand(jvmFile),
            "-cp \"prefix.jar\":cp1.jar:jvm.jar:cp.jar:cp2.jar:\"suffix.jar\"");
}

TEST_F(ClassPathFunction, ExpandsFunctionsInTheArchive) {
  EXPECT_EQ(resolveWithArchive("%CP%()", "%LAUNCHER_DIR%()/lib.jar"),
            "-cp \"\":" + tree.path("app") + "/lib.jar:\"\"");
}

TEST_F(ClassPathFunction, TakesTheApplicationArchiveForItsArchive) {
  file.add(6, 4, "app.jar", "bytes");
  load();
  const std::string command = resolveWithArchive("%CP%()", "\"%APPLICATION_ARCHIVE%()\"");
  EXPECT_EQ(command, "-cp \"\":\"" + str(launch.applicationArchive) + "\":\"\"");
  EXPECT_EQ(readFile(str(launch.applicationArchive)), "bytes");
}

TEST_F(ClassPathFunction, ExpandsTheArchiveOnlyWhenItIsUsed) {
  EXPECT_EQ(resolveWithArchive("java", "%NOPE%()"), "java");
}

TEST_F(ClassPathFunction, RefusesAnArchiveThatUsesTheClassPath) {
  for (int attempt = 0; attempt < 2; ++attempt) {
    run.log.clear();
    EXPECT_EQ(thrownMessage(
                  [&] { static_cast<void>(resolveWithArchive("java %CP%()", "x:%CP%(\"y\")")); }),
              "Launch script error: ARCHIVE cannot use the class path.");
    EXPECT_EQ(run.log.texts(), (Texts{"Launch command:", "x:%CP%(\"y\")"}));
  }
}

TEST_F(ClassPathFunction, TellsAnErrorOfTheArchiveEveryTime) {
  TagFile tags;
  tags.setValue("COMMAND", "%CP%()");
  tags.setValue("ARCHIVE", "%NOPE%()");
  LaunchScript script(tags, true, launch);
  for (int attempt = 0; attempt < 2; ++attempt) {
    EXPECT_EQ(thrownMessage([&] { static_cast<void>(script.resolveCommand(jvmFile)); }),
              "Launch script error: Invalid function name (NOPE).");
  }
}

TEST_F(ClassPathFunction, MayBeCalledTwiceInACommand) {
  EXPECT_EQ(resolveWithArchive("%CP%() %CP%(\"b\")", "a"), "-cp \"\":a:\"\" -cp \"\":b:a:\"\"");
}

TEST_F(ClassPathFunction, GoesIntoTheEnvironmentWhenTheJvmFileSaysSo) {
  useEnvironment();
  EXPECT_EQ(resolve("java %CP%(\"a.jar\") Main"), "java  Main");
  EXPECT_EQ(run.platform.environment["CLASSPATH"], "\"\":a.jar:\"\"");
  EXPECT_EQ(
      run.log.lines(),
      (std::vector<Line>{{"Set env var CLASSPATH to \"\":a.jar:\"\"\n", LogLevel::Information}}));
}

TEST_F(ClassPathFunction, GoesIntoTheEnvironmentForExactlyOne) {
  useEnvironment();
  for (const char* value : {"0", "yes", "01", "1 ", "11", ""}) {
    setJvmTag("USE_CP_ENV_VAR", value);
    EXPECT_EQ(resolve("%CP%()"), "-cp \"\":\"\"") << value;
  }
  EXPECT_TRUE(run.platform.settings.empty());
}

TEST_F(ClassPathFunction, LosesItsOwnQuotesInTheEnvironment) {
  useEnvironment();
  fillAll();
  EXPECT_EQ(resolveWithArchive("%CP%(\"\"\"a b.jar\"\"\",\"c.jar\"\"\",\"\"\"\"\"d\"\"\"\"\")",
                               "\"archive.jar\""),
            "");
  EXPECT_EQ(run.platform.environment["CLASSPATH"],
            "\"prefix.jar\":cp1.jar:jvm.jar:cp.jar:a b.jar:c.jar:\"d\":archive.jar:" +
                extracted(0) + ":cp2.jar:\"suffix.jar\"");
}

TEST_F(ClassPathFunction, NeedsTheNameOfTheVariable) {
  useEnvironment();
  setJvmTag("CP_ENV_VAR", "");
  EXPECT_EQ(resolve("java %CP%() Main"), "java  Main");
  EXPECT_TRUE(run.platform.settings.empty());
  EXPECT_EQ(run.log.lines(),
            (std::vector<Line>{{"If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file "
                                "should also define CP_ENV_VAR.",
                                LogLevel::Error}}));
}

}  // namespace
}  // namespace vessant::test
