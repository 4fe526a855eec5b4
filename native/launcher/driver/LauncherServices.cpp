#include "launcher/driver/LauncherServices.h"

namespace vessant {

LauncherServices::LauncherServices(LauncherState& state)
    : messages(platform),
      log(state.log),
      console(state.console, messages, state.cancelFlag),
      run{log, console, messages, state.cancelFlag, platform},
      tempFiles(run, state.tempDirectory),
      extractor(state.originalLauncherFileName, run),
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

}  // namespace vessant
