#include "launcher/driver/LauncherMain.h"

#include "launcher/archive/TempFiles.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"
#include "launcher/driver/CommandLineParser.h"

namespace vessant {
namespace {

constexpr std::int32_t kProgressDone = 100;

void checkNumber(std::int32_t number, std::int32_t most, const char* message) {
  if (number < 1 || number > most) throw LauncherException(message + longToString(number));
}

std::size_t stringIndex(std::int32_t number) {
  checkNumber(number, InstructionActions::kStringVariables, "Invalid string variable number: ");
  return static_cast<std::size_t>(number - 1);
}

std::size_t numericIndex(std::int32_t number) {
  checkNumber(number, InstructionActions::kNumericVariables, "Invalid numeric variable number: ");
  return static_cast<std::size_t>(number - 1);
}

}  // namespace

LauncherMain::LauncherMain(LauncherState& state)
    : state_(state), services_(state), objects_(services_) {}

LauncherMain::~LauncherMain() {
  const bool handledAll = services_.tempFiles.cleanupTempFiles();
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
    logError(error.message());
    return kRunFailed;
  }
}

std::int32_t LauncherMain::runDriver(const StringDeque& arguments) {
  DriverOutcome outcome =
      CommandLineParser(state_, *this, services_.console, services_.messages).parse(arguments);
  if (!outcome.runDefaultFlow) return outcome.result;
  if (!state_.launcherFile.isLoaded()) loadLauncherFile(&objects_);
  outcome.result = runInstructions();
  services_.console.setProgress(kProgressDone);
  return outcome.result;
}

void LauncherMain::loadLauncherFile(EmbeddedObjectBuilder* builder) {
  try {
    state_.launcherFile.loadFileIndex(state_.originalLauncherFileName, builder, services_.log,
                                      services_.messages);
  } catch (const LauncherException& error) {
    throw LauncherException(errorText(ErrorId::IndexNotLoaded) + error.message());
  }
}

std::int32_t LauncherMain::runInstructions() {
  const InstructionScript* script = objects_.instructions();
  if (script == nullptr) return kRunFailed;
  try {
    return vessant::runInstructions(*script, *this);
  } catch (const InstructionsException& error) {
    throw LauncherException("Error in instructions. " + error.message() + " Line number (" +
                            longToString(error.lineNumber()) + ")");
  }
}

SString LauncherMain::getStringVariable(std::int32_t number) const {
  return state_.stringVariables[stringIndex(number)];
}

void LauncherMain::setStringVariable(std::int32_t number, const SString& value) {
  state_.stringVariables[stringIndex(number)] = value;
}

std::int32_t LauncherMain::getNumericVariable(std::int32_t number) const {
  return state_.numericVariables[numericIndex(number)];
}

void LauncherMain::setNumericVariable(std::int32_t number, std::int32_t value) {
  state_.numericVariables[numericIndex(number)] = value;
}

SString LauncherMain::errorText(ErrorId error) const {
  return services_.messages.errorText(error);
}

}  // namespace vessant
