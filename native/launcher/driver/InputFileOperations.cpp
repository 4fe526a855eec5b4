// LauncherMain: the input file and its actions, and the extraction that writes one.

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/TextUtil.h"
#include "launcher/driver/LauncherMain.h"

namespace vessant {
namespace {

constexpr const char* kExtractedInputFile = "input.tag";
constexpr std::int32_t kProgressDone = 100;

}  // namespace

void LauncherMain::extractFiles() {
  loadLauncherFile(nullptr);
  try {
    writeExtractedInputFile();
  } catch (const LauncherException& error) {
    throw LauncherException(errorText(ErrorId::ExtractionFailed) + error.message());
  }
  services_.console.setProgress(kProgressDone);
}

void LauncherMain::writeExtractedInputFile() {
  TagFile tags;
  tags.setValue(inputkey::kAction, kRunInstructionsAction);
  for (const FileIndexEntry& entry : state_.launcherFile.index()) {
    if (entry.type == FileType::JvmFile) {
      tags.addValue(inputkey::kJvm, entry.fileName);
    } else if (entry.type == FileType::LaunchScript) {
      tags.setValue(inputkey::kLaunchScript, entry.fileName);
    } else if (entry.type == FileType::Instructions) {
      tags.setValue(inputkey::kInstructions, entry.fileName);
    }
    static_cast<void>(services_.extractor.extractFile(entry, "", PartialFile::Removed));
  }
  tags.save(kExtractedInputFile);
}

void LauncherMain::loadInputFile(const SString& value, DriverOutcome& outcome) {
  TagFile tags;
  readInputFile(value, tags);
  const InputFile input(tags);
  applyInputFile(input);
  loadLauncherFile(&objects_);
  const bool showProgress = input.flag(inputkey::kShowProgress);
  if (showProgress || input.flag(inputkey::kShowFailMessage)) {
    services_.console.enableProgress();
  } else {
    services_.console.disableProgress();
  }
  if (showProgress) services_.console.setProgress(0);
  performAction(input, outcome);
}

void LauncherMain::readInputFile(const SString& value, TagFile& tags) {
  try {
    openInputFile(value, tags);
    services_.log.setLogFileName(InputFile(tags).text(inputkey::kLogFile));
  } catch (const LauncherException& error) {
    services_.console.showMessage(errorText(ErrorId::InputFileNotLoaded) + error.message());
    throw;
  }
}

void LauncherMain::openInputFile(const SString& value, TagFile& tags) {
  const SString path = withoutOuterQuotes(value);
  const StdFile file = path.isEmpty() ? nullptr : openFile(path, OpenMode::Read);
  if (file == nullptr) throw LauncherException(errorText(ErrorId::InputFileNotOpened));
  services_.run.log("Loading input file " + value);
  tags.load(file.get(), value, 0, TagFile::kToEndOfFile, services_.log);
}

void LauncherMain::applyInputFile(const InputFile& input) {
  try {
    objects_.applyInputSettings(input);
  } catch (const LauncherException& error) {
    services_.console.showMessage(error.message());
    throw;
  }
}

void LauncherMain::performAction(const InputFile& input, DriverOutcome& outcome) {
  const bool showProgress = input.flag(inputkey::kShowProgress);
  const bool showFailure = input.flag(inputkey::kShowFailMessage);
  const InputAction action = input.action();
  if (action == InputAction::RunInstructions) return;
  outcome.runDefaultFlow = false;
  if (action == InputAction::Search) {
    searchAction(showProgress, showFailure);
  } else if (action == InputAction::SearchAll) {
    searchAllAction(showProgress, showFailure);
  } else if (action == InputAction::VerifyJvm) {
    return verifyNamedJvm(input, outcome);
  } else if (action == InputAction::InstallJvm) {
    installNamedJvm(input);
  } else {
    rejectAction(input);
  }
  services_.console.setProgress(kProgressDone);
}

void LauncherMain::verifyNamedJvm(const InputFile& input, DriverOutcome& outcome) {
  const SString jvmFile = input.text(inputkey::kVerifyJvmFile);
  const SString javaHome = input.text(inputkey::kVerifyJvmHome);
  if (jvmFile.isEmpty() || javaHome.isEmpty()) {
    logError(
        "TO execute the VERIFY_JVM action, you must also provide values in the input file for "
        "VERIFY_JVM_FILE and VERIFY_JVM_HOME.");
    outcome.result = kRunFailed;
    return;
  }
  verifyJvmAction(input.flag(inputkey::kShowProgress), input.flag(inputkey::kShowFailMessage),
                  jvmFile, javaHome);
  services_.console.setProgress(kProgressDone);
}

void LauncherMain::installNamedJvm(const InputFile& input) {
  const SString installer = input.text(inputkey::kInstallJvmExe);
  const SString destination = input.text(inputkey::kInstallJvmDest);
  if (installer.isEmpty() || destination.isEmpty()) return;
  installJvmAction(input.flag(inputkey::kShowProgress), installer, destination);
}

void LauncherMain::rejectAction(const InputFile& input) {
  const SString text = errorText(ErrorId::InvalidAction) + input.text(inputkey::kAction);
  services_.console.showMessage(text);
  throw LauncherException(text);
}

}  // namespace vessant
