#include "launcher/jvm/JVMFiles.h"

#include "launcher/base/TextUtil.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {
namespace {

/// The name of the class in the embedded verification archive.
constexpr const char* kDefaultClassName = "Verify";

}  // namespace

void JVMFiles::setVerificationClass(const SString& classPath, const SString& className) {
  verificationClass_.classPath = classPath;
  verificationClass_.className = className;
}

const VerificationClass& JVMFiles::verificationClass() {
  if (!verificationClass_.classPath.isEmpty() || !verificationClass_.className.isEmpty()) {
    return verificationClass_;
  }
  EmbeddedFiles& embedded = context_.launch.embeddedFiles;
  const FileIndexEntry* entry = embedded.launcherFile().findByType(FileType::VerificationClass);
  if (entry != nullptr) {
    setVerificationClass(quoted(embedded.extractedPath(*entry)), quoted(kDefaultClassName));
  }
  return verificationClass_;
}

void JVMFiles::find(JVMMatchPtrDeque& matches) {
  prepare();
  tryUserHome();
  const bool mayScan = !foundMatch_ && tryHints();
  if (!foundMatch_ && mayScan) {
    stopAtFirst_ = true;
    searchWholeDisk(matches);
  }
  if (foundMatch_) matches.add(std::make_unique<JVMMatch>(*foundMatch_));
}

void JVMFiles::prepare() {
  foundMatch_.reset();
  static_cast<void>(verificationClass());  // extracted before the first candidate is shown
}

void JVMFiles::keep(const std::unique_ptr<JVMMatch>& match) {
  if (match != nullptr) foundMatch_ = *match;
}

void JVMFiles::tryUserHome() {
  const SString& home = context_.javaHome;
  if (home.isEmpty()) return;
  context_.launch.services.log("Checking user specified Java home directory => " + home);
  for (JVMFile& jvmFile : files_) {
    keep(jvmFile.verifyAt(home, verificationClass_, context_));
    if (foundMatch_) return;
  }
}

/// The files behind the first one that may be searched for on the whole disk are not tried. Kept:
/// authors order their files by it.
bool JVMFiles::tryHints() {
  context_.launch.services.log("Initiating JVM search based on hints...");
  for (JVMFile& jvmFile : files_) {
    const bool searchAll = jvmFile.searchAll();
    tryHintsOf(jvmFile);
    if (foundMatch_ || searchAll) return searchAll;
  }
  return false;
}

void JVMFiles::tryHintsOf(JVMFile& jvmFile) {
  context_.launch.services.progress.showSearchPhase(SearchPhase::Searching, jvmFile.description());
  keep(jvmFile.searchPlatformHints(verificationClass_, context_));
  if (!foundMatch_) keep(jvmFile.searchPathHints(verificationClass_, context_));
  if (!foundMatch_) keep(jvmFile.searchPlatformJVMPathHints(verificationClass_, context_));
}

}  // namespace vessant
