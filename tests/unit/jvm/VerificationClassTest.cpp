// The class that candidates run: what was set, or the embedded one.
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

constexpr int kJvmFileType = 1;
constexpr int kArchiveType = 3;
constexpr int kVerificationType = 5;

TEST(VerificationClass, IsTheOneThatWasSet) {
  JvmFixture fixture;
  fixture.file.add(kVerificationType, 1, "verify.jar", "embedded");
  fixture.load();
  fixture.files.setVerificationClass("cp", "Name");
  EXPECT_EQ(fixture.files.verificationClass().classPath, "cp");
  EXPECT_EQ(fixture.files.verificationClass().className, "Name");
}

TEST(VerificationClass, OneSettingKeepsTheEmbeddedOneOut) {
  JvmFixture fixture;
  fixture.file.add(kVerificationType, 1, "verify.jar", "embedded");
  fixture.load();
  fixture.files.setVerificationClass("", "Name");
  EXPECT_EQ(fixture.files.verificationClass().classPath, "");
  EXPECT_EQ(fixture.files.verificationClass().className, "Name");
  fixture.files.setVerificationClass("cp", "");
  EXPECT_EQ(fixture.files.verificationClass().classPath, "cp");
  EXPECT_EQ(fixture.files.verificationClass().className, "");
  EXPECT_TRUE(fixture.tree.list("temp").empty());
}

TEST(VerificationClass, IsEmptyWithoutAnEmbeddedOne) {
  JvmFixture fixture;
  fixture.file.add(kArchiveType, 1, "app.jar", "archive");
  fixture.load();
  EXPECT_EQ(fixture.files.verificationClass().classPath, "");
  EXPECT_EQ(fixture.files.verificationClass().className, "");
}

TEST(VerificationClass, IsTheFirstEmbeddedOneExtracted) {
  JvmFixture fixture;
  fixture.file.add(kArchiveType, 1, "app.jar", "archive")
      .add(kVerificationType, 2, "verify.jar", "first")
      .add(kVerificationType, 3, "other.jar", "second");
  fixture.load();
  const VerificationClass& found = fixture.files.verificationClass();
  EXPECT_EQ(found.className, "\"Verify\"");
  const std::string path = str(found.classPath);
  ASSERT_GT(path.size(), 2U);
  EXPECT_EQ(path.front(), '"');
  EXPECT_EQ(path.back(), '"');
  const std::string file = path.substr(1, path.size() - 2);
  EXPECT_TRUE(file.starts_with(fixture.tree.path("temp") + "/vsj")) << file;
  EXPECT_TRUE(file.ends_with("/verify.jar")) << file;
  EXPECT_EQ(readFile(file), "first");
}

TEST(VerificationClass, IsExtractedOnceARun) {
  JvmFixture fixture;
  fixture.file.add(kVerificationType, 2, "verify.jar", "class");
  fixture.load();
  const std::string first = str(fixture.files.verificationClass().classPath);
  EXPECT_EQ(str(fixture.files.verificationClass().classPath), first);
  fixture.find();
  EXPECT_EQ(str(fixture.files.verificationClass().classPath), first);
  EXPECT_EQ(fixture.tree.list("temp").size(), 2U);  // a directory and the copy in it
}

TEST(VerificationClass, ReachesTheCommandOfASearch) {
  JvmFixture fixture;
  fixture.file.add(kJvmFileType, 1, "any", "").add(kVerificationType, 2, "verify.jar", "class");
  fixture.load();
  fixture.add(jvmFileText("17"));
  fixture.javaHome = text(fixture.home("jdk", "17"));
  fixture.find();
  ASSERT_EQ(fixture.run.platform.commands.size(), 1U);
  const std::string command = str(fixture.run.platform.commands[0].command);
  const std::string classPath = str(fixture.files.verificationClass().classPath);
  EXPECT_NE(command.find(":" + classPath + ":"), std::string::npos) << command;
  EXPECT_TRUE(command.ends_with(" \"Verify\" java.version")) << command;
}

TEST(VerificationClass, IsExtractedBeforeTheFirstCandidateIsShown) {
  JvmFixture fixture;
  fixture.file.add(kVerificationType, 2, "verify.jar", "class");
  fixture.load();
  fixture.find();
  EXPECT_EQ(fixture.tree.list("temp").size(), 2U);
  EXPECT_TRUE(fixture.run.progress.phases.empty());
}

}  // namespace
}  // namespace vessant::test
