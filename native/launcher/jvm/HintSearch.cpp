#include "launcher/jvm/HintSearch.h"

#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/jvm/JVMVerification.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

constexpr const char* kMediaSpannedHome = "jvm";
constexpr const char* kPath = "PATH";

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

/// The medium at hand may be taken out later; the first one carries the JVM for the whole run.
void useFirstMedium(JVMMatch& match, const LaunchContext& launch) {
  const SString home = besideLauncher(launch.originalLauncherFileName, kMediaSpannedHome);
  match.setHome(home);
  launch.services.log(home);
  launch.services.log("MEDIA SPANNED : JVM Using :" + home);
}

}  // namespace

std::unique_ptr<JVMMatch> HintSearch::byPlatformHints() {
  if (!begin(" using platform hints")) return nullptr;
  for (const SString& hint : hints(jvmtag::kPlatformHint)) {
    std::unique_ptr<JVMMatch> match = tryHomesIn(hint);
    if (match != nullptr) return match;
  }
  return nullptr;
}

std::unique_ptr<JVMMatch> HintSearch::byPathHints() {
  if (!begin(" using path hints")) return nullptr;
  for (const SString& hint : hints(jvmtag::kPathHint)) {
    const bool absolute = hint.view().starts_with(kPathSeparator);
    std::unique_ptr<JVMMatch> match = absolute ? tryAbsolute(hint) : tryRelative(hint);
    if (match != nullptr) return match;
  }
  return nullptr;
}

std::unique_ptr<JVMMatch> HintSearch::byPlatformPath() {
  const RunServices& services = search_.context.launch.services;
  if (!begin(" using platform specific JVM Path hints")) return nullptr;
  StringDeque entries;
  splitEnvironmentPath(entries, kPath, services.platform);
  for (const SString& entry : entries) {
    if (entry.isEmpty()) continue;
    const SString candidate = homeOfPathEntry(entry, jvm_.tag(jvmtag::kExecutable));
    services.log("Checking JVM at " + candidate +
                 " which was resolved from the platform JVM path " + entry);
    std::unique_ptr<JVMMatch> match = verifyAt(candidate);
    if (match != nullptr) return match;
  }
  return nullptr;
}

/// Polled here as well as at each candidate: a search may have no candidate at all.
bool HintSearch::begin(const char* kind) const {
  search_.context.launch.services.throwIfCanceled();
  if (!namesProperties(jvm_, search_)) return false;
  search_.context.launch.services.log("Searching for " + jvm_.tag(jvmtag::kDescription) + kind);
  return true;
}

const StringDeque& HintSearch::hints(const char* tag) const {
  static const StringDeque kNone;
  const StringDeque* values = jvm_.tags().findValues(tag);
  return values == nullptr ? kNone : *values;
}

std::unique_ptr<JVMMatch> HintSearch::verifyAt(const SString& home) {
  return JVMVerification(jvm_, search_).verifyAt(home);
}

std::unique_ptr<JVMMatch> HintSearch::tryHomesIn(const SString& variable) {
  const RunServices& services = search_.context.launch.services;
  StringDeque candidates;
  splitEnvironmentPath(candidates, variable, services.platform);
  for (const SString& candidate : candidates) {
    if (candidate.isEmpty()) continue;
    services.log("Checking JVM at " + candidate + " which was resolved from platform hint " +
                 variable);
    std::unique_ptr<JVMMatch> match = verifyAt(candidate);
    if (match != nullptr) return match;
  }
  return nullptr;
}

std::unique_ptr<JVMMatch> HintSearch::tryAbsolute(const SString& hint) {
  const SString candidate = joinPath(search_.context.fileSystemRoot, hint.view().substr(1));
  search_.context.launch.services.log("Checking path hint " + candidate);
  return verifyAt(candidate);
}

/// Next to the launcher that runs, which may be an embedded one in a temporary directory.
std::unique_ptr<JVMMatch> HintSearch::tryRelative(const SString& hint) {
  const LaunchContext& launch = search_.context.launch;
  const SString candidate = besideLauncher(launch.launcherFileName, hint);
  launch.services.log("Check path hint Relative " + candidate);
  std::unique_ptr<JVMMatch> match = verifyAt(candidate);
  if (match == nullptr) return nullptr;
  match->setFoundByRelativeHint();
  if (search_.context.mediaSpanned) useFirstMedium(*match, launch);
  return match;
}

void splitEnvironmentPath(StringDeque& list, const SString& name, const Platform& platform) {
  list.clear();
  const SString value = name.isEmpty() ? SString() : platform.getEnvironmentVariable(name);
  if (value.isEmpty()) return;
  SString::Size start = 0;
  while (true) {
    const SString::Size separator = value.find(kPathListSeparator, start);
    if (separator == SString::npos) break;
    list.add(value.substr(start, separator - start));
    start = separator + 1;
  }
  list.add(value.substr(start));
}

}  // namespace vessant
