// The launcher's own options, the errors of their use, and the log.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kMissingLogName =
    "A log file name must be specified after the -log option on the command line.\n";
constexpr const char* kMissingInputName =
    "An input file name must follow the '-in' command line option.\n";

struct Options : SystemTest {
  /// The script prints what reaches the program and ends with a status of its own.
  void addPrinter() { addInstaller("printf '<%s>\\n' program"); }
};

TEST_F(Options, VersionIsPrintedAndNothingElseIsDone) {
  addPrinter();
  EXPECT_THAT(runBare({"-vs:version"}), Ended(0, "2.52\n"));
}

TEST_F(Options, VersionReadsNoFileIndex) {
  writeFile(tree.path("app/setup.bin"),
            file.bytes() + bigEndian32(0xFFFFFFFFU) + "\xCA\x82\xCA\x82");
  std::filesystem::permissions(launcher, std::filesystem::perms(0755));
  EXPECT_THAT(runBare({"-vs:version"}), Ended(0, "2.52\n"));
}

TEST_F(Options, VersionIsPrintedOnceForEachTimeItIsAskedFor) {
  EXPECT_THAT(runBare({"-vs:version", "-foo", "-vs:version"}), Ended(0, "2.52\n2.52\n"));
}

TEST_F(Options, VersionIsNotPrintedInSilenceAskedForBeforeOrAfterIt) {
  EXPECT_THAT(runBare({"-vs:silent", "-vs:version"}), Ended(0, ""));
  EXPECT_THAT(runBare({"-vs:version", "-vs:silent"}), Ended(0, ""));
  EXPECT_THAT(runBare({"-silent", "-vs:version"}), Ended(0, ""));
  EXPECT_THAT(runBare({"-vs:version", "-silent"}), Ended(0, ""));
}

TEST_F(Options, ASilentOptionThatIsAnotherOptionsValueAsksForNothing) {
  EXPECT_THAT(runBare({"-vs:version", "-vs:javahome", "-vs:silent"}), Ended(0, "2.52\n"));
  EXPECT_THAT(runBare({"-vs:version", "-cp:a", "-silent"}), Ended(0, "2.52\n"));
}

TEST_F(Options, ParsingGoesOnBehindTheVersion) {
  EXPECT_THAT(runBare({"-vs:version", "-vs:in"}),
              Ended(255, "2.52\n" + std::string(kMissingInputName)));
}

TEST_F(Options, AreTakenCaseSensitivelyAndWhole) {
  addInstaller(kPrintArguments);
  EXPECT_THAT(run({"-vs:VERSION", "-vs:version ", "vs:version", "-vs:"}),
              Ended(0, "Demo\n<-vs:VERSION>\n<-vs:version >\n<vs:version>\n<-vs:>\n"));
}

TEST_F(Options, AMissingLogNameIsToldAndTheScriptRuns) {
  addInstaller("exit 7 #");
  EXPECT_THAT(run({"-vs:log"}), Ended(7, std::string(kMissingLogName) + "Demo\n"));
}

TEST_F(Options, AMissingOriginalNameIsToldAndTheScriptRuns) {
  addPrinter();
  EXPECT_THAT(run({"-vs:orig"}),
              Ended(0, "Missing original launcher file name.\nDemo\n<program>\n"));
  EXPECT_TRUE(std::filesystem::exists(launcher));
}

TEST_F(Options, AMissingInputNameEndsTheRun) {
  addPrinter();
  EXPECT_THAT(run({"-vs:in"}), Ended(255, kMissingInputName));
}

TEST_F(Options, AFailedOptionWithoutADefaultFlowKeepsItsStatus) {
  EXPECT_THAT(run({"-vs:version", "-vs:log"}), Ended(255, "2.52\n" + std::string(kMissingLogName)));
}

TEST_F(Options, ErrorsAreNotShownInSilence) {
  addPrinter();
  EXPECT_THAT(run({"-vs:silent", "-vs:log"}), Ended(0, "<program>\n"));
  EXPECT_THAT(run({"-vs:silent", "-vs:orig"}), Ended(0, "<program>\n"));
  EXPECT_THAT(run({"-vs:silent", "-vs:in"}), Ended(255, ""));
}

struct IgnoredOption : Options, ::testing::WithParamInterface<const char*> {};

TEST_P(IgnoredOption, WithoutItsValueIsPassedOver) {
  addInstaller(kPrintArguments);
  EXPECT_THAT(run({"one", GetParam()}), Ended(0, "Demo\n<one>\n"));
}

INSTANTIATE_TEST_SUITE_P(Options, IgnoredOption,
                         ::testing::Values("-vs:tempdir", "-vs:javahome", "-cp:p", "-cp:a"));

TEST_F(Options, AMissingTempDirectoryIsToldWithTheWayOut) {
  addPrinter();
  pack();
  const std::string missing = tree.path("missing");
  EXPECT_THAT(runBare({"-vs:tempdir", missing, "-vs:log", logName()}),
              Ended(255, "Demo\nCannot use " + missing +
                             " as the temp directory because it does not exist. Please run the "
                             "program again using the option -vs:tempdir <temp dir> to specify a "
                             "different directory to use.\n"));
  EXPECT_THAT(log(), HasSubstr("ERROR: Cannot use " + missing + " as the temp directory"));
}

TEST_F(Options, AFileIsNoTempDirectory) {
  addPrinter();
  EXPECT_THAT(runBare({"-vs:tempdir", tree.file("file")}).out,
              HasSubstr("Cannot use " + tree.path("file") + " as the temp directory"));
}

TEST_F(Options, ARelativeTempDirectoryCountsFromWhereTheLauncherIsStarted) {
  addInstaller("cat %APPLICATION_ARCHIVE%(); echo; echo %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 9, "app.zip", "content");
  environment["PATH"] = "/usr/bin:/bin";
  EXPECT_THAT(maskTempNames(runBare({"-vs:tempdir", "../temp"}).out),
              "Demo\ncontent\n" + startDirectory + "/../temp/vsj/app.zip\n");
}

TEST_F(Options, TheSystemsTempDirectorySettingWinsAndIsLeftEmptyToo) {
  addInstaller("echo %APPLICATION_ARCHIVE%()");
  file.add(kApplicationArchive, 9, "app.zip", "content");
  environment["TMPDIR"] = tree.dir("system-temp");
  EXPECT_EQ(maskTempNames(run().out), "Demo\n" + tree.path("system-temp") + "/vsj/app.zip\n");
  EXPECT_THAT(tree.list("system-temp"), IsEmpty());
}

struct LogFile : Options {};

TEST_F(LogFile, IsTheLastOneNamed) {
  addPrinter();
  EXPECT_THAT(runLogged({"-vs:log", tree.path("second.log")}), Ended(0, "Demo\n<program>\n"));
  EXPECT_FALSE(std::filesystem::exists(logName()));
  EXPECT_THAT(readFile(tree.path("second.log")), HasSubstr("Finding a JVM\n"));
}

TEST_F(LogFile, MayHaveTheNameOfAnOption) {
  addPrinter();
  EXPECT_THAT(run({"-vs:log", "-silent"}), Ended(0, "Demo\n<program>\n"));
  EXPECT_THAT(readFile(startDirectory + "/-silent"), HasSubstr("Finding a JVM\n"));
}

TEST_F(LogFile, IsAppendedToWithASeparatorForEachRun) {
  addScript({"ILAUNCH 99 0"});
  EXPECT_EQ(runLogged().status, 255);
  const std::string once = log();
  EXPECT_THAT(once, ::testing::StartsWith("------------------\nfile type: 0\n"));
  EXPECT_EQ(once.find("------------------", 1), std::string::npos);
  EXPECT_EQ(runLogged().status, 255);
  EXPECT_EQ(log(), once + once);
}

TEST_F(LogFile, ThatCannotBeWrittenIsPassedOver) {
  addPrinter();
  EXPECT_THAT(run({"-vs:log", tree.path("missing/setup.log")}), Ended(0, "Demo\n<program>\n"));
  EXPECT_THAT(run({"-vs:log", tree.dir("directory")}), Ended(0, "Demo\n<program>\n"));
  EXPECT_THAT(run({"-vs:log", ""}), Ended(0, "Demo\n<program>\n"));
}

TEST_F(LogFile, IsNotWrittenBeforeThereIsSomethingToTell) {
  EXPECT_THAT(runLogged({"-vs:version"}), Ended(0, "2.52\n"));
  EXPECT_FALSE(std::filesystem::exists(logName()));
}

TEST_F(LogFile, IsWrittenInSilenceToo) {
  addPrinter();
  EXPECT_THAT(runLogged({"-vs:silent"}), Ended(0, "<program>\n"));
  EXPECT_THAT(logLines(), Contains("Finding a JVM"));
}

TEST_F(LogFile, MarksWarningsAndErrors) {
  addScript({"FIND_JVM 0 0", "ILAUNCH 99 0"});
  file.add(kJvmFile, kJvmFileId, "empty.jvm", "DESC: any\nJVM_EXE: bin/java\n");
  EXPECT_EQ(runLogged().status, 255);
  EXPECT_THAT(logLines(), Contains("WARNING: Unable to verify empty.jvm because the JVM_PROPERTIES "
                                   "tag was not specified."));
  EXPECT_THAT(logLines(),
              Contains(HasSubstr("ERROR: Unable to launch the internal launch script")));
}

TEST_F(LogFile, WarnsAtEachSearchStepOfAJvmFileThatMatchesNothing) {
  addScript({"FIND_JVM 0 0"});
  file.add(kJvmFile, kJvmFileId, "empty.jvm", "JVM_EXE: bin/java\n");
  EXPECT_THAT(runLogged(), Ended(0, ""));
  const std::string warning =
      "WARNING: Unable to verify empty.jvm because the JVM_PROPERTIES tag was not specified.\n";
  EXPECT_THAT(log(),
              HasSubstr("Initiating JVM search based on hints...\n" + warning + warning + warning +
                        "JVM search: 0 candidates, 0 existed, 0 ran, 0 differed\n"
                        "A suitable JVM"));
}

}  // namespace
}  // namespace vessant::test
