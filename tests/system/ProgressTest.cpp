// The progress display, to the byte: stages, search phases, dots and the breaks between them.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

const std::string kSearching = "\nSearching for Java(tm) Virtual Machine...\n";
const std::string kSearchingHints = "\nSearching for Java 17.0.1\n";
const std::string kVerifying = "\nVerifying Java 17.0.1\n";
const std::string kExtractedVerifier = ".";
const std::string kRanVerifier = ".......";  // one for its output, six for the run
const std::string kMissingJava = "..";

struct Progress : SystemTest {
  void addJava(const std::string& version = "17.0.1") {
    addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java", version)));
  }
};

TEST_F(Progress, ShowsAWholeRun) {
  addScript({"INITIALIZE_UI", "FIND_JVM 1 1", "LAUNCH \"@S2@\" 3"});
  addLaunchScript("echo program");
  addJava();
  EXPECT_THAT(run(), Ended(0, "Demo\n\nInitializing Demo...\n" + kSearching + kExtractedVerifier +
                                  kSearchingHints + kVerifying + kRanVerifier +
                                  "\nRunning Demo...\nprogram\n"));
}

TEST_F(Progress, ShowsNothingInSilence) {
  addScript({"INITIALIZE_UI", "FIND_JVM 1 1", "VERIFY 1 1 3", "LAUNCH \"@S2@\" 3"});
  addLaunchScript("echo program");
  addJava();
  EXPECT_THAT(run({"-vs:silent"}), Ended(0, "program\n"));
}

TEST_F(Progress, BreaksTheLineAfterAllActions) {
  addScript({"FIND_JVM 1 0"});
  addLaunchScript("echo program");
  addJava();
  EXPECT_THAT(run(), Ended(0, "Demo\n" + kSearching + kExtractedVerifier + kSearchingHints +
                                  kVerifying + kRanVerifier + "\n"));
}

TEST_F(Progress, BreaksTheLineOfDotsAtEverySeventyUnits) {
  addScript({"FIND_JVM 1 1"});
  addLaunchScript("echo program");
  constexpr int kHints = 39;
  std::vector<std::string> hints;
  std::string expected = "Demo\n" + kSearching + kExtractedVerifier + kSearchingHints;
  // The verifier counts 2 and each home 4: 70 is reached by the 17th, 140 by the 35th.
  for (int i = 1; i <= kHints + 1; ++i) {
    hints.push_back(tree.path("missing"));
    expected += kVerifying + kMissingJava + (i == 17 || i == 35 ? "\n" : "");
  }
  hints.pop_back();  // the last home is the one of PATH
  addJvmFile("17.0.1", tagBlock("PATH_HINT", hints));
  EXPECT_THAT(run(), Ended(0, expected + std::string(kNoJvmFound)));
}

TEST_F(Progress, ShowsAVerificationThatFails) {
  addScript({"FIND_JVM 1 0", "VERIFY 1 1 3"});
  addLaunchScript("echo program");
  addJava("17.0.2");
  // The verification tries the home that the search tried last, and names its JVM file once more.
  EXPECT_THAT(run(),
              Ended(0, "Demo\n" + kSearching + kExtractedVerifier + kSearchingHints + kVerifying +
                           kRanVerifier + kVerifying + kMissingJava + kSearching + kVerifying +
                           kVerifying + kRanVerifier + "The JVM is not valid.\n\n"));
}

TEST_F(Progress, GoesOnBehindASearchWithoutIt) {
  // The stage comes before the display is turned on again, so it is not seen.
  addScript({"FIND_JVM 0 1", "FIND_JVM 1 1"});
  addLaunchScript("echo program");
  addJvmFile("17.0.1");
  EXPECT_THAT(run(), Ended(0, "Demo\n" + std::string(kNoJvmFound) + kSearchingHints + kVerifying +
                                  kMissingJava + std::string(kNoJvmFound) + "\n"));
}

TEST_F(Progress, IsOffAfterALaunch) {
  addScript({"ILAUNCH 3 0", "INITIALIZE_UI", "ILAUNCH 3 1", "INITIALIZE_UI"});
  addLaunchScript("echo program");
  addJava();
  // INITIALIZE_UI, too, shows its stage before it turns the display on.
  EXPECT_THAT(run(), Ended(0, "Demo\nprogram\n\nRunning Demo...\nprogram\n\n"));
}

TEST_F(Progress, ShowsTheStageOfALaunchOnlyWithSeconds) {
  addScript({"ILAUNCH 3 -1", "INITIALIZE_UI", "ILAUNCH 3 0", "INITIALIZE_UI", "ILAUNCH 3 32767"});
  addLaunchScript("echo program");
  addJava();
  EXPECT_THAT(run(), Ended(0, "Demo\nprogram\nprogram\n\nRunning Demo...\nprogram\n"));
}

TEST_F(Progress, ShowsADotForEachChunkOfAnExtractedInstaller) {
  addScript({"INSTALL_JVM 1"});
  file.add(kJvmInstaller, 9, "installer",
           "#!/bin/sh\necho one chunk\nexit\n" + std::string(150000, 'x'));
  EXPECT_THAT(run(), Ended(0, "\nPreparing Java(tm) Virtual Machine...\n....\n"));
}

TEST_F(Progress, ShowsNoInstallationInModeZero) {
  addScript({"INSTALL_JVM 0"});
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\necho one chunk\n");
  EXPECT_THAT(run(), Ended(0, ""));
}

TEST_F(Progress, AsksForADestination) {
  addScript({"INSTALL_JVM 2"});
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\n");
  EXPECT_THAT(run(), Ended(0,
                           "\nPreparing Java(tm) Virtual Machine...\n"
                           "Supply the destination directory for the Java Virtual Machine:\n\n"));
}

struct Title : SystemTest {
  void addTitle(const std::string& title) {
    addScript({"INITIALIZE_UI"});
    file.add(kLaunchScript, kLaunchScriptId, "launch.script", tag("DESC", title));
  }
};

TEST_F(Title, MayBeEmpty) {
  addTitle("");
  EXPECT_THAT(run(), Ended(0, "\n\nInitializing ...\n\n"));
}

TEST_F(Title, HasItsEscapesDecoded) {
  addTitle("\\u0041\\U0042 C:\\users \\u004");
  const std::string title = "AB C:\\users \\u004";
  EXPECT_THAT(run(), Ended(0, title + "\n\nInitializing " + title + "...\n\n"));
}

TEST_F(Title, IsConvertedForTheLocale) {
  addTitle("Caf\\u00e9");
  environment["LC_ALL"] = "C.UTF-8";
  EXPECT_THAT(run(), Ended(0, "Caf\xC3\xA9\n\nInitializing Caf\xC3\xA9...\n\n"));
}

TEST_F(Title, HasAQuestionMarkForWhatTheLocaleCannotShow) {
  addTitle("Caf\\u00e9 \\u4f60!");
  EXPECT_THAT(run(), Ended(0, "Caf? ?!\n\nInitializing Caf? ?!...\n\n"));
}

TEST_F(Title, IsNoFormat) {
  addTitle("100%s %d %n");
  EXPECT_THAT(run(), Ended(0, "100%s %d %n\n\nInitializing 100%s %d %n...\n\n"));
}

TEST_F(Title, IsCutWithItsMessageAfter1023Bytes) {
  const std::string title(2000, 'x');
  addTitle(title);
  const std::string message = ("Initializing " + title).substr(0, 1023);
  EXPECT_THAT(run(), Ended(0, title + "\n\n" + message + "\n\n"));
}

TEST_F(Title, IsTheOneOfTheFirstLaunchScript) {
  addTitle("First");
  file.add(kLaunchScript, 20, "second.script", tag("DESC", "Second"));
  EXPECT_THAT(run(), Ended(0, "First\n\nInitializing First...\n\n"));
}

}  // namespace
}  // namespace vessant::test
