// The search of the whole disk: collect every file that could be a Java executable, then verify.

#include "launcher/base/PathUtil.h"
#include "launcher/jvm/JVMFiles.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {

void JVMFiles::findAll(JVMMatchPtrDeque& matches, bool stopAtFirst) {
  prepare();
  stopAtFirst_ = stopAtFirst;
  searchWholeDisk(matches);
  if (foundMatch_) matches.add(std::make_unique<JVMMatch>(*foundMatch_));
}

void JVMFiles::searchWholeDisk(JVMMatchPtrDeque& matches) {
  const RunServices& services = context_.launch.services;
  unverified_.clear();
  StringDeque executables;
  collectExecutables(executables);
  services.progress.showSearchPhase(SearchPhase::Scanning, "");
  services.log("Beginning exhaustive search");
  SString root = context_.fileSystemRoot;
  ensureTrailingSeparator(root);
  FindFiles(services, executables, *this, context_.launch.tempFiles.tempRootSetting())
      .navigate(root);
  if (!foundMatch_) verifyCollected(matches);
}

void JVMFiles::collectExecutables(StringDeque& executables) const {
  for (const JVMFile& jvmFile : files_) {
    const SString executable = jvmFile.executable();
    if (executables.indexOf(executable) < 0) executables.add(executable);
  }
}

void JVMFiles::verifyCollected(JVMMatchPtrDeque& matches) {
  const RunServices& services = context_.launch.services;
  services.log("Processing unverified matches.\n");
  for (const UnverifiedJVMMatch& candidates : unverified_) {
    for (const SString& home : candidates.homes) {
      if (services.cancelFlag.isSet() || foundMatch_) return;
      std::unique_ptr<JVMMatch> match =
          candidates.jvmFile.verifyAt(home, verificationClass_, context_);
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
    keep(jvmFile.verifyAt(home, verificationClass_, context_));
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
