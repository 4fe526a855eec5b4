// LauncherMain: finding and verifying JVMs, for scripts and for programs that read the results.

#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/driver/LauncherMain.h"

namespace vessant {

void LauncherMain::findJvm(bool showProgress, bool showFailure) {
  services_.run.log("Finding a JVM");
  showSearchStage(showProgress);
  setStringVariable(1, "");
  setStringVariable(2, "");
  setNumericVariable(1, 0);
  JVMMatchPtrDeque matches;
  objects_.jvmFiles().find(matches);
  if (matches.isEmpty()) {
    const SString text = errorText(ErrorId::NoJvmFound);
    services_.run.log(text);
    if (showFailure) services_.console.showMessage(text);
    return;
  }
  const JVMMatch& match = *matches.get(0);
  const SString jvmFile = writeJvmFile(match);
  services_.run.log("Matching JVM home is " + match.home());
  services_.run.log("Matching JVM file is " + jvmFile);
  setStringVariable(1, match.home());
  setStringVariable(2, jvmFile);
  setNumericVariable(1, 1);
}

void LauncherMain::showSearchStage(bool showProgress) {
  if (!showProgress) return services_.console.disableProgress();
  services_.console.showStage(Stage::SearchingForJvm);
  services_.console.enableProgress();
}

/// Verification leaves the home of the last candidate in the tags that several matches share: the
/// home of this one is set before they are written. It is made absolute: the file is read again by
/// programs that run elsewhere.
SString LauncherMain::writeJvmFile(const JVMMatch& match) {
  SString path = services_.tempFiles.createTempFile();
  match.tags().setJvmTags(absolutePath(match.home()), path, false);
  match.tags().save(path);
  return path;
}

void LauncherMain::verifyEmbeddedJvmFile(bool showProgress, bool showFailure, std::int32_t fileId) {
  showSearchStage(showProgress);
  const FileIndexEntry* entry = state_.launcherFile.findById(static_cast<std::uint32_t>(fileId));
  const SString number = longToString(fileId);
  if (entry == nullptr) {
    throw LauncherException("Cannot verify jvm file at index " + number +
                            " because it does not exist.");
  }
  if (entry->type != FileType::JvmFile) {
    throw LauncherException(
        "To verify a JVM, use an index of a jvm file. The index passed in was " + number +
        " which corresponds to the file named " + entry->fileName);
  }
  if (entry->tagFile == nullptr) {
    throw LauncherException("The jvm file with file id " + number + " could not be read.");
  }
  JVMFile jvmFile(*entry->tagFile);
  verifyJvm(showProgress, showFailure, jvmFile, state_.javaHome);
}

void LauncherMain::verifyJvm(bool showProgress, bool showFailure, JVMFile& jvmFile,
                             const SString& javaHome) {
  setNumericVariable(1, 0);
  if (showProgress) {
    services_.console.showSearchPhase(SearchPhase::Verifying, jvmFile.description());
  }
  const std::unique_ptr<JVMMatch> match = objects_.jvmFiles().verify(jvmFile, javaHome);
  if (match == nullptr) {
    if (showFailure) services_.console.showMessage(errorText(ErrorId::InvalidJvm));
    services_.run.log("In VERIFY, the jvm is invalid.");
    return;
  }
  setNumericVariable(1, 1);
  setStringVariable(1, match->home());
  services_.run.log("After VERIFY, the jvm home is " + match->home());
}

void LauncherMain::searchAction(bool showProgress, bool showFailure) {
  try {
    findJvm(showProgress, showFailure);
    const std::int32_t found = getNumericVariable(1);
    services_.console.printResult(longToString(found));
    if (found == 0) return;
    services_.console.printResult(getStringVariable(1));
    services_.console.printResult(getStringVariable(2));
    services_.tempFiles.unregisterTempFile(getStringVariable(2));
  } catch (const LauncherException&) {
    logError("Unexpected failure in search.");
  }
}

void LauncherMain::searchAllAction(bool showProgress, bool showFailure) {
  try {
    printAllMatches(showProgress);
  } catch (const LauncherException& error) {
    const SString text = errorText(ErrorId::SearchAllFailed) + error.message();
    logError(text);
    if (showFailure) services_.console.showMessage(text);
    services_.console.printResult("0");
  }
}

void LauncherMain::printAllMatches(bool showProgress) {
  services_.run.log("Finding all matching JVMs");
  showSearchStage(showProgress);
  JVMMatchPtrDeque matches;
  objects_.jvmFiles().findAll(matches, false);
  services_.console.printResult(longToString(matches.count()));
  for (const JVMMatch& match : matches) {
    const SString jvmFile = writeJvmFile(match);
    services_.tempFiles.unregisterTempFile(jvmFile);
    services_.console.printResult(match.home());
    services_.console.printResult(jvmFile);
  }
}

void LauncherMain::verifyJvmAction(bool showProgress, bool showFailure, const SString& jvmFile,
                                   const SString& javaHome) {
  TagFile tags(jvmFile, services_.log);
  JVMFile described(tags);
  verifyJvm(showProgress, showFailure, described, javaHome);
  services_.console.printResult(longToString(getNumericVariable(1)));
}

}  // namespace vessant
