#include "launcher/driver/JvmFinder.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"

namespace vessant {

void JvmFinder::findJvm(Display display) {
  services_.run.log("Finding a JVM");
  showSearchStage(display);
  state_.variables.setStringVariable(1, "");
  state_.variables.setStringVariable(2, "");
  state_.variables.setNumericVariable(1, 0);
  JVMMatchPtrDeque matches;
  objects_.jvmFiles().find(matches);
  if (matches.isEmpty()) {
    const SString text = services_.messages.errorText(ErrorId::NoJvmFound);
    services_.run.log(text);  // no error: the script may have another way
    if (display.failure) services_.console.showMessage(text);
    return;
  }
  const JVMMatch& match = *matches.get(0);
  const SString jvmFile = writeJvmFile(match);
  services_.run.log("Matching JVM home is " + match.home());
  services_.run.log("Matching JVM file is " + jvmFile);
  state_.variables.setStringVariable(1, match.home());
  state_.variables.setStringVariable(2, jvmFile);
  state_.variables.setNumericVariable(1, 1);
}

/// The stage comes first: it is only shown while the display is still on from before. Kept: a run
/// that was quiet up to here begins with the dots.
void JvmFinder::showSearchStage(Display display) {
  if (!display.progress) return services_.console.disableProgress();
  services_.console.showStage(Stage::SearchingForJvm);
  services_.console.enableProgress();
}

/// Verification leaves the home of the last candidate in the tags that several matches share: the
/// home of this one is set before they are written. It is made absolute: the file is read again by
/// programs that run elsewhere.
SString JvmFinder::writeJvmFile(const JVMMatch& match) {
  SString path = services_.tempFiles.createTempFile();
  match.tags().setJvmTags(absolutePath(match.home()), path, false);
  match.tags().save(path);
  return path;
}

void JvmFinder::verifyEmbeddedJvmFile(Display display, std::int32_t fileId) {
  showSearchStage(display);
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
  verifyJvm(display, jvmFile, state_.javaHome);
}

void JvmFinder::verifyJvm(Display display, JVMFile& jvmFile, const SString& javaHome) {
  state_.variables.setNumericVariable(1, 0);
  if (display.progress) {
    services_.console.showSearchPhase(SearchPhase::Verifying, jvmFile.description());
  }
  const std::unique_ptr<JVMMatch> match = objects_.jvmFiles().verify(jvmFile, javaHome);
  if (match == nullptr) {
    if (display.failure)
      services_.console.showMessage(services_.messages.errorText(ErrorId::InvalidJvm));
    services_.run.log("In VERIFY, the jvm is invalid.");
    return;
  }
  state_.variables.setNumericVariable(1, 1);
  state_.variables.setStringVariable(1, match->home());
  services_.run.log("After VERIFY, the jvm home is " + match->home());
}

void JvmFinder::findAllJvms(Display display, JVMMatchPtrDeque& matches) {
  services_.run.log("Finding all matching JVMs");
  showSearchStage(display);
  objects_.jvmFiles().findAll(matches, false);
}

}  // namespace vessant
