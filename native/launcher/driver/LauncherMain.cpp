#include "launcher/driver/LauncherMain.h"

#include <unistd.h>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/driver/CommandLineActions.h"
#include "launcher/driver/output/StandardStreams.h"
#include "launcher/instructions/Interpreter.h"

namespace vessant {
namespace {

/// For a user whose download broke off, or went through something that changed it.
constexpr const char* kNoInstaller =
    ": This file carries no installer. It is incomplete or was changed. Please download or copy it "
    "again.";

/// The exit status by which a wizard says that its user left it.
constexpr std::int32_t kWizardLeft = 232;

/// The mode byte stands in the launcher's own file, which is not read for any other status.
bool isFailure(std::int32_t result, LauncherMain& launcher) {
  if (result == kWizardLeft && isWizardMode(launcher.modeByte())) return false;
  return result != 0;
}

}  // namespace

LauncherMain::LauncherMain(LauncherState& state)
    : state_(state),
      services_(state),
      objects_(state, services_),
      finder_(state, services_, objects_),
      installation_(state, services_),
      program_(state, services_, objects_) {}

LauncherMain::~LauncherMain() {
  const bool handledAll = services_.tempFiles.cleanupTempFiles();
  // Only behind a whole clean-up: what is left behind is then left together.
  if (handledAll && state_.originalLauncherCleanup) deleteOwnExecutable(state_.launcherFileName);
}

std::int32_t LauncherMain::run(const StringDeque& arguments, const SString& launcherFileName) {
  state_.launcherFileName = launcherFileName;
  state_.originalLauncherFileName = launcherFileName;
  for (const SString& argument : arguments) state_.commandLineArguments.add(argument);
  try {
    return runDriver(arguments);
  } catch (const LauncherException& error) {
    services_.console.showMessage(error.message());
    services_.run.log(error.message(), LogLevel::Error);
    return kRunFailed;
  }
}

std::int32_t LauncherMain::runDriver(const StringDeque& arguments) {
  CommandLineParser::Outcome outcome = CommandLineParser(state_, services_, *this).parse(arguments);
  if (outcome.runDefaultFlow) {
    objects_.loadLauncherFile();
    outcome.result = runInstructions();
    services_.console.finishProgress();
  }
  throwIfCanceled();  // whoever cancelled the run is not told of a success
  return outcome.result;
}

std::int32_t LauncherMain::runInstructions() {
  const TagFile* script = objects_.instructions();
  if (script == nullptr) {
    services_.console.showAdvice(state_.originalLauncherFileName + kNoInstaller);
    return kRunFailed;
  }
  try {
    return vessant::runInstructions(*script, *this);
  } catch (const InstructionsException& error) {
    throw LauncherException("Error in instructions. " + error.message() + " Line number (" +
                            longToString(error.lineNumber()) + ")");
  }
}

void LauncherMain::extractFiles() {
  PackageExtraction(state_, services_, objects_).extractFiles();
}

void LauncherMain::loadInputFile(const SString& value, CommandLineParser::Outcome& outcome) {
  InputFileActions(state_, services_, objects_).loadInputFile(value, outcome);
}

void LauncherMain::beginProgress() {
  // The stage comes first: it is only shown while the display is still on from before.
  services_.console.showStage(Stage::Initializing);
  services_.console.resetSearchPhase();
  services_.console.enableProgress();
}

int runLauncher(int argumentCount, const char* const* arguments, LauncherState& state) {
  StringDeque list;
  for (int i = 1; i < argumentCount; ++i) list.add(arguments[i]);
  const SString launcherFileName = absolutePath(argumentCount > 0 ? arguments[0] : "");
  LauncherMain launcher(state);
  const std::int32_t result = launcher.run(list, launcherFileName);
  // A cancelled run has been told of; what the program said of its end would look like its reason.
  const bool isToldOf = state.cancelFlag.isSet();
  if (isFailure(result, launcher) && !isToldOf && !state.launchFailureMessage.isEmpty()) {
    launcher.console().showMessage(state.launchFailureMessage);
  }
  return result;
}

int reportUnexpectedFailure(const LauncherState& state) {
  if (!state.console.silent) {
    OutputStream(STDOUT_FILENO, state.cancelFlag)
        .write("The launcher ended because of an unexpected internal failure.\n");
  }
  return kRunFailed;
}

}  // namespace vessant
