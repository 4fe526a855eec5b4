// The program's jar: what vspack reads out of it, and the jars that it refuses.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/check/JarFile.h"
#include "packer/init/Project.h"
#include "support/TempTree.h"
#include "support/Thrown.h"
#include "unit/packer/check/JarBuilder.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;

std::string classFile(int major) {
  std::string bytes("\xCA\xFE\xBA\xBE\0\0\0", 7);
  return bytes + static_cast<char>(major) + "rest";
}

struct ApplicationJarTest : testing::Test {
  std::string jar(const std::string& manifest, int major = 61) {
    return tree.file("my.jar", jarBytes({{"META-INF/MANIFEST.MF", manifest},
                                         {"com/example/Main.class", classFile(major)},
                                         {"Other.class", classFile(65)},
                                         {"Broken.class", "no class"}}));
  }
  std::string refusal(const std::string& path, const std::string& main = "") {
    return thrownMessage([&] { static_cast<void>(readApplicationJar(path, main)); });
  }

  const std::string kNamesMain = "Manifest-Version: 1.0\r\nMain-Class: com.example.Main \r\n\r\n";
  TempTree tree;
};

TEST_F(ApplicationJarTest, StartsTheClassThatTheManifestNames) {
  const ApplicationJar application = readApplicationJar(jar(kNamesMain), "");
  EXPECT_EQ(application.mainClass, "com.example.Main");
  EXPECT_TRUE(application.startsByItself);
  EXPECT_EQ(application.feature, 17);
}

TEST_F(ApplicationJarTest, StartsTheClassThatTheAuthorNames) {
  const ApplicationJar application = readApplicationJar(jar(kNamesMain), "Other");
  EXPECT_EQ(application.mainClass, "Other");
  EXPECT_FALSE(application.startsByItself);
  EXPECT_EQ(application.feature, 21);
  EXPECT_TRUE(readApplicationJar(jar(kNamesMain), "com.example.Main").startsByItself);
}

TEST_F(ApplicationJarTest, RefusesAJarThatNamesNoClass) {
  EXPECT_EQ(refusal(jar("Manifest-Version: 1.0\n\n")),
            tree.path("my.jar") +
                ": its manifest names no Main-Class; name the class to start with --main");
}

TEST_F(ApplicationJarTest, RefusesClassesThatAreNotThere) {
  EXPECT_EQ(refusal(jar(kNamesMain), "com.example.Mian"),
            tree.path("my.jar") +
                ": has no class \"com.example.Mian\"; did you mean \"com.example.Main\"?");
  EXPECT_THAT(refusal(jar(kNamesMain), "com/example/Main"), HasSubstr("is named with dots"));
  EXPECT_THAT(refusal(jar(kNamesMain), "Main; rm x"), HasSubstr("is no name of a class"));
  EXPECT_THAT(refusal(jar(kNamesMain), "Broken"), HasSubstr("\"Broken\" is no class file"));
}

TEST_F(ApplicationJarTest, RefusesWhatIsNoJar) {
  EXPECT_THAT(refusal(tree.file("my.jar", "hello")), HasSubstr("my.jar: is no jar: "));
  EXPECT_THAT(refusal(tree.file("empty.jar")), HasSubstr("empty.jar: is no jar: "));
  EXPECT_THAT(refusal(tree.path("none.jar")), HasSubstr("none.jar: No such file or directory"));
  EXPECT_THAT(refusal(tree.dir("dir.jar")), HasSubstr("dir.jar: "));
}

TEST_F(ApplicationJarTest, RefusesAJarThatNeedsAnotherBesideIt) {
  const std::string path = jar("Main-Class: com.example.Main\nClass-Path: gone.jar lib/a.jar\n\n");
  EXPECT_EQ(readApplicationJar(path, "").mainClass, "com.example.Main")
      << "Java passes over jars that are not there";
  tree.file("lib/a.jar");
  EXPECT_EQ(refusal(path), path +
                               ": its Class-Path needs \"lib/a.jar\", which would not travel "
                               "with it: make one jar of both");
}

TEST(ClassFile, TellsTheJavaThatItWasCompiledFor) {
  EXPECT_EQ(featureOfClass(classFile(52)), 8);
  EXPECT_EQ(featureOfClass(classFile(61)), 17);
  EXPECT_EQ(featureOfClass(classFile(48)), 8) << "nothing older is ever looked for";
  EXPECT_EQ(featureOfClass(""), 0);
  EXPECT_EQ(featureOfClass("\xCA\xFE\xBA"), 0);
  EXPECT_EQ(featureOfClass("PK\3\4....."), 0);
}

TEST(SafeFileName, KeepsLettersAndDigitsAndReplacesTheRest) {
  EXPECT_EQ(safeFileName("my-app_1.2"), "my-app_1.2");
  EXPECT_EQ(safeFileName("my app's 100%"), "my-app-s-100");
  EXPECT_EQ(safeFileName("größe"), "gr-e");
  EXPECT_EQ(safeFileName("-rf"), "rf");
  EXPECT_EQ(safeFileName("..hidden"), "hidden");
  EXPECT_EQ(safeFileName("$@#"), "");
}

}  // namespace
}  // namespace vessant::test
