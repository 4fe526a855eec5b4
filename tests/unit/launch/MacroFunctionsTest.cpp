// The values of the macro functions; the class path and the application archive have their own
// tests.

#include "LaunchRoom.h"

namespace vessant::test {
namespace {

class MacroFunctions : public LaunchRoom {};

TEST_F(MacroFunctions, ReplaceEveryOccurrence) {
  EXPECT_EQ(resolve("%REPLACE%(\"/\",\"\\\",\"a/b/c\")"), "a\\b\\c");
  EXPECT_EQ(resolve("%REPLACE%(\"aa\",\"b\",\"aaaaa\")"), "bba");
  EXPECT_EQ(resolve("%REPLACE%(\"x\",\"\",\"axbx\")"), "ab");
  EXPECT_EQ(resolve("%REPLACE%(\"x\",\"y\",\"none\")"), "none");
  EXPECT_EQ(resolve("%REPLACE%(\"x\",\"y\",\"\")"), "");
}

TEST_F(MacroFunctions, ReplaceNothingInsideAReplacement) {
  EXPECT_EQ(resolve("%REPLACE%(\"a\",\"aa\",\"banana\")"), "baanaanaa");
  EXPECT_EQ(resolve("%REPLACE%(\"ab\",\"b\",\"aabb\")"), "abb");
}

TEST_F(MacroFunctions, ReplaceNothingForAnEmptySearchText) {
  EXPECT_EQ(resolve("%REPLACE%(\"\",\"y\",\"text\")"), "text");
  EXPECT_EQ(resolve("%REPLACE%(\"@ABSENT@\",\"y\",\"text\")"), "text");
}

TEST_F(MacroFunctions, ReplaceByTagsButNotInTheSubjectsTags) {
  setJvmTag("FROM", "x");
  setJvmTag("TO", "<to>");
  setJvmTag("S", "xxx");
  EXPECT_EQ(resolve("%REPLACE%(\"@FROM@\",\"@TO@\",\"axb\")"), "a<to>b");
  // The subject's tag is still a macro when the text is searched; a later pass puts its value in.
  EXPECT_EQ(resolve("%REPLACE%(\"@FROM@\",\"@TO@\",\"@S@x\")"), "xxx<to>");
  EXPECT_EQ(resolve("%REPLACE%(\"S\",\"FROM\",\"@S@\")"), "x");
}

TEST_F(MacroFunctions, MakeASystemProperty) {
  setJvmTag("SYSTEM", "-D");
  setJvmTag("SYSTEM_SEPARATOR", "=");
  setJvmTag("JVM_HOME", "/opt/java\\");
  EXPECT_EQ(resolve("%SYSTEMPROP%(\"a.b\",\"c\")"), "-Da.b=c");
  EXPECT_EQ(resolve("%SYSTEMPROP%(\"home\",\"@JVM_HOME@/lib\")"), "-Dhome=/opt/java/lib");
  EXPECT_EQ(resolve("%SYSTEMPROP%(\" a \",\" \"\"b\"\" \")"), "-D a = \"b\" ");
}

TEST_F(MacroFunctions, MakeASystemPropertyWithoutTags) {
  EXPECT_EQ(resolve("%SYSTEMPROP%(\"a\",\"b\")"), "ab");
}

TEST_F(MacroFunctions, ShowATextIfATagExists) {
  setJvmTag("X", "value");
  setJvmTag("EMPTY", "");
  EXPECT_EQ(resolve("<%IF_EXISTS%(\"X\",\"-x @X@\")>"), "<-x value>");
  EXPECT_EQ(resolve("<%IF_EXISTS%(\"EMPTY\",\"-x @X@\")>"), "<>");
  EXPECT_EQ(resolve("<%IF_EXISTS%(\"ABSENT\",\"-x\")>"), "<>");
  EXPECT_EQ(resolve("<%IF_EXISTS%(\"@X@\",\"the name is no macro\")>"), "<>");
}

TEST_F(MacroFunctions, NeedNoParenthesisAtTheEndOfTheText) {
  setJvmTag("A", "1");
  EXPECT_EQ(resolve("java %IF_EXISTS%(\"A\",\"B\""), "java B");
}

TEST_F(MacroFunctions, TellTheRunningLauncherAndTheOriginalsDirectory) {
  launcherFileName = "/tmp/vsj1/inner";
  originalLauncherFileName = "/opt/my app/setup.bin";
  EXPECT_EQ(resolve("%LAUNCHER_FILE%()"), "/tmp/vsj1/inner");
  EXPECT_EQ(resolve("%LAUNCHER_DIR%( )"), "/opt/my app");
}

TEST_F(MacroFunctions, CutTheDirectoryAtTheLastSeparatorOfEitherKind) {
  const std::pair<const char*, const char*> rows[] = {
      {"/opt/a\\b/setup", "/opt/a\\b"},
      {"/opt/a/b\\setup", "/opt/a/b"},
      {"C:\\dir\\setup", "C:\\dir"},
      {"/setup", ""},
      {"setup.bin", ""},
      {"/opt/", "/opt"},
  };
  for (const auto& [launcher, directory] : rows) {
    originalLauncherFileName = launcher;
    EXPECT_EQ(resolve("%LAUNCHER_DIR%()"), directory) << launcher;
  }
}

TEST_F(MacroFunctions, TellTheTemporaryRoot) {
  EXPECT_EQ(resolve("%TEMP_DIR%()"), tree.path("temp"));
  tempRoot = text(tree.dir("temp/end\\"));
  EXPECT_EQ(resolve("%TEMP_DIR%()"), tree.path("temp/end"));
  tempRoot = text(tree.dir("temp/ends\\\\"));
  EXPECT_EQ(resolve("%TEMP_DIR%()"), tree.path("temp/ends\\"));
  tempRoot = "";
  EXPECT_EQ(resolve("%TEMP_DIR%()"), "/tmp");
}

TEST_F(MacroFunctions, NeedATemporaryRootThatExists) {
  tempRoot = "/nowhere at all";
  EXPECT_EQ(thrownMessage([&] { static_cast<void>(resolve("%TEMP_DIR%()")); }),
            "Cannot use /nowhere at all as the temp directory because it does not exist. Please "
            "run the program again using the option -vs:tempdir <temp dir> to specify a different "
            "directory to use.");
}

TEST_F(MacroFunctions, ReadTheRuntimeArgumentsNextToTheOriginal) {
  tree.file("original/setup.ja", "-Xmx64m\n");
  tree.file("original/setup.sp", "a=b\n");
  originalLauncherFileName = text(tree.path("original/setup.bin"));
  setJvmTag("SYSTEM", "-D");
  setJvmTag("SYSTEM_SEPARATOR", "=");
  EXPECT_EQ(resolve("%RUNTIME_JAVAARGS%()|%RUNTIME_SYSTEMPROP%()"), "-Xmx64m|-Da=b");
}

TEST_F(MacroFunctions, AreExpandedInsideTheValueOfAFunction) {
  EXPECT_EQ(resolve("%REPLACE%(\"!\",\"%\",\"!TEMP_DIR!()\")."), tree.path("temp") + ".");
}

TEST_F(MacroFunctions, ServeTwiceInOneCommand) {
  EXPECT_EQ(resolve("%LAUNCHER_FILE%():%LAUNCHER_FILE%()"),
            tree.path("app/setup.bin") + ":" + tree.path("app/setup.bin"));
}

}  // namespace
}  // namespace vessant::test
