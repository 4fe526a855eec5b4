#include "launcher/driver/LauncherState.h"

#include <cstddef>

#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

/// Scripts check their numbers before; these texts are for the operations' own callers.
std::size_t indexOf(std::int32_t number, std::int32_t most, const char* message) {
  if (number < 1 || number > most) throw LauncherException(message + longToString(number));
  return static_cast<std::size_t>(number - 1);
}

std::size_t stringIndex(std::int32_t number) {
  return indexOf(number, InstructionActions::kStringVariables, "Invalid string variable number: ");
}

std::size_t numericIndex(std::int32_t number) {
  return indexOf(number, InstructionActions::kNumericVariables,
                 "Invalid numeric variable number: ");
}

}  // namespace

const SString& ResultVariables::getStringVariable(std::int32_t number) const {
  return strings_[stringIndex(number)];
}

void ResultVariables::setStringVariable(std::int32_t number, const SString& value) {
  strings_[stringIndex(number)] = value;
}

std::int32_t ResultVariables::getNumericVariable(std::int32_t number) const {
  return numbers_[numericIndex(number)];
}

void ResultVariables::setNumericVariable(std::int32_t number, std::int32_t value) {
  numbers_[numericIndex(number)] = value;
}

LauncherServices::LauncherServices(LauncherState& state)
    : messages(platform),
      log(state.log),
      console(state.console, messages, state.cancelFlag),
      run{log, console, messages, state.cancelFlag, platform},
      tempFiles(run, state.tempDirectory),
      extractor(state.originalLauncherFileName, state.launcherFile, run),
      embeddedFiles(state.launcherFile, extractor, tempFiles),
      modeByte(state.launcherFileName, state.lastTrailerByte),
      launch{run,
             embeddedFiles,
             tempFiles,
             modeByte,
             state.launcherFileName,
             state.originalLauncherFileName,
             state.classPathPrefix,
             state.classPathSuffix},
      search{.launch = launch, .javaHome = state.javaHome, .fileSystemRoot = state.fileSystemRoot} {
}

void LauncherServices::adviseIfNothingRunsIn(const SString& temporaryDirectory) {
  if (!platform.isNoExec(temporaryDirectory)) return;
  const SString text = "No program can be started from the temporary directory " +
                       directoryOf(temporaryDirectory) +
                       ", because its file system is mounted noexec. Please run the program again "
                       "using the option -vs:tempdir <temp dir> to specify a different directory.";
  log.log(text, LogLevel::Warning);
  console.showAdvice(text);
}

}  // namespace vessant
