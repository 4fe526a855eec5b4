// Mistakes that show only when the files of a package are looked at together.

#include <elf.h>
#include <gmock/gmock.h>

#include "JarBuilder.h"
#include "PackageFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PackageMistakesTest : public PackageFixture {};

TEST_F(PackageMistakesTest, NoScript) {
  drop("setup.instructions");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:9 no-script"));
}

TEST_F(PackageMistakesTest, NoLaunchScript) {
  drop("setup.launch");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:9 no-launch-script"));
}

TEST_F(PackageMistakesTest, NoVerificationClass) {
  drop("verify.jar");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:9 no-verification-class"));
}

TEST_F(PackageMistakesTest, NoJvmFile) {
  drop("java.jvm");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:9 no-jvm-file"));
}

TEST_F(PackageMistakesTest, NoJvmInstaller) {
  script("INSTALL_JVM 1\nJMP0 @N1@ none\nLAUNCH \"@S1@\" 1\nGOTO end\n:none\nILAUNCH 0 0\n:end\n");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:9 no-jvm-installer"));
}

TEST_F(PackageMistakesTest, InstallModes) {
  put(FileType::JvmInstaller, 6, "jre", "#!/bin/sh\n");
  const std::string rest =
      "\nJMP0 @N1@ none\nLAUNCH \"@S1@\" 1\nGOTO end\n:none\nILAUNCH 0 0\n:end\n";
  script("INSTALL_JVM" + rest);
  EXPECT_THAT(found(), ElementsAre("setup.instructions:2 missing-argument"));
  script("INSTALL_JVM 3" + rest);
  EXPECT_THAT(found(), ElementsAre("setup.instructions:2 number-out-of-range"));
  script("INSTALL_JVM 2" + rest);
  EXPECT_THAT(found(), IsEmpty());
}

TEST_F(PackageMistakesTest, SecondScripts) {
  put(FileType::Instructions, 20, "other.instructions", "INSTRUCTIONS: ILAUNCH 0 0\n");
  put(FileType::LaunchScript, 21, "other.launch", "DESC: x\nCOMMAND: true\n");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:15 second-script",
                                   "setup.manifest:16 second-launch-script"));
}

TEST_F(PackageMistakesTest, SearchAllHidesLaterFiles) {
  change("java.jvm", "SEARCH_ALL: 0", "SEARCH_ALL: 1");
  EXPECT_THAT(found(), IsEmpty());
  put(FileType::JvmFile, 21, "later.jvm",
      "DESC: Java 21\nJVM_PROPERTIES: java.specification.version=21\nJVM_EXE: bin/java\n"
      "CLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\nSYSTEM: \"-D\"\nSYSTEM_SEPARATOR: \"=\"\n");
  EXPECT_THAT(found(), ElementsAre("java.jvm:4 search-all-hides"));
}

TEST_F(PackageMistakesTest, JarsThatAreNoZip) {
  put(FileType::ClassPathArchive, 4, "app.jar", "no zip");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:14 not-a-zip"));
  const std::string jar = jarBytes({{"app/Main.class", "x"}});
  put(FileType::ClassPathArchive, 4, "app.jar", jar.substr(0, jar.size() - 30));
  EXPECT_THAT(found(), ElementsAre("setup.manifest:14 not-a-zip"));
}

TEST_F(PackageMistakesTest, JarBehindAProgramIsAJar) {
  put(FileType::ClassPathArchive, 4, "app.jar",
      "#!/bin/sh\nexec java -jar \"$0\"\n" + jarBytes({{"app/Main.class", "x"}}));
  EXPECT_THAT(found(), IsEmpty());
}

TEST_F(PackageMistakesTest, JarsWhoseDirectoryLiesAreNoZip) {
  const std::string jar = jarBytes({{"app/Main.class", "x"}});
  for (const std::size_t fromEnd : {22U, 12U, 10U, 6U, 5U}) {
    std::string bad = jar;
    bad[bad.size() - fromEnd] = '\x7F';
    put(FileType::ClassPathArchive, 4, "app.jar", bad);
    EXPECT_THAT(found(), ElementsAre("setup.manifest:14 not-a-zip")) << fromEnd;
  }
}

TEST_F(PackageMistakesTest, Sizes) {
  put(FileType::ApplicationArchive, 5, "data", "x");
  command("COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() app.Main \"%APPLICATION_ARCHIVE%()\"");
  EXPECT_THAT(found(), IsEmpty());
  growTo("data", (std::uint64_t{1} << 31U) - 1);
  EXPECT_THAT(found(), IsEmpty());
  growTo("data", std::uint64_t{1} << 31U);
  EXPECT_THAT(found(), ElementsAre("setup.manifest:15 space-check"));
  growTo("data", (std::uint64_t{1} << 32U) - 1);
  EXPECT_THAT(found(), ElementsAre("setup.manifest:15 space-check", "setup.manifest:15 too-large"));
  growTo("data", std::uint64_t{1} << 32U);
  EXPECT_THAT(found(), ElementsAre("setup.manifest:15 too-large", "setup.manifest:15 too-large"));
}

TEST_F(PackageMistakesTest, EmptyJar) {
  put(FileType::ClassPathArchive, 4, "app.jar", "");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:14 not-a-zip"));
}

TEST_F(PackageMistakesTest, VerificationWithoutItsClass) {
  put(FileType::VerificationClass, 3, "verify.jar", jarBytes({{"Other.class", "x"}}));
  EXPECT_THAT(found(), ElementsAre("setup.manifest:14 no-verify-class"));
}

TEST_F(PackageMistakesTest, MainClassOfAnApplicationArchive) {
  drop("app.jar");
  put(FileType::ApplicationArchive, 4, "app.jar",
      jarBytes(
          {{"META-INF/MANIFEST.MF", "Main-Class: app.M\r\n ain\r\n"}, {"app/Main.class", ""}}));
  command("COMMAND: \"$JAVA_HOME\"/@JVM_EXE@ -jar '%APPLICATION_ARCHIVE%()'");
  change("setup.launch", "COMMAND: ", "COMMAND: exec ");
  EXPECT_THAT(found(), IsEmpty());
  put(FileType::ApplicationArchive, 4, "app.jar", jarBytes({{"app/Main.class", ""}}));
  EXPECT_THAT(found(), ElementsAre("setup.launch:3 missing-main-class"));
  put(FileType::ApplicationArchive, 4, "app.jar",
      jarBytes({{"META-INF/MANIFEST.MF", "Main-Class: app.Mian\n"}, {"app/Main.class", ""}}));
  EXPECT_THAT(found(), ElementsAre("setup.launch:3 missing-main-class"));
}

TEST_F(PackageMistakesTest, MissingArchives) {
  drop("app.jar");
  EXPECT_THAT(found(), ElementsAre("setup.launch:3 missing-archive"));
  change("setup.launch", "DISPLAY_CONSOLE: 1", "ARCHIVE: lib/app.jar");
  EXPECT_THAT(found(), ElementsAre("setup.launch:2 missing-archive"));
  tree.file("lib/app.jar", "x");
  EXPECT_THAT(found(), IsEmpty());
  command("COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" -jar '%APPLICATION_ARCHIVE%()'");
  EXPECT_THAT(found(), ElementsAre("setup.launch:3 missing-archive"));
}

TEST_F(PackageMistakesTest, PackedJarsThatAreLookedForBesideTheInstaller) {
  const auto foundIn = [this](const std::string& rest) {
    command("COMMAND: exec '@JVM_HOME@/@JVM_EXE@' " + rest);
    return found();
  };
  const std::vector<std::string> beside = {"setup.launch:3 missing-archive",
                                           "setup.manifest:13 unused-file"};
  EXPECT_EQ(foundIn("-jar app.jar"), beside);
  EXPECT_EQ(foundIn("-cp lib/other.jar:./app.jar app.Main"), beside);
  EXPECT_EQ(foundIn("-cp '%LAUNCHER_DIR%()/app.jar' app.Main"), beside);
  EXPECT_THAT(foundIn("app.Main"),
              ElementsAre("setup.launch:3 missing-main-class", "setup.manifest:13 unused-file"));
  EXPECT_THAT(foundIn("-cp other.jar app.Main"), ElementsAre("setup.manifest:13 unused-file"));
}

TEST_F(PackageMistakesTest, FilesThatNothingUses) {
  put(FileType::ApplicationArchive, 5, "data.bin", "x");
  put(FileType::JvmInstaller, 6, "jre", "#!/bin/sh\n");
  EXPECT_THAT(found(),
              ElementsAre("setup.manifest:15 unused-file", "setup.manifest:16 unused-file"));
}

TEST_F(PackageMistakesTest, LauncherThatIsNone) {
  launcherPath = "/bin/true";
  EXPECT_THAT(found(), ElementsAre("setup.manifest:2 not-a-launcher"));
  launcherPath = tree.file("script", "#!/bin/sh\n");
  EXPECT_THAT(found(), ElementsAre("setup.manifest:2 not-a-launcher"));
}

class MachineTest : public PackageMistakesTest {
 protected:
  MachineTest() {
    script(
        "INSTALL_JVM 1\nJMP0 @N1@ none\nLAUNCH \"@S1@\" 1\nGOTO end\n:none\nILAUNCH 0 0\n:end\n");
  }
  std::vector<std::string> foundWith(const std::string& installer) {
    put(FileType::JvmInstaller, 6, "jre", installer);
    return found();
  }
};

TEST_F(MachineTest, RuntimeOfAnotherMachineIsFound) {
  const auto runtime = [](int machine, bool compressed) {
    return "#!/bin/sh\nexit 0\n" +
           tarBytes({{"jre/a", "x"}, {"jre/bin/java", elfBytes(machine)}}, compressed);
  };
  EXPECT_THAT(foundWith(runtime(EM_S390, false)), ElementsAre("setup.manifest:15 other-machine"));
  EXPECT_THAT(foundWith(runtime(EM_S390, true)), ElementsAre("setup.manifest:15 other-machine"));
  EXPECT_THAT(foundWith(elfBytes(EM_S390)), ElementsAre("setup.manifest:15 other-machine"));
#if defined(__x86_64__)
  EXPECT_THAT(foundWith(runtime(EM_X86_64, false)), IsEmpty());
  EXPECT_THAT(foundWith(runtime(EM_X86_64, true)), IsEmpty());
#endif
  EXPECT_THAT(foundWith("#!/bin/sh\nexit 0\n"), IsEmpty()) << "nothing can be told of it";
}

TEST_F(PackageMistakesTest, MessageFileNeedsNoOtherTags) {
  put(FileType::JvmFile, 30, "no-java.jvm", "DESC: none\nNO_JAVA: printf 'none' >&2; exit 3;\n");
  command("COMMAND: @NO_JAVA@ \"$JAVA_HOME\"/@JVM_EXE@ %CP%() app.Main");
  change("setup.instructions", "ILAUNCH 0 0", "ILAUNCH 30 0");
  EXPECT_THAT(found(), IsEmpty());
}

TEST_F(PackageMistakesTest, MessageFileThatNothingLaunchesIsAnIncompleteJvmFile) {
  put(FileType::JvmFile, 30, "no-java.jvm", "DESC: none\n");
  EXPECT_THAT(found(), ElementsAre("no-java.jvm:1 missing-tag", "no-java.jvm:1 missing-tag",
                                   "no-java.jvm:1 missing-tag", "no-java.jvm:1 missing-tag"));
}

TEST_F(PackageMistakesTest, StrictTellsOfPlantedClasses) {
  EXPECT_THAT(found(true), ElementsAre("setup.launch:3 planted-class"));
  drop("app.jar");
  put(FileType::ApplicationArchive, 4, "app.jar", jarBytes({{"app/Main.class", ""}}));
  command("COMMAND: exec '@JVM_HOME@/@JVM_EXE@' -cp '%APPLICATION_ARCHIVE%()' app.Main");
  EXPECT_THAT(found(true), IsEmpty());
}

}  // namespace
}  // namespace vessant::test
