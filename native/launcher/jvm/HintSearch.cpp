// The search for Java homes by what the JVM file and the environment suggest.

#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/jvm/EnvironmentPath.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {
namespace {

constexpr const char* kMediaSpannedHome = "jvm";

/// The values of a tag that may be absent.
const StringDeque& valuesOf(const TagFile& tags, const char* name, const StringDeque& none) {
  const StringDeque* values = tags.findValues(name);
  return values == nullptr ? none : *values;
}

/// The home that a directory of PATH belongs to, when `executable` is in it.
SString homeOfPathEntry(const SString& entry, const SString& executable) {
  const SString::Size separator = executable.rfind("/");
  if (separator == SString::npos) return entry;
  const SString directory = executable.substr(0, separator + 1);
  SString home = entry;
  ensureTrailingSeparator(home);
  const SString::Size start = endsWith(home, directory);
  if (start != SString::npos) home.erase(start);
  return home;
}

/// A path in the directory of the launcher, which may be the root directory.
SString besideLauncher(const SString& launcherFile, const SString& name) {
  const SString directory = directoryOf(launcherFile);
  const bool isRoot = directory.isEmpty() && launcherFile.view().starts_with(kPathSeparator);
  return joinPath(isRoot ? "/" : directory, name);
}

void useFirstMedium(JVMMatch& match, const LaunchContext& launch) {
  const SString home = besideLauncher(launch.originalLauncherFileName, kMediaSpannedHome);
  match.setHome(home);
  launch.services.log(home);
  launch.services.log("MEDIA SPANNED : JVM Using :" + home);
}

}  // namespace

bool JVMFile::beginHintSearch(const char* kind, const JVMSearchContext& context) const {
  if (!namesProperties(context.launch.services.logSink)) return false;
  context.launch.services.log("Searching for " + description() + kind);
  return true;
}

std::unique_ptr<JVMMatch> JVMFile::searchPlatformHints(const VerificationClass& verificationClass,
                                                       const JVMSearchContext& context) {
  const RunServices& services = context.launch.services;
  if (!beginHintSearch(" using platform hints", context)) return nullptr;
  const StringDeque none;
  for (const SString& hint : valuesOf(tags_, "PLATFORM_HINT", none)) {
    StringDeque candidates;
    splitEnvironmentPath(candidates, hint, services.platform);
    for (const SString& candidate : candidates) {
      if (candidate.isEmpty()) continue;
      services.log("Checking JVM at " + candidate + " which was resolved from platform hint " +
                   hint);
      std::unique_ptr<JVMMatch> match = verifyAt(candidate, verificationClass, context);
      if (match != nullptr) return match;
    }
  }
  return nullptr;
}

std::unique_ptr<JVMMatch> JVMFile::searchPathHints(const VerificationClass& verificationClass,
                                                   const JVMSearchContext& context) {
  if (!beginHintSearch(" using path hints", context)) return nullptr;
  const StringDeque none;
  for (const SString& hint : valuesOf(tags_, "PATH_HINT", none)) {
    std::unique_ptr<JVMMatch> match;
    if (hint.view().starts_with(kPathSeparator)) {
      const SString candidate = joinPath(context.fileSystemRoot, hint.view().substr(1));
      context.launch.services.log("Checking path hint " + candidate);
      match = verifyAt(candidate, verificationClass, context);
    } else {
      match = tryRelativeHint(hint, verificationClass, context);
    }
    if (match != nullptr) return match;
  }
  return nullptr;
}

std::unique_ptr<JVMMatch> JVMFile::tryRelativeHint(const SString& hint,
                                                   const VerificationClass& verificationClass,
                                                   const JVMSearchContext& context) {
  const LaunchContext& launch = context.launch;
  const SString candidate = besideLauncher(launch.launcherFileName, hint);
  launch.services.log("Check path hint Relative " + candidate);
  std::unique_ptr<JVMMatch> match = verifyAt(candidate, verificationClass, context);
  if (match == nullptr) return nullptr;
  match->setFoundByRelativeHint();
  if (context.mediaSpanned) useFirstMedium(*match, launch);
  return match;
}

std::unique_ptr<JVMMatch> JVMFile::searchPlatformJVMPathHints(
    const VerificationClass& verificationClass, const JVMSearchContext& context) {
  const RunServices& services = context.launch.services;
  if (!beginHintSearch(" using platform specific JVM Path hints", context)) return nullptr;
  StringDeque entries;
  splitEnvironmentPath(entries, "PATH", services.platform);
  for (const SString& entry : entries) {
    if (entry.isEmpty()) continue;
    const SString candidate = homeOfPathEntry(entry, executable());
    services.log("Checking JVM at " + candidate +
                 " which was resolved from the platform JVM path " + entry);
    std::unique_ptr<JVMMatch> match = verifyAt(candidate, verificationClass, context);
    if (match != nullptr) return match;
  }
  return nullptr;
}

}  // namespace vessant
