// Embedded archives: what the program finds while it runs is what was packed, and nothing of it is
// left afterwards.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::HasSubstr;

struct Archives : SystemTest {
  Archives() { environment["PATH"] = "/usr/bin:/bin"; }
  void addProgram(const std::string& command) {
    addScript({"ILAUNCH 3 0"});
    addLaunchScript(command);
    addJvmFile("17");
  }
  /// Every byte value, in a pattern that no chunk size divides.
  static std::string content(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251);
    return bytes;
  }
};

struct ArchiveSize : Archives, ::testing::WithParamInterface<std::size_t> {};

TEST_P(ArchiveSize, IsExtractedByteByByte) {
  const std::string bytes = content(GetParam());
  const std::string packed = tree.file("packed", bytes);
  addProgram("cmp " + packed + " %APPLICATION_ARCHIVE%() && echo same");
  file.add(kApplicationArchive, 30, "app.zip", bytes);
  file.add(kApplicationArchive, 31, "app.zip", bytes);  // the name is taken: written over
  EXPECT_THAT(run(), Ended(0, "Demo\nsame\n"));
}

INSTANTIATE_TEST_SUITE_P(AroundTheChunks, ArchiveSize,
                         ::testing::Values(0U, 1U, 61438U, 61439U, 61440U, 122878U, 1000000U));

TEST_F(Archives, OfTheApplicationAreExtractedTogetherAndTheLastIsNamed) {
  addProgram("cd \"$(dirname %APPLICATION_ARCHIVE%())\"; echo *; cat %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "one.zip", "1\n");
  file.add(kClassPathArchive, 31, "class.jar", "not here");
  file.add(kApplicationArchive, 32, "two words.zip", "2\n");
  file.add(kApplicationArchive, 33, "three.zip", "3\n");
  EXPECT_THAT(run(), Ended(0, "Demo\none.zip three.zip two words.zip\n3\n"));
}

TEST_F(Archives, OfTheApplicationAreExtractedOncePerRun) {
  addScript({"ILAUNCH 3 0", "ILAUNCH 3 0"});
  addLaunchScript("echo x >> %APPLICATION_ARCHIVE%(); cat %APPLICATION_ARCHIVE%()");
  addJvmFile("17");
  file.add(kApplicationArchive, 30, "app.zip", "packed\n");
  EXPECT_THAT(run(), Ended(0, "Demo\npacked\nx\npacked\nx\nx\n"));
}

TEST_F(Archives, OfTheClassPathAreExtractedOncePerRun) {
  addScript({"ILAUNCH 3 0", "ILAUNCH 3 0"});
  addLaunchScript("echo %CP%()");
  addJvmFile("17");
  file.add(kClassPathArchive, 30, "a.jar", "a");
  const ProcessResult result = run();
  EXPECT_EQ(result.status, 0);
  const std::string lines = result.out.substr(std::string("Demo\n").size());
  const std::size_t half = lines.size() / 2;
  EXPECT_EQ(lines.substr(0, half), lines.substr(half));
  EXPECT_EQ(maskTempNames(lines.substr(0, half)), "-cp :" + tempRoot + "/vsj/a.jar:\n");
}

TEST_F(Archives, ThatLieNextToTheLauncherAreCopied) {
  tree.file("app/archives/data.zip", content(10000));
  addProgram(
      "cmp archives/data.zip %APPLICATION_ARCHIVE%(\"archives/data.zip\") && "
      "echo %APPLICATION_ARCHIVE%(\"archives/data.zip\") %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "embedded.zip", "never asked for");
  const std::string copy = tempRoot + "/vsj/data.zip";
  const ProcessResult result = run();
  EXPECT_EQ(maskTempNames(result.out), "Demo\n" + copy + " " + copy + "\n");
  EXPECT_EQ(result.status, 0);
}

TEST_F(Archives, ThatAreMissingAreAnEmptyText) {
  addProgram("echo '<%APPLICATION_ARCHIVE%()><%APPLICATION_ARCHIVE%(\"none.zip\")>'");
  EXPECT_THAT(run(), Ended(0, "Demo\n<><>\n"));
}

TEST_F(Archives, AreNotExtractedWhenNobodyAsks) {
  addProgram("echo " + tempRoot + "/*");
  file.add(kApplicationArchive, 30, "app.zip", "1");
  file.add(kClassPathArchive, 31, "class.jar", "2");
  EXPECT_THAT(run(), Ended(0, "Demo\n" + tempRoot + "/*\n"));
}

TEST_F(Archives, AreFoundInTheTempDirectory) {
  addProgram("echo %TEMP_DIR%() %LAUNCHER_DIR%()");
  EXPECT_THAT(run(), Ended(0, "Demo\n" + tempRoot + " " + tree.path("app") + "\n"));
}

TEST_F(Archives, WithANameThatCannotBeWrittenEndTheRun) {
  addProgram("echo %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "no/such/directory/app.zip", "1");
  EXPECT_THAT(runLogged(),
              Ended(255,
                    "Demo\nError writing file = 2 There may not be enough temporary disk "
                    "space. Try using -vs:tempdir to use a temporary directory on a partition "
                    "with more disk space.\n"));
  EXPECT_THAT(log(), HasSubstr("ERROR: Error writing file = 2 There may not be enough"));
}

TEST_F(Archives, ThatWillExpandToMoreThanFitsEndTheRun) {
  constexpr std::uintmax_t kMuch = std::uintmax_t{1} << 40;
  if (std::filesystem::space(tempRoot).available > kMuch) GTEST_SKIP() << "the disk is too large";
  addProgram("echo %APPLICATION_ARCHIVE%()");
  file.addExpanding(kApplicationArchive, 30, "app.zip", "1", 0x7FFFFFFEU, 0x7FFFFFF0U);
  EXPECT_THAT(run(), Ended(255,
                           "Demo\nError writing file =  There may not be enough temporary disk "
                           "space. Try using -vs:tempdir to use a temporary directory on a "
                           "partition with more disk space.\n"));
}

TEST_F(Archives, ThatWillExpandToMoreThanASignedNumberHoldsAlwaysFit) {
  addProgram("cat %APPLICATION_ARCHIVE%()");
  file.addExpanding(kApplicationArchive, 30, "app.zip", "fits\n", 0, 0x80000000U);
  EXPECT_THAT(run(), Ended(0, "Demo\nfits\n"));
}

TEST_F(Archives, FromAnotherLauncherFileAreReadFromThere) {
  addProgram("cat %APPLICATION_ARCHIVE%(); echo %LAUNCHER_FILE%() %LAUNCHER_DIR%()");
  file.add(kApplicationArchive, 30, "app.zip", "from the other file\n");
  const std::string other = tree.path("other/data.bin");
  tree.dir("other");
  file.write(other);
  file = LauncherFileBuilder().launcherStub();
  EXPECT_THAT(run({"-vs:orig", other}),
              Ended(0, "Demo\nfrom the other file\n" + launcher + " " + tree.path("other") + "\n"));
  // A launcher that was started for another one's file goes away with its run.
  EXPECT_FALSE(std::filesystem::exists(tree.path("app")));
  EXPECT_TRUE(std::filesystem::exists(other));
}

}  // namespace
}  // namespace vessant::test
