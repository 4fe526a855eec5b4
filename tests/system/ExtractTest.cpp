// "-vs:extract" and the run from what it wrote.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

struct Extract : SystemTest {
  static bool isExecutable(const std::string& path) {
    const auto permissions = std::filesystem::status(path).permissions();
    constexpr auto kExecute = std::filesystem::perms::owner_exec |
                              std::filesystem::perms::group_exec |
                              std::filesystem::perms::others_exec;
    return (permissions & kExecute) == kExecute;
  }
  std::string extracted(const std::string& name) { return readFile(startDirectory + "/" + name); }
};

TEST_F(Extract, WritesEveryFileAndAnInputFileThatNamesThem) {
  file.add(kJvmFile, 1, "first.jvm", "A: 1\n")
      .add(kApplicationArchive, 2, "app.zip", std::string("zip\0\n\xFF", 6))
      .add(kLaunchScript, 3, "launch.script", "B: 2\n")
      .add(kScript, 4, "the script", "C: 3\n")
      .add(kJvmFile, 5, "second.jvm", "")
      .add(kClassPathArchive, 6, "class.jar", "jar")
      .add(kJvmInstaller, 7, "install.sh", "#!/bin/sh\n")
      .add(kVerificationClass, 8, "verify.jar", "verify")
      .add(kEmbeddedLauncher, 9, "launcher", "inner");
  // A dot for each file that is not empty, and the break of the line.
  EXPECT_THAT(runBare({"-vs:extract"}), Ended(0, "........\n"));
  EXPECT_EQ(extracted("input.tag"),
            "ACTION:  RUN_INSTRUCTIONS\nJVM:\n  first.jvm\n  second.jvm\n/:\n"
            "LAUNCHSCRIPT:  launch.script\nINSTRUCTIONS:  the script\n");
  EXPECT_EQ(extracted("first.jvm"), "A: 1\n");
  EXPECT_EQ(extracted("app.zip"), std::string("zip\0\n\xFF", 6));
  EXPECT_EQ(extracted("second.jvm"), "");
  EXPECT_EQ(extracted("the script"), "C: 3\n");
  EXPECT_EQ(extracted("launch.script"), "B: 2\n");
  EXPECT_EQ(extracted("class.jar"), "jar");
  EXPECT_EQ(extracted("verify.jar"), "verify");
  EXPECT_THAT(
      tree.list("elsewhere"),
      UnorderedElementsAre("app.zip", "class.jar", "first.jvm", "input.tag", "install.sh",
                           "launch.script", "launcher", "second.jvm", "the script", "verify.jar"));
  EXPECT_TRUE(isExecutable(startDirectory + "/install.sh"));
  EXPECT_TRUE(isExecutable(startDirectory + "/launcher"));
  EXPECT_FALSE(isExecutable(startDirectory + "/app.zip"));
}

TEST_F(Extract, DoesNotReadWhatItWrites) {
  file.add(kScript, kScriptId, "broken", "not a tag file\n");
  EXPECT_THAT(runBare({"-vs:extract"}), Ended(0, ".\n"));
  EXPECT_EQ(extracted("broken"), "not a tag file\n");
}

TEST_F(Extract, WritesAnInputFileForALauncherThatCarriesNothing) {
  EXPECT_THAT(runBare({"-vs:extract", "-vs:silent"}), Ended(0, "\n"));
  EXPECT_EQ(extracted("input.tag"), "ACTION:  RUN_INSTRUCTIONS\n");
}

TEST_F(Extract, SaysNothingInSilence) {
  file.add(kApplicationArchive, 2, "app.zip", "zip");
  EXPECT_THAT(runBare({"-vs:silent", "-vs:extract"}), Ended(0, ""));
  EXPECT_EQ(extracted("app.zip"), "zip");
}

TEST_F(Extract, ReplacesWhatLiesThere) {
  tree.file("elsewhere/input.tag", std::string(1000, 'x'));
  tree.file("elsewhere/app.zip", std::string(1000, 'x'));
  file.add(kApplicationArchive, 2, "app.zip", "zip");
  EXPECT_EQ(runBare({"-vs:extract"}).status, 0);
  EXPECT_EQ(extracted("input.tag"), "ACTION:  RUN_INSTRUCTIONS\n");
  EXPECT_EQ(extracted("app.zip"), "zip");
}

TEST_F(Extract, FailsWithItsReason) {
  file.add(kApplicationArchive, 2, "no/such/directory", "zip");
  EXPECT_THAT(runLogged({"-vs:extract"}),
              Ended(255,
                    "Unable to extract embedded files from the launcher. Error writing file = 2 "
                    "There may not be enough temporary disk space. Try using -vs:tempdir to use a "
                    "temporary directory on a partition with more disk space.\n"));
  EXPECT_THAT(log(), HasSubstr("ERROR: Unable to extract embedded files from the launcher. Error"));
  EXPECT_FALSE(std::filesystem::exists(startDirectory + "/input.tag"));
}

TEST_F(Extract, FailsWithAnIndexThatCannotBeRead) {
  file.add(9, 9, "no such type", "");
  EXPECT_THAT(runBare({"-vs:extract"}), Ended(255,
                                              "Unable to load the launcher file index. Invalid "
                                              "file type in file index.\n"));
}

TEST_F(Extract, LeavesAllThatTheSameRunNeeds) {
  addScript({"FIND_JVM 1 1", "LAUNCH \"@S2@\" 1"});
  addLaunchScript(kPrintArguments);
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
  EXPECT_THAT(run({"-vs:extract"}), Ended(0, "....\n"));
  // Without a key for the progress the display begins off, and the search turns it on.
  EXPECT_THAT(run({"-vs:in", "input.tag", "one", "two words"}),
              Ended(0,
                    "Demo\n.\nSearching for Java 17.0.1\n\nVerifying Java 17.0.1\n.......\nRunning "
                    "Demo...\n<one>\n<two words>\n"));
}

}  // namespace
}  // namespace vessant::test
