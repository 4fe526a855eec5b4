// The reading of an input file: its keys and its action.

#include <string>

#include "TagFileFixture.h"
#include "launcher/tagfile/InputFile.h"

namespace vessant::test {
namespace {

class InputFileReading : public TagFileFixture {
 protected:
  InputFile input{file};
};

TEST_F(InputFileReading, ReadsEveryKey) {
  const std::pair<const char*, const char*> keys[] = {
      {inputkey::kLogFile, "LOGFILE"},
      {inputkey::kShowProgress, "SHOW_PROGRESS"},
      {inputkey::kShowFailMessage, "SHOW_FAIL_MSG"},
      {inputkey::kAction, "ACTION"},
      {inputkey::kInstructions, "INSTRUCTIONS"},
      {inputkey::kLaunchScript, "LAUNCHSCRIPT"},
      {inputkey::kVerifyClassPath, "VERIFY_CLASSPATH"},
      {inputkey::kVerifyClassName, "VERIFY_CLASS_NAME"},
      {inputkey::kUiTitle, "UI_TITLE"},
      {inputkey::kJvm, "JVM"},
      {inputkey::kVerifyJvmFile, "VERIFY_JVM_FILE"},
      {inputkey::kVerifyJvmHome, "VERIFY_JVM_HOME"},
      {inputkey::kInstallJvmExe, "INSTALL_JVM_EXE"},
      {inputkey::kInstallJvmDest, "INSTALL_JVM_DEST"},
  };
  std::string text;
  for (const auto& [key, written] : keys)
    text += std::string(written) + ": value of " + written + "\n";
  read(text);
  for (const auto& [key, written] : keys) {
    EXPECT_EQ(str(input.text(key)), std::string("value of ") + written);
  }
}

TEST_F(InputFileReading, ReadsAMissingTextAsEmpty) {
  EXPECT_EQ(input.text(inputkey::kLogFile), "");
}

TEST_F(InputFileReading, ReadsTheFirstValueOfAText) {
  read("UI_TITLE:\nfirst\nsecond\n/:\n");
  EXPECT_EQ(input.text(inputkey::kUiTitle), "first");
}

TEST_F(InputFileReading, ReadsKeysInTheirCaseOnly) {
  read("action: SEARCH\n");
  EXPECT_EQ(input.text(inputkey::kAction), "");
}

TEST_F(InputFileReading, ReadsBooleansAsNumbers) {
  const std::pair<const char*, bool> texts[] = {
      {"1", true},     {"0", false},   {"-1", true}, {"2 x", true}, {"65536", false},
      {"true", false}, {"yes", false}, {"", false},  {"x1", false},
  };
  for (const auto& [text, expected] : texts) {
    SCOPED_TRACE(text);
    file.setValue("SHOW_PROGRESS", text);
    EXPECT_EQ(input.flag(inputkey::kShowProgress), expected);
    EXPECT_FALSE(input.flag(inputkey::kShowFailMessage)) << "it is absent";
  }
}

TEST_F(InputFileReading, KnowsItsActions) {
  const std::pair<const char*, InputAction> actions[] = {
      {"RUN_INSTRUCTIONS", InputAction::RunInstructions},
      {"SEARCH", InputAction::Search},
      {"SEARCH_ALL", InputAction::SearchAll},
      {"VERIFY_JVM", InputAction::VerifyJvm},
      {"INSTALL_JVM", InputAction::InstallJvm},
  };
  for (const auto& [written, action] : actions) {
    SCOPED_TRACE(written);
    file.setValue("ACTION", written);
    EXPECT_EQ(input.action(), action);
  }
}

TEST_F(InputFileReading, KnowsNoOtherAction) {
  EXPECT_EQ(input.action(), InputAction::Unknown) << "it is absent";
  for (const char* written : {"", "search", "SEARCH ", " SEARCH", "SEARCH_", "SEARC", "SEARCH_ALL2",
                              "Run_Instructions", "RUN", "INSTALL"}) {
    SCOPED_TRACE(written);
    file.setValue("ACTION", written);
    EXPECT_EQ(input.action(), InputAction::Unknown);
  }
}

TEST_F(InputFileReading, ListsJvmFilesInOrderEmptyOnesIncluded) {
  read("JVM:\none.jvm\n\"\"\ntwo.jvm\n/:\n");
  const StringDeque* files = input.jvmFiles();
  ASSERT_NE(files, nullptr);
  ASSERT_EQ(files->count(), 3);
  EXPECT_EQ(files->get(0), "one.jvm");
  EXPECT_EQ(files->get(1), "");
  EXPECT_EQ(files->get(2), "two.jvm");
}

TEST_F(InputFileReading, TellsAnEmptyJvmFileFromNone) {
  EXPECT_EQ(input.jvmFiles(), nullptr);
  read("JVM: \"\"\n");
  ASSERT_NE(input.jvmFiles(), nullptr);
  EXPECT_EQ(input.jvmFiles()->count(), 1);
}

TEST_F(InputFileReading, SeesLaterChangesOfItsTags) {
  file.setValue("ACTION", "SEARCH");
  EXPECT_EQ(input.action(), InputAction::Search);
  file.removeTag("ACTION");
  EXPECT_EQ(input.action(), InputAction::Unknown);
}

}  // namespace
}  // namespace vessant::test
