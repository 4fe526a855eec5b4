// The texts of a new project, word for word: authors read them, and the launcher does.

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/init/Project.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::Not;

Project project(JavaSource source = JavaSource::Found) {
  return {.name = "app",
          .title = "My App",
          .jar = {.path = "app.jar",
                  .mainClass = "com.example.Main",
                  .startsByItself = true,
                  .feature = 17},
          .range = {17, 21},
          .javaSource = source};
}

// The pieces that the scripts are made of.
constexpr const char* kFind =
    "  // Look for a Java that java.jvm accepts. S2 is then a JVM file for it.\n"
    "  FIND_JVM 0 0\n";
constexpr const char* kUnpack =
    "  // Unpack the Java that comes with this. S1 is then the path of its JVM file.\n"
    "  INSTALL_JVM 0\n"
    "  JMP0 @N1@ no-java\n"
    "  LAUNCH \"@S1@\" 0\n";
constexpr const char* kEnd =
    "  GOTO end\n"
    "  :no-java\n"
    "  // The launch command tells the user what is missing and ends with 3.\n"
    "  ILAUNCH 6 0\n"
    "  :end\n"
    "/:\n";

std::map<std::string, std::string> texts(const Project& of) {
  std::map<std::string, std::string> found;
  for (const ProjectFile& file : textsOf(of)) found[file.name] = file.text;
  return found;
}

TEST(ProjectTexts, LookForAJavaOfTheMachine) {
  const auto files = texts(project());
  EXPECT_THAT(files, ElementsAre(Key("README.md"), Key("app.instructions"), Key("app.launch"),
                                 Key("app.manifest"), Key("java.jvm"), Key("no-java.jvm")));
  EXPECT_EQ(files.at("app.manifest"),
            "OUTPUT: app-installer\n"
            "FILES:\n"
            "  instructions   1  app.instructions\n"
            "  launch-script  2  app.launch\n"
            "  application    3  app.jar\n"
            "  verification   4  verify.jar\n"
            "  jvm            5  java.jvm\n"
            "  jvm            6  no-java.jvm\n"
            "/:\n");
  EXPECT_EQ(files.at("app.instructions"), std::string("INSTRUCTIONS:\n") + kFind +
                                              "  JMP0 @N1@ no-java\n"
                                              "  LAUNCH \"@S2@\" 0\n" +
                                              kEnd);
  EXPECT_EQ(files.at("app.launch"),
            "DESC: My App\n"
            "DISPLAY_CONSOLE: 1\n"
            "AUTO_SET_WORKING_DIR: 0\n"
            "COMMAND: @NO_JAVA@ \"$JAVA_HOME\"/@JVM_EXE@ -jar '%APPLICATION_ARCHIVE%()'\n");
}

TEST(ProjectTexts, UnpackABundledJava) {
  const auto files = texts(project(JavaSource::Bundled));
  EXPECT_THAT(files, Not(Contains(Key("java.jvm"))));
  EXPECT_THAT(files.at("app.manifest"), Not(HasSubstr("verify.jar")));
  EXPECT_THAT(files.at("app.manifest"), HasSubstr("\n  jvm-installer  7  app-jre\n"));
  EXPECT_EQ(files.at("app.instructions"), std::string("INSTRUCTIONS:\n") + kUnpack + kEnd);
}

TEST(ProjectTexts, PreferTheMachinesJavaToABundledOne) {
  EXPECT_EQ(texts(project(JavaSource::FoundOrBundled)).at("app.instructions"),
            std::string("INSTRUCTIONS:\n") + kFind +
                "  JMP0 @N1@ unpack\n"
                "  LAUNCH \"@S2@\" 0\n"
                "  GOTO end\n"
                "  :unpack\n" +
                kUnpack + kEnd);
}

TEST(ProjectTexts, StartAClassThatTheJarDoesNotNameByItsName) {
  Project other = project();
  other.jar.startsByItself = false;
  other.jar.mainClass = "com.example.Outer$Main";
  EXPECT_THAT(texts(other).at("app.launch"),
              HasSubstr(" -cp '%APPLICATION_ARCHIVE%()' 'com.example.Outer$Main'\n"));
}

TEST(ProjectTexts, CarryAnyTitle) {
  Project other = project();
  other.title = "\"Größe\" ";
  EXPECT_THAT(texts(other).at("app.launch"), HasSubstr("DESC: \"\"\"Gr\\u00f6\\u00dfe\"\" \"\n"));
}

TEST(ProjectTexts, TellTheAuthorWhichFileIsWhat) {
  Project other = project(JavaSource::FoundOrBundled);
  other.name = "app-1.2";
  const std::string page = texts(other).at("README.md");
  EXPECT_THAT(page, HasSubstr("    ./app-1.2-installer ARGUMENTS\n"));
  EXPECT_THAT(page, HasSubstr("| app-1.2-jre | "));
  EXPECT_THAT(page, HasSubstr("`app-1.ja` beside the installer"))
      << "the launcher takes what follows the last dot for an extension";
  EXPECT_THAT(page, Not(HasSubstr("<")));
}

}  // namespace
}  // namespace vessant::test
