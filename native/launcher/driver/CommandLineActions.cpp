#include "launcher/driver/CommandLineActions.h"

#include <fcntl.h>

#include "launcher/archive/NewFile.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/InputFile.h"

namespace vessant {
namespace {

constexpr const char* kExtractedInputFile = "input.tag";

/// Several JVM files are all used, but of the scripts the last of a kind stands.
void nameInInputFile(const FileIndexEntry& entry, TagFile& tags) {
  if (entry.type == FileType::JvmFile) {
    tags.addValue(inputkey::kJvm, entry.fileName);
  } else if (entry.type == FileType::LaunchScript) {
    tags.setValue(inputkey::kLaunchScript, entry.fileName);
  } else if (entry.type == FileType::Instructions) {
    tags.setValue(inputkey::kInstructions, entry.fileName);
  }
}

}  // namespace

void InputFileActions::loadInputFile(const SString& value, CommandLineParser::Outcome& outcome) {
  TagFile tags;
  readInputFile(value, tags);
  const InputFile input(tags);
  applySettings(input);
  objects_.loadLauncherFile();
  const Display display{.progress = input.flag(inputkey::kShowProgress),
                        .failure = input.flag(inputkey::kShowFailMessage)};
  showDisplay(display);
  performAction(input, display, outcome);
}

/// Kept: the run shows the text once more, alone, when the exception reaches it.
void InputFileActions::readInputFile(const SString& value, TagFile& tags) {
  try {
    openInputFile(value, tags);
    // Always: an input file without the key turns off a log that the command line named.
    services_.log.setLogFileName(InputFile(tags).text(inputkey::kLogFile));
  } catch (const LauncherException& error) {
    services_.console.showMessage(services_.messages.errorText(ErrorId::InputFileNotLoaded) +
                                  error.message());
    throw;
  }
}

void InputFileActions::openInputFile(const SString& value, TagFile& tags) {
  const SString path = withoutOuterQuotes(value);
  const StdFile file = path.isEmpty() ? nullptr : openFile(path, OpenMode::Read);
  if (file == nullptr) {
    throw LauncherException(services_.messages.errorText(ErrorId::InputFileNotOpened));
  }
  services_.run.log("Loading input file " + value);
  tags.load(file.get(), value, 0, TagFile::kToEndOfFile, services_.log);
}

void InputFileActions::applySettings(const InputFile& input) {
  try {
    objects_.applyInputSettings(input);
  } catch (const LauncherException& error) {  // shown twice, as above
    services_.console.showMessage(error.message());
    throw;
  }
}

/// The display is on for the sake of either, so that a stage in front of a message can be seen.
void InputFileActions::showDisplay(Display display) {
  if (display.progress || display.failure) {
    services_.console.enableProgress();
  } else {
    services_.console.disableProgress();
  }
  if (display.progress) services_.console.setProgress(0);
}

void InputFileActions::performAction(const InputFile& input, Display display,
                                     CommandLineParser::Outcome& outcome) {
  const InputAction action = input.action();
  if (action == InputAction::RunInstructions) {
    outcome = {};  // whatever stood in front of it on the command line
    return;
  }
  outcome.runDefaultFlow = false;
  if (action == InputAction::Search) {
    searchAction(display);
  } else if (action == InputAction::SearchAll) {
    searchAllAction(display);
  } else if (action == InputAction::VerifyJvm) {
    if (!verifyJvmAction(display, input)) {
      outcome.result = kRunFailed;
      return;
    }
  } else if (action == InputAction::InstallJvm) {
    installJvmAction(display, input);
  } else {
    rejectAction(input);
  }
  services_.console.finishProgress();
}

/// A search that failed has no result to print: its reader gets nothing at all.
void InputFileActions::searchAction(Display display) {
  try {
    finder_.findJvm(display);
    services_.run.throwIfCanceled();  // what was found by then is no result
    const std::int32_t found = state_.variables.getNumericVariable(1);
    services_.console.printResult(longToString(found));
    if (found == 0) return;
    const SString& jvmFile = state_.variables.getStringVariable(2);
    services_.console.printResult(state_.variables.getStringVariable(1));
    services_.console.printResult(jvmFile);
    services_.tempFiles.unregisterTempFile(jvmFile);  // its reader's from here on
  } catch (const LauncherException&) {
    if (services_.run.cancelFlag.isSet()) throw;  // the user's wish is no failure of the search
    services_.run.log("Unexpected failure in search.", LogLevel::Error);
  }
}

void InputFileActions::searchAllAction(Display display) {
  try {
    printAllMatches(display);
  } catch (const LauncherException& error) {
    if (services_.run.cancelFlag.isSet()) throw;
    const SString text = services_.messages.errorText(ErrorId::SearchAllFailed) + error.message();
    services_.run.log(text, LogLevel::Error);
    if (display.failure) services_.console.showMessage(text);
    services_.console.printResult("0");
  }
}

void InputFileActions::printAllMatches(Display display) {
  JVMMatchPtrDeque matches;
  finder_.findAllJvms(display, matches);
  services_.run.throwIfCanceled();
  services_.console.printResult(longToString(matches.count()));
  for (const JVMMatch& match : matches) {
    const SString jvmFile = finder_.writeJvmFile(match);
    services_.tempFiles.unregisterTempFile(jvmFile);  // its reader's from here on
    services_.console.printResult(match.home());
    services_.console.printResult(jvmFile);
  }
}

bool InputFileActions::verifyJvmAction(Display display, const InputFile& input) {
  const SString jvmFile = input.text(inputkey::kVerifyJvmFile);
  const SString javaHome = input.text(inputkey::kVerifyJvmHome);
  if (jvmFile.isEmpty() || javaHome.isEmpty()) {
    services_.run.log(
        "TO execute the VERIFY_JVM action, you must also provide values in the input file for "
        "VERIFY_JVM_FILE and VERIFY_JVM_HOME.",
        LogLevel::Error);
    return false;
  }
  TagFile tags(jvmFile, services_.log);
  JVMFile described(tags);
  finder_.verifyJvm(display, described, javaHome);
  services_.console.printResult(longToString(state_.variables.getNumericVariable(1)));
  return true;
}

/// Kept: without its keys it does nothing and says nothing, and the run is a success.
void InputFileActions::installJvmAction(Display display, const InputFile& input) {
  const SString installer = input.text(inputkey::kInstallJvmExe);
  const SString destination = input.text(inputkey::kInstallJvmDest);
  if (installer.isEmpty() || destination.isEmpty()) return;
  services_.console.printResult(installation_.installNamedJvm(display, installer, destination));
}

void InputFileActions::rejectAction(const InputFile& input) {
  const SString text =
      services_.messages.errorText(ErrorId::InvalidAction) + input.text(inputkey::kAction);
  services_.console.showMessage(text);
  throw LauncherException(text);
}

void PackageExtraction::extractFiles() {
  objects_.loadIndex();
  try {
    writeExtractedInputFile();
  } catch (const LauncherException& error) {
    const SString context = services_.messages.errorText(ErrorId::ExtractionFailed);
    if (error.message().view().starts_with(context)) throw;  // it says so already
    throw LauncherException(context + error.message());
  }
  services_.console.finishProgress();
}

void PackageExtraction::writeExtractedInputFile() {
  TagFile tags;
  tags.setValue(inputkey::kAction, kRunInstructionsAction);
  for (const FileIndexEntry& entry : state_.launcherFile.index()) {
    nameInInputFile(entry, tags);
    static_cast<void>(services_.extractor.extractFile(entry, "", PartialFile::Removed));
  }
  // As the files are: through no link and into no pipe.
  const UniqueFd launcher(::open(state_.originalLauncherFileName.cString(), O_RDONLY | O_CLOEXEC));
  const NewFile place("", kExtractedInputFile, launcher);
  tags.save(kExtractedInputFile);
}

}  // namespace vessant
