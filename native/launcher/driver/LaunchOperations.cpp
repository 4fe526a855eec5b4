// LauncherMain: launching the Java program, or an embedded launcher in place of this one.

#include "launcher/base/TextUtil.h"
#include "launcher/driver/LauncherMain.h"

namespace vessant {

void LauncherMain::beginProgress() {
  services_.console.showStage(Stage::Initializing);
  services_.console.resetSearchPhase();
  services_.console.enableProgress();
}

std::int32_t LauncherMain::launchWithJvmFile(const SString& fileName, std::int16_t seconds) {
  if (!objects_.hasLaunchScript()) return kRunFailed;
  TagFile tags(fileName, services_.log);
  JVMFile jvmFile(tags);
  return launch(jvmFile, seconds);
}

std::int32_t LauncherMain::launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds) {
  const FileIndexEntry* entry = state_.launcherFile.findById(static_cast<std::uint32_t>(fileId));
  const bool isLoadedJvmFile =
      entry != nullptr && entry->type == FileType::JvmFile && entry->tagFile != nullptr;
  if (!isLoadedJvmFile || !objects_.hasLaunchScript()) {
    logError(
        "Unable to launch the internal launch script with the internal JVM file. Either the launch "
        "script or the JVM file is missing from the launcher.");
    return kRunFailed;
  }
  JVMFile jvmFile(*entry->tagFile);
  return launch(jvmFile, seconds);
}

std::int32_t LauncherMain::launch(JVMFile& jvmFile, std::int16_t seconds) {
  if (seconds > 0) {
    services_.console.showStage(Stage::Running);
    services_.console.resetSearchPhase();
  }
  services_.console.disableProgress();
  LaunchScript& script = *objects_.launchScript();
  const std::int32_t result =
      script.execute(jvmFile, &state_.passThroughArguments, state_.javaConsole);
  state_.launchFailureMessage = script.standardError();
  state_.launchOutput = script.standardOutput();
  return result;
}

/// An embedded launcher runs the outer file's script, which would start it again and again: there
/// the command only leaves its line in the log.
void LauncherMain::runEmbeddedLauncher(std::int32_t fileId) {
  const FileIndexEntry* entry = state_.launcherFile.findById(static_cast<std::uint32_t>(fileId));
  const bool isLauncher = entry != nullptr && entry->type == FileType::EmbeddedLauncher;
  if (isLauncher && !state_.originalLauncherMode) {
    const SString directory = services_.tempFiles.createTempDir();
    const SString launcher = services_.extractor.extractFile(*entry, directory);
    ChildCommand command{.command = embeddedLauncherCommand(launcher),
                         .workingDirectory = directory};
    command.runInBackground = true;
    command.replaceProcess = true;
    services_.platform.executeCommand(command, services_.console);
  }
  logError("Unable to execute the embedded launcher.");
}

/// The arguments are wrapped as they stand; quotes inside them are not escaped.
SString LauncherMain::embeddedLauncherCommand(const SString& launcher) const {
  SString command = launcher + " -vs:orig " + quoted(state_.launcherFileName);
  for (const SString& argument : state_.commandLineArguments) {
    command.append(" ").append(quoted(argument));
  }
  return command;
}

}  // namespace vessant
