// The class that candidates run: what was set, or the embedded one.
#include <optional>

#include <gtest/gtest.h>

#include "support/ProcessScope.h"
#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

/// The C library would prefer the directory that TMPDIR names to the run's temporary root.
class EmbeddedClass : public testing::Test {
 protected:
  /// The class after a search, which makes it ready.
  const VerificationClass& prepared() {
    fixture.find();
    return fixture.files.verificationClass();
  }

  ScopedEnvironment noTmpdir{"TMPDIR", std::nullopt};
  JvmFixture fixture;
};

TEST_F(EmbeddedClass, IsTheOneThatWasSet) {
  fixture.file.add(kVerificationClass, 1, "verify.jar", "embedded");
  fixture.load();
  fixture.files.setVerificationClass("cp", "Name");
  EXPECT_EQ(prepared().classPath, "cp");
  EXPECT_EQ(prepared().className, "Name");
}

TEST_F(EmbeddedClass, OneSettingKeepsTheEmbeddedOneOut) {
  fixture.file.add(kVerificationClass, 1, "verify.jar", "embedded");
  fixture.load();
  fixture.files.setVerificationClass("", "Name");
  EXPECT_EQ(prepared().classPath, "");
  EXPECT_EQ(prepared().className, "Name");
  fixture.files.setVerificationClass("cp", "");
  EXPECT_EQ(prepared().classPath, "cp");
  EXPECT_EQ(prepared().className, "");
  EXPECT_TRUE(fixture.tree.list("temp").empty());
}

TEST_F(EmbeddedClass, IsEmptyWithoutAnEmbeddedOne) {
  fixture.file.add(kClassPathArchive, 1, "app.jar", "archive");
  fixture.load();
  EXPECT_EQ(prepared().classPath, "");
  EXPECT_EQ(prepared().className, "");
}

TEST_F(EmbeddedClass, IsTheFirstEmbeddedOneExtracted) {
  fixture.file.add(kClassPathArchive, 1, "app.jar", "archive")
      .add(kVerificationClass, 2, "verify.jar", "first")
      .add(kVerificationClass, 3, "other.jar", "second");
  fixture.load();
  const VerificationClass& found = prepared();
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

TEST_F(EmbeddedClass, IsExtractedOnceARun) {
  fixture.file.add(kVerificationClass, 2, "verify.jar", "class");
  fixture.load();
  const std::string first = str(prepared().classPath);
  EXPECT_EQ(str(prepared().classPath), first);
  EXPECT_EQ(fixture.tree.list("temp").size(), 2U);  // a directory and the copy in it
}

TEST_F(EmbeddedClass, ReachesTheCommandOfASearch) {
  fixture.file.add(kJvmFile, 1, "any", "").add(kVerificationClass, 2, "verify.jar", "class");
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

TEST_F(EmbeddedClass, IsExtractedBeforeTheFirstCandidateIsShown) {
  fixture.file.add(kVerificationClass, 2, "verify.jar", "class");
  fixture.load();
  fixture.find();
  EXPECT_EQ(fixture.tree.list("temp").size(), 2U);
  EXPECT_TRUE(fixture.run.progress.phases.empty());
}

}  // namespace
}  // namespace vessant::test
