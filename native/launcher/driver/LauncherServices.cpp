#include "launcher/driver/LauncherServices.h"

#include "launcher/base/PathUtil.h"

namespace vessant {

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
