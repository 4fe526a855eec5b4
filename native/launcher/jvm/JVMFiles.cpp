#include "launcher/jvm/JVMFiles.h"

#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {
namespace {

/// The name of the class in the embedded verification archive.
constexpr const char* kDefaultClassName = "Verify";

}  // namespace

void JVMFiles::setVerificationClass(const SString& classPath, const SString& className) {
  search_.verificationClass = {classPath, className};
}

void JVMFiles::find(JVMMatchPtrDeque& matches) {
  const std::int32_t known = matches.count();
  begin();
  tryUserHome();
  const bool mayScan = !foundMatch_ && tryHints();
  if (!foundMatch_ && mayScan) {
    stopAtFirst_ = true;
    searchWholeDisk(matches);
  }
  finish(matches, known);
}

void JVMFiles::findAll(JVMMatchPtrDeque& matches, bool stopAtFirst) {
  const std::int32_t known = matches.count();
  begin();
  stopAtFirst_ = stopAtFirst;
  searchWholeDisk(matches);
  finish(matches, known);
}

std::unique_ptr<JVMMatch> JVMFiles::verify(JVMFile& jvmFile, const SString& home) {
  begin();
  return home.isEmpty() ? jvmFile.verifyOwnHome(search_) : jvmFile.verifyAt(home, search_);
}

const RunServices& JVMFiles::services() const {
  return search_.context.launch.services;
}

/// The class is extracted before the first candidate is shown: a disk that is too small for it is
/// no fault of the candidate's.
void JVMFiles::begin() {
  foundMatch_.reset();
  search_.counts = {};
  prepareVerificationClass();
}

/// A cancelled search has found nothing, whatever it came upon: the user wants no program started.
void JVMFiles::finish(JVMMatchPtrDeque& matches, std::int32_t known) {
  services().throwIfCanceled();
  if (foundMatch_) matches.add(std::make_unique<JVMMatch>(*foundMatch_));
  if (matches.count() > known) return;
  const CandidateCounts& counts = search_.counts;
  services().log("JVM search: " + longToString(counts.candidates) + " candidates, " +
                 longToString(counts.existed) + " existed, " + longToString(counts.ran) + " ran, " +
                 longToString(counts.differed) + " differed");
}

void JVMFiles::prepareVerificationClass() {
  const VerificationClass& chosen = search_.verificationClass;
  if (!chosen.classPath.isEmpty() || !chosen.className.isEmpty()) return;
  EmbeddedFiles& embedded = search_.context.launch.embeddedFiles;
  const FileIndexEntry* entry = embedded.launcherFile().findByType(FileType::VerificationClass);
  if (entry == nullptr) return;
  setVerificationClass(quoted(embedded.extractedPath(*entry)), quoted(kDefaultClassName));
}

/// A copy: the caller's list and this collection may end at different times.
void JVMFiles::keep(const std::unique_ptr<JVMMatch>& match) {
  if (match != nullptr) foundMatch_ = *match;
}

void JVMFiles::tryUserHome() {
  const SString& home = search_.context.javaHome;
  if (home.isEmpty()) return;
  services().log("Checking user specified Java home directory => " + home);
  for (JVMFile& jvmFile : files_) {
    keep(jvmFile.verifyAt(home, search_));
    if (foundMatch_) return;
  }
}

/// The files behind the first one that may be searched for on the whole disk are not tried. Kept:
/// authors order their files by it.
bool JVMFiles::tryHints() {
  services().log("Initiating JVM search based on hints...");
  for (JVMFile& jvmFile : files_) {
    const bool searchAll = jvmFile.searchAll();
    tryHintsOf(jvmFile);
    if (foundMatch_ || searchAll) return searchAll;
  }
  return false;
}

/// From the surest hint to the one that fits most machines.
void JVMFiles::tryHintsOf(JVMFile& jvmFile) {
  services().progress.showSearchPhase(SearchPhase::Searching, jvmFile.description());
  keep(jvmFile.searchPlatformHints(search_));
  if (!foundMatch_) keep(jvmFile.searchPathHints(search_));
  if (!foundMatch_) keep(jvmFile.searchPlatformJVMPathHints(search_));
}

void JVMFiles::searchWholeDisk(JVMMatchPtrDeque& matches) {
  unverified_.clear();
  StringDeque executables;
  collectExecutables(executables);
  services().progress.showSearchPhase(SearchPhase::Scanning, "");
  services().log("Beginning exhaustive search");
  SString root = search_.context.fileSystemRoot;
  ensureTrailingSeparator(root);
  FindFiles(services(), executables, *this, search_.context.launch.tempFiles.tempRootSetting())
      .navigate(root);
  services().throwIfCanceled();  // a cancelled walk ends early
  if (!foundMatch_) verifyCollected(matches);
}

/// Each once: the walk reports a path for every suffix that it ends in.
void JVMFiles::collectExecutables(StringDeque& executables) const {
  for (const JVMFile& jvmFile : files_) {
    const SString executable = jvmFile.executable();
    if (executables.indexOf(executable) < 0) executables.add(executable);
  }
}

void JVMFiles::verifyCollected(JVMMatchPtrDeque& matches) {
  services().log("Processing unverified matches.\n");
  for (const UnverifiedJVMMatch& candidates : unverified_) {
    for (const SString& home : candidates.homes) {
      if (foundMatch_) return;
      std::unique_ptr<JVMMatch> match = candidates.jvmFile.verifyAt(home, search_);
      if (stopAtFirst_) {
        keep(match);
      } else if (match != nullptr) {
        matches.add(std::move(match));
      }
    }
  }
}

bool JVMFiles::fileFound(const SString& path) {
  for (std::int32_t i = 0; i < files_.count() && !foundMatch_; ++i) {
    const SString executable = files_.get(i)->executable();
    const bool isExecutable = !executable.isEmpty() && path.length() > executable.length() &&
                              path.view().ends_with(executable);
    if (isExecutable) considerHome(i, path.substr(0, path.length() - executable.length() - 1));
  }
  return foundMatch_.has_value();
}

/// The first JVM file is the one that the author wants most: when one match is enough, its
/// candidates are verified at once and may end the walk. All others wait for the end of the walk.
void JVMFiles::considerHome(std::int32_t position, const SString& home) {
  JVMFile& jvmFile = *files_.get(position);
  if (position == 0 && stopAtFirst_) {
    keep(jvmFile.verifyAt(home, search_));
    return;
  }
  StringDeque& homes = unverifiedOf(jvmFile).homes;
  if (homes.indexOf(home) < 0) homes.add(home);
}

UnverifiedJVMMatch& JVMFiles::unverifiedOf(JVMFile& jvmFile) {
  for (UnverifiedJVMMatch& known : unverified_) {
    if (&known.jvmFile == &jvmFile) return known;
  }
  unverified_.add(std::make_unique<UnverifiedJVMMatch>(jvmFile));
  return *unverified_.getLast();
}

}  // namespace vessant
