// The pieces of a class path and the rules that join them.

#include "LaunchRoom.h"
#include "launcher/launch/JavaArguments.h"

namespace vessant::test {
namespace {

class ClassPathPieces : public LaunchRoom {
 protected:
  ClassPathPieces() { setJvmTag("CLASSPATH_SEPARATOR", ":"); }

  std::string appended(const char* classPath, const char* entry) {
    SString result = classPath;
    ClassPathBuilder(launch, jvmFile).appendClassPathEntry(result, entry);
    return str(result);
  }
  std::string withOption(const char* classPath, std::string_view option) {
    SString result = classPath;
    ClassPathBuilder(launch, jvmFile).addClassPathOption(result, option);
    return str(result);
  }
  std::string listFile(const std::string& path, bool warn) {
    return str(ClassPathBuilder(launch, jvmFile).readClassPathFile(text(path), warn));
  }
};

TEST_F(ClassPathPieces, StandBehindASeparator) {
  EXPECT_EQ(appended("", "a.jar"), "a.jar");
  EXPECT_EQ(appended("a.jar", "b.jar"), "a.jar:b.jar");
  EXPECT_EQ(appended("a.jar", ""), "a.jar");
  EXPECT_EQ(appended("", ""), "");
}

TEST_F(ClassPathPieces, StandSideBySideWithoutASeparator) {
  jvmTags.removeTag("CLASSPATH_SEPARATOR");
  EXPECT_EQ(appended("a.jar", "b.jar"), "a.jarb.jar");
}

TEST_F(ClassPathPieces, FromAnOptionAreTrimmed) {
  EXPECT_EQ(withOption("", " \t a b.jar\r\n"), "a b.jar");
  EXPECT_EQ(withOption("x", "a.jar"), "x:a.jar");
  EXPECT_EQ(withOption("x", ""), "x");
  EXPECT_EQ(withOption("x", " \t\r\n"), "x");
}

TEST_F(ClassPathPieces, FromAnOptionMayComeFromAListFile) {
  const std::string list = tree.file("list", "a.jar\n\n b.jar \n");
  EXPECT_EQ(withOption("x", "@" + list), "x:a.jar:b.jar");
  EXPECT_EQ(withOption("x", "  @" + list + "\n"), "x:a.jar:b.jar");
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(ClassPathPieces, FromAMissingListFileLeaveAWarning) {
  const std::string list = tree.path("missing");
  EXPECT_EQ(withOption("x", "@" + list), "x");
  EXPECT_EQ(
      run.log.lines(),
      (std::vector<Line>{{"Could not find the file " + list + " while building the classpath.",
                          LogLevel::Warning}}));
}

TEST_F(ClassPathPieces, InQuotesAreNoListFile) {
  EXPECT_EQ(withOption("", "\"@list\""), "\"@list\"");
  EXPECT_EQ(withOption("x", "\"\""), "x:\"\"");
}

TEST_F(ClassPathPieces, FromAListFileStandInTheirOrder) {
  EXPECT_EQ(listFile(tree.file("list", "z.jar\na.jar\r\n\r\nm n.jar"), true),
            "z.jar:a.jar:m n.jar");
  EXPECT_EQ(listFile(tree.file("list", "x.jar\n\n"), true), "x.jar");
  EXPECT_EQ(listFile(tree.file("list", ""), true), "");
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(ClassPathPieces, FromAMissingSideFileAreNone) {
  EXPECT_EQ(listFile(tree.path("missing"), false), "");
  EXPECT_EQ(ClassPathBuilder(launch, jvmFile).readSideFileClassPath(".cp"), "");
  EXPECT_TRUE(run.log.lines().empty());
}

TEST_F(ClassPathPieces, FromASideFileLieNextToTheOriginalLauncher) {
  tree.file("original/setup.cp", "here.jar\n");
  originalLauncherFileName = text(tree.path("original/setup.bin"));
  EXPECT_EQ(ClassPathBuilder(launch, jvmFile).readSideFileClassPath(".cp"), "here.jar");
}

TEST_F(ClassPathPieces, FromTheLauncherAreExtracted) {
  file.add(3, 1, "first.jar", "one").add(6, 2, "app.jar", "two").add(3, 3, "second.jar", "three");
  load();
  const ClassPathBuilder builder(launch, jvmFile);
  const std::string first = extracted(0);
  const std::string second = extracted(2);
  EXPECT_EQ(builder.extractedArchives(false), text(first + ":" + second));
  EXPECT_EQ(builder.extractedArchives(true), text("\"" + first + "\":\"" + second + "\""));
  EXPECT_TRUE(first.ends_with("/first.jar"));
  EXPECT_EQ(readFile(first), "one");
  EXPECT_EQ(readFile(second), "three");
}

TEST_F(ClassPathPieces, FromALauncherWithoutArchivesAreNone) {
  file.add(6, 2, "app.jar", "two");
  load();
  EXPECT_EQ(ClassPathBuilder(launch, jvmFile).extractedArchives(true), "");
}

}  // namespace
}  // namespace vessant::test
