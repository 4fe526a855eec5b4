#include "launcher/driver/ProgramLaunch.h"

#include "launcher/base/TextUtil.h"
#include "launcher/launch/LaunchScript.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

std::int32_t ProgramLaunch::launchWithJvmFile(const SString& fileName, std::int16_t seconds) {
  if (objects_.launchScript() == nullptr) return kRunFailed;
  TagFile tags(fileName, services_.log);
  JVMFile jvmFile(tags);
  return launch(jvmFile, seconds);
}

std::int32_t ProgramLaunch::launchWithEmbeddedJvmFile(std::int32_t fileId, std::int16_t seconds) {
  const FileIndexEntry* entry = state_.launcherFile.findById(static_cast<std::uint32_t>(fileId));
  const bool isLoadedJvmFile =
      entry != nullptr && entry->type == FileType::JvmFile && entry->tagFile != nullptr;
  if (!isLoadedJvmFile || objects_.launchScript() == nullptr) {
    services_.run.log(
        "Unable to launch the internal launch script with the internal JVM file. Either the launch "
        "script or the JVM file is missing from the launcher.",
        LogLevel::Error);
    return kRunFailed;
  }
  JVMFile jvmFile(*entry->tagFile);
  return launch(jvmFile, seconds);
}

std::int32_t ProgramLaunch::launch(JVMFile& jvmFile, std::int16_t seconds) {
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
void ProgramLaunch::runEmbeddedLauncher(std::int32_t fileId) {
  const FileIndexEntry* entry = state_.launcherFile.findById(static_cast<std::uint32_t>(fileId));
  const bool isLauncher = entry != nullptr && entry->type == FileType::EmbeddedLauncher;
  if (isLauncher && !state_.originalLauncherMode) {
    const SString directory = services_.tempFiles.createTempDir();
    services_.adviseIfNothingRunsIn(directory);
    const SString launcher = services_.extractor.extractFile(*entry, directory);
    ChildCommand command{.command = embeddedLauncherCommand(launcher),
                         .workingDirectory = directory};
    command.runInBackground = true;
    command.replaceProcess = true;
    services_.platform.executeCommand(command, services_.console);
  }
  services_.run.log("Unable to execute the embedded launcher.", LogLevel::Error);
}

/// The arguments are wrapped as they stand; quotes inside them are not escaped.
SString ProgramLaunch::embeddedLauncherCommand(const SString& launcher) const {
  SString command = launcher + " -vs:orig " + quoted(state_.launcherFileName);
  for (const SString& argument : state_.commandLineArguments) {
    command.append(" ").append(quoted(argument));
  }
  return command;
}

}  // namespace vessant
