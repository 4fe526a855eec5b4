#include "launcher/jvm/JVMVerification.h"

#include <unistd.h>

#include "launcher/base/PathUtil.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/launch/LaunchScript.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

constexpr std::string_view kPrefixMark = "...";
// How far a candidate moves the progress display: one that runs takes its time.
constexpr std::int32_t kStepsOfMissingFile = 2;
constexpr std::int32_t kStepsOfRun = 6;
/// A candidate that is no Java may answer with anything: the log gets so much of a line.
constexpr SString::Size kLongestShown = 200;

/// A value that ends in the mark asks for what stands in front of it alone.
bool satisfies(const SString& line, const SString& expected) {
  const SString::Size prefixLength = endsWith(expected, kPrefixMark);
  if (prefixLength == SString::npos) return line == expected;
  return line.view().substr(0, prefixLength) == expected.view().substr(0, prefixLength);
}

SString difference(const StringPair& property, const SString& line) {
  const SString shown = line.isEmpty() ? SString("empty") : line.substr(0, kLongestShown);
  return property.name + " is " + shown + ", wanted " + property.value;
}

/// Moves behind the magic line; false, with an error in the log, when there is none.
bool skipToValues(const SString& output, SString::Size& position, LogSink& log) {
  SString line;
  while (position < output.length()) {
    line.erase();
    readLine(output, position, line);
    if (line == kMagicLine) return true;
  }
  log.log("Invalid magic value: " + line + "\n", LogLevel::Error);
  return false;
}

/// Why a home cannot be put into a command or a JVM file; null when it can. The macro passes go
/// through the command with the home in it: a delimiter would pair with one of the command's own.
/// The last pass finds none there, so that a single "#" stays alone and harmless.
const char* reasonToSkip(const SString& home) {
  int hashes = 0;
  for (const char character : home.view()) {
    if (character == '%') return "its path holds a percent sign";
    if (character == '@') return "its path holds an at sign";
    if (character == '#' && ++hashes > 1) return "its path holds two number signs";
    if (character == '\n' || character == '\r') return "its path holds a line break";
    if (character == '\0') return "its path holds a zero byte";
  }
  return nullptr;
}

/// Whether the file at `path` may be executed by this user.
bool isProgram(const SString& path) {
  return !isDirectory(path) && ::access(path.cString(), X_OK) == 0;
}

/// A class path in quotes goes into a quoted argument with its quotes doubled.
SString asFunctionArgument(const SString& classPath) {
  const std::string_view text = classPath.view();
  const bool inQuotes = text.starts_with('"') && text.ends_with('"');
  return inQuotes ? quoted(quoted(classPath)) : classPath;
}

}  // namespace

bool namesProperties(const JvmTags& jvm, const JVMSearch& search) {
  if (!jvm.tag(jvmtag::kProperties).isEmpty()) return true;
  search.context.launch.services.log("Unable to verify " + jvm.tags().sourceName() +
                                         " because the " + jvmtag::kProperties +
                                         " tag was not specified.",
                                     LogLevel::Warning);
  return false;
}

void readExpectedProperties(const TagFile& tags, StringPairPtrDeque& expected, LogSink& log) {
  const StringDeque* settings = tags.findValues(jvmtag::kProperties);
  if (settings == nullptr) return;
  for (const SString& setting : *settings) {
    const SString::Size equals = setting.find('=');
    if (equals == SString::npos) {
      log.log(SString("Invalid ") + jvmtag::kProperties + " setting (" + setting + ") in JVM File ",
              LogLevel::Warning);
      continue;
    }
    auto pair = std::make_unique<StringPair>();
    pair->name = trimmed(setting.substr(0, equals));
    pair->value = trimmed(setting.substr(equals + 1));
    expected.add(std::move(pair));
  }
}

JVMAnswer readAnswer(const SString& output, const StringPairPtrDeque& expected, LogSink& log) {
  SString::Size position = 0;
  if (!skipToValues(output, position, log)) return {JVMAnswer::Kind::NoMagicLine};
  for (const StringPair& property : expected) {
    if (position >= output.length()) break;
    SString line;
    readLine(output, position, line);
    if (satisfies(line, property.value)) continue;
    return {JVMAnswer::Kind::Different, difference(property, line)};
  }
  return {};
}

std::unique_ptr<JVMMatch> JVMVerification::verifyAt(const SString& home) {
  const RunServices& services = search_.context.launch.services;
  services.throwIfCanceled();  // between two candidates
  if (!canBeTried(home)) return nullptr;
  const SString description = jvm_.tag(jvmtag::kDescription);
  services.progress.showSearchPhase(SearchPhase::Verifying, description);
  const SString path = joinPath(home, jvm_.tag(jvmtag::kExecutable));
  services.log("Verifying JVM at " + path + "\n   for JVM: " + description);
  if (!fileExists(path)) {
    services.log(path + " does not exist");
    services.progress.addProgressDots(kStepsOfMissingFile);
    return nullptr;
  }
  ++search_.counts.existed;
  if (!run(home)) return nullptr;
  services.log("Found matching JVM at " + home);
  return std::make_unique<JVMMatch>(home, jvm_.tags());
}

/// A home or an executable without a name is no candidate: nothing is said of it.
bool JVMVerification::canBeTried(const SString& home) {
  if (home.isEmpty() || jvm_.tag(jvmtag::kExecutable).isEmpty()) return false;
  if (!namesProperties(jvm_, search_)) return false;
  ++search_.counts.candidates;
  const char* reason = reasonToSkip(absolutePath(home));
  if (reason == nullptr) return true;
  search_.context.launch.services.log("Skipping JVM at " + home + ": " + reason, LogLevel::Warning);
  return false;
}

/// The command runs in the launcher's directory, while a relative home counts from the user's. The
/// tag is set first: the command names the home's executable, and the child finds it in JAVA_HOME.
bool JVMVerification::run(const SString& home) {
  const RunServices& services = search_.context.launch.services;
  const SString directory = absolutePath(home);
  jvm_.tags().setValue(jvmtag::kHome, directory);
  StringPairPtrDeque expected;
  readExpectedProperties(jvm_.tags(), expected, services.logSink);
  LaunchScript script(commandFor(directory, expected), true, false, search_.context.launch);
  const ChildResult end = script.executeLimited(jvm_, search_.context.candidateLimits);
  services.throwIfCanceled();  // whoever ends the run ends the candidate, too
  JVMAnswer answer;
  if (end.end == ChildEnd::Exited) {
    answer = readAnswer(script.standardOutput(), expected, services.logSink);
  }
  services.progress.addProgressDots(kStepsOfRun);
  const SString reason = reasonToRefuse(end, answer);
  if (!reason.isEmpty()) services.log("Refused JVM at " + home + ": " + reason);
  return reason.isEmpty();
}

/// Empty when there is none. The exit status alone is none: the answer counts.
SString JVMVerification::reasonToRefuse(const ChildResult& end, const JVMAnswer& answer) {
  const SString path = joinPath(jvm_.tag(jvmtag::kHome), jvm_.tag(jvmtag::kExecutable));
  const bool isBroken = answer.kind == JVMAnswer::Kind::NoMagicLine;
  if (isBroken && end.end == ChildEnd::Exited && !isProgram(path)) return "not executable";
  ++search_.counts.ran;
  if (end.end == ChildEnd::TimeLimit) return "too slow";
  if (end.end == ChildEnd::OutputLimit) return "too much output";
  if (isBroken && end.exitCode != 0) return "ended with status " + longToString(end.exitCode);
  if (isBroken) return "no magic line";
  if (answer.kind == JVMAnswer::Kind::Different) ++search_.counts.differed;
  return answer.difference;
}

SString JVMVerification::commandFor(const SString& home, const StringPairPtrDeque& expected) const {
  const VerificationClass& verificationClass = search_.verificationClass;
  SString command = "\"" + joinPath(home, "@JVM_EXE@\" %CP%(") +
                    asFunctionArgument(verificationClass.classPath) + ") " + " @REQ_JAVA_ARGS@ " +
                    verificationClass.className;
  for (const StringPair& property : expected) command.append(" ").append(property.name);
  return command;
}

}  // namespace vessant
