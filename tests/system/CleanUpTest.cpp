// What a run leaves behind on a machine where others may write, too: nothing of its own, and
// everything of theirs.

#include <fstream>

#include <sys/stat.h>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

struct CleanUp : SystemTest {
  CleanUp() {
    environment["PATH"] = "/usr/bin:/bin";
    tree.file("precious/file", "precious");
  }
  /// Packs a program that runs `command` in the directory of its archive.
  void addProgram(const std::string& command) {
    addScript({"ILAUNCH 3 0"});
    addLaunchScript("cd \"$(dirname %APPLICATION_ARCHIVE%())\" && " + command);
    addJvmFile("17");
    file.add(kApplicationArchive, 30, "app.zip", "archive");
  }
  void expectPreciousIsThere() { EXPECT_EQ(readFile(tree.path("precious/file")), "precious"); }
};

TEST_F(CleanUp, TakesLinksAndClosedDirectoriesAlong) {
  addProgram(
      "mkdir -p jre/lib/closed && touch jre/lib/closed/file && ln -s lib jre/link && "
      "ln -s missing jre/dangling && ln -s " +
      tree.path("precious") +
      " jre/away && mkfifo jre/pipe && chmod 500 jre/lib/closed && "
      "chmod 0 jre/lib");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n"));
  EXPECT_THAT(log(), ::testing::Not(HasSubstr("Could not delete")));
  expectPreciousIsThere();
}

// Each part is as deep as a path can tell; together they are not.
TEST_F(CleanUp, TakesATreeDeeperThanAnyPath) {
  addProgram(
      "c=$(printf d%099d/ $(seq 30)) && mkdir -p one/$c two/$c three/$c && mv one two/$c && "
      "mv two three/$c");
  EXPECT_THAT(run(), Ended(0, "Demo\n"));
}

TEST_F(CleanUp, LeavesWhatTookTheTemporaryDirectorysPlace) {
  addProgram("d=$(pwd) && mv \"$d\" " + tree.path("moved") + " && ln -s " + tree.path("precious") +
             " \"$d\"");
  EXPECT_THAT(runLogged(), Ended(0, "Demo\n"));
  expectPreciousIsThere();
  EXPECT_THAT(logLines(), Contains(::testing::AllOf(
                              ::testing::StartsWith("WARNING: Could not delete " + tempRoot),
                              ::testing::EndsWith(" :  something else has taken its place"))));
  for (const std::string& name : tree.list("temp")) std::filesystem::remove(tempRoot + "/" + name);
}

// The candidate removes the launcher file while it is verified.
TEST_F(CleanUp, TellsALauncherFileThatIsGoneBeforeItsArchiveIsUsed) {
  addInstaller("echo used %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "app.zip", "archive");
  const std::string java = tree.path("java17/bin/java");
  std::filesystem::rename(java, java + ".real");
  std::filesystem::rename(java + ".steps", java + ".real.steps");
  tree.program("java17/bin/java", "#!/bin/sh\nrm -f " + launcher + "\nexec \"$0.real\" \"$@\"\n");
  const ProcessResult result = runLogged();
  EXPECT_EQ(result.status, 255);
  EXPECT_THAT(result.out, HasSubstr("Unable to extract embedded files from the launcher."));
  EXPECT_THAT(result.out, ::testing::Not(HasSubstr("used")));
  EXPECT_THAT(logLines(), Contains("ERROR: The launcher file " + launcher +
                                   " has changed: wanted 7 bytes of app.zip, found 0"));
}

// The candidate puts another installer in its place, as an update that comes at the wrong time
// does.
TEST_F(CleanUp, TellsALauncherFileThatWasReplacedBeforeItsArchiveIsUsed) {
  addInstaller("echo used %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 30, "app.zip", "archive");
  const std::string java = tree.path("java17/bin/java");
  std::filesystem::rename(java, java + ".real");
  std::filesystem::rename(java + ".steps", java + ".real.steps");
  tree.program("java17/bin/java", "#!/bin/sh\ntr a b <" + launcher + " >" + launcher + ".new\nmv " +
                                      launcher + ".new " + launcher +
                                      "\nexec \"$0.real\" \"$@\"\n");
  const ProcessResult result = runLogged();
  EXPECT_EQ(result.status, 255);
  EXPECT_THAT(result.out, HasSubstr("Unable to extract embedded files from the launcher."));
  EXPECT_THAT(result.out, ::testing::Not(HasSubstr("used")));
  EXPECT_THAT(logLines(), Contains("ERROR: The launcher file " + launcher +
                                   " has changed: wanted 7 bytes of app.zip, found 0"));
}

// Files that "-vs:extract" writes into the user's directory.

TEST_F(CleanUp, AnEntryIsExtractedInPlaceOfALinkOrAPipe) {
  std::filesystem::create_symlink(tree.path("precious/file"), startDirectory + "/one");
  ASSERT_EQ(::mkfifo((startDirectory + "/two").c_str(), 0600), 0);
  writeFile(startDirectory + "/three", "an old file, longer than the new one");
  for (const char* name : {"one", "two", "three"}) file.add(kApplicationArchive, 1, name, "new");
  EXPECT_THAT(runBare({"-vs:extract"}), Ended(0, "...\n"));
  for (const char* name : {"one", "two", "three"}) {
    EXPECT_EQ(readFile(startDirectory + "/" + name), "new") << name;
  }
  expectPreciousIsThere();
}

TEST_F(CleanUp, TheInputFileIsWrittenInPlaceOfALinkOrAPipe) {
  file.add(kApplicationArchive, 1, "one", "new");
  std::filesystem::create_symlink(tree.path("precious/file"), startDirectory + "/input.tag");
  EXPECT_THAT(runBare({"-vs:extract"}), Ended(0, ".\n"));
  expectPreciousIsThere();
  std::filesystem::remove(startDirectory + "/input.tag");
  ASSERT_EQ(::mkfifo((startDirectory + "/input.tag").c_str(), 0600), 0);
  EXPECT_THAT(runBare({"-vs:extract"}), Ended(0, ".\n"));
  EXPECT_THAT(readFile(startDirectory + "/input.tag"), HasSubstr("ACTION:"));
}

struct HostileEntry : CleanUp, ::testing::WithParamInterface<const char*> {};

TEST_P(HostileEntry, IsRefusedAndNamedInTheLog) {
  file.add(kApplicationArchive, 1, GetParam(), "evil");
  const ProcessResult result = runLogged({"-vs:extract"});
  EXPECT_EQ(result.status, 255);
  EXPECT_THAT(result.out, HasSubstr("Error writing file = "));
  EXPECT_THAT(logLines(), Contains("ERROR: Could not write \"" + std::string(GetParam()) +
                                   "\" :  not the name of a file"));
  EXPECT_FALSE(std::filesystem::exists(tree.path("evil")));
  EXPECT_THAT(tree.list("elsewhere"), ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Names, HostileEntry,
                         ::testing::Values("../evil", "/tmp/vessant-evil", "..", ".", "",
                                           "sub/evil", "evil/"));

TEST_F(CleanUp, NoPartOfAnExtractedFileStaysWhenTheLauncherWasCut) {
  file.add(kApplicationArchive, 1, "app.zip", "nine byte");
  pack();
  // An entry that ends behind the end of the file.
  std::string bytes = readFile(launcher);
  const std::size_t length = bytes.rfind(bigEndian32(9));
  ASSERT_NE(length, std::string::npos);
  bytes.replace(length, 4, bigEndian32(70'000'000));
  std::ofstream(launcher, std::ios::binary | std::ios::trunc) << bytes;
  EXPECT_EQ(runLogged({"-vs:extract"}).status, 255);
  EXPECT_THAT(tree.list("elsewhere"), ::testing::IsEmpty());
}

}  // namespace
}  // namespace vessant::test
