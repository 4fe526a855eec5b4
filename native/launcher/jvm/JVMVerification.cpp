// Verification: a candidate is what the Java found there says it is.

#include <memory>

#include "launcher/base/LineReader.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/launch/LaunchScript.h"

namespace vessant {
namespace {

constexpr std::string_view kMagicLine = "1739021872";
constexpr std::string_view kPrefixMark = "...";
constexpr const char* kProperties = "JVM_PROPERTIES";
constexpr std::int32_t kStepsOfMissingFile = 2;
constexpr std::int32_t kStepsOfRun = 6;

/// Why a home cannot be put into a command or a JVM file; null when it can.
const char* reasonToSkip(const SString& home) {
  for (const char character : home.view()) {
    if (character == '%') return "its path holds a percent sign";
    if (character == '\n' || character == '\r') return "its path holds a line break";
    if (character == '\0') return "its path holds a zero byte";
  }
  return nullptr;
}

/// A class path in quotes goes into a quoted argument with its quotes doubled.
SString asFunctionArgument(const SString& classPath) {
  const std::string_view text = classPath.view();
  const bool inQuotes = text.starts_with('"') && text.ends_with('"');
  return inQuotes ? quoted(quoted(classPath)) : classPath;
}

bool satisfies(const SString& line, const SString& expected) {
  const SString::Size prefixLength = endsWith(expected, kPrefixMark);
  if (prefixLength == SString::npos) return line == expected;
  return line.view().substr(0, prefixLength) == expected.view().substr(0, prefixLength);
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

}  // namespace

std::unique_ptr<JVMMatch> JVMFile::verifyAt(const SString& home,
                                            const VerificationClass& verificationClass,
                                            const JVMSearchContext& context) {
  const RunServices& services = context.launch.services;
  if (home.isEmpty() || executable().isEmpty() || !namesProperties(services.logSink)) {
    return nullptr;
  }
  const char* reason = reasonToSkip(home);
  if (reason != nullptr) {
    services.log("Skipping JVM at " + home + ": " + reason, LogLevel::Warning);
    return nullptr;
  }
  services.progress.showSearchPhase(SearchPhase::Verifying, description());
  const SString path = joinPath(home, executable());
  services.log("Verifying JVM at " + path + "\n   for JVM: " + description());
  if (!fileExists(path)) {
    services.log(path + " does not exist");
    services.progress.addProgressDots(kStepsOfMissingFile);
    return nullptr;
  }
  if (!runVerification(home, verificationClass, context)) return nullptr;
  services.log("Found matching JVM at " + home);
  return std::make_unique<JVMMatch>(home, tags_);
}

std::unique_ptr<JVMMatch> JVMFile::verifyOwnHome(const VerificationClass& verificationClass,
                                                 const JVMSearchContext& context) {
  if (!namesProperties(context.launch.services.logSink)) return nullptr;
  return verifyAt(tag(jvmtag::kHome), verificationClass, context);
}

bool JVMFile::namesProperties(LogSink& log) const {
  if (!tag(kProperties).isEmpty()) return true;
  log.log(
      "Unable to verify " + fileName() + " because the " + kProperties + " tag was not specified.",
      LogLevel::Warning);
  return false;
}

bool JVMFile::runVerification(const SString& home, const VerificationClass& verificationClass,
                              const JVMSearchContext& context) {
  const RunServices& services = context.launch.services;
  tags_.setValue(jvmtag::kHome, home);
  StringPairPtrDeque expected;
  const SString command = verificationCommand(home, verificationClass, expected, services.logSink);
  LaunchScript script(command, true, false, context.launch);
  script.execute(*this, nullptr, false);
  const bool matches = matchOutput(script.standardOutput(), expected, services.logSink);
  services.progress.addProgressDots(kStepsOfRun);
  return matches;
}

SString JVMFile::verificationCommand(const SString& home,
                                     const VerificationClass& verificationClass,
                                     StringPairPtrDeque& expected, LogSink& log) const {
  SString command = "\"" + joinPath(home, "@JVM_EXE@\" %CP%(") +
                    asFunctionArgument(verificationClass.classPath) + ") " + " @REQ_JAVA_ARGS@ " +
                    verificationClass.className;
  const StringDeque* properties = tags_.findValues(kProperties);
  if (properties == nullptr) return command;
  for (const SString& property : *properties) {
    const SString::Size equals = property.find('=');
    if (equals == SString::npos) {
      log.log(SString("Invalid ") + kProperties + " setting (" + property + ") in JVM File ",
              LogLevel::Warning);
      continue;
    }
    auto pair = std::make_unique<StringPair>();
    pair->name = trimmed(property.substr(0, equals));
    pair->value = trimmed(property.substr(equals + 1));
    command.append(" ").append(pair->name);
    expected.add(std::move(pair));
  }
  return command;
}

bool JVMFile::matchOutput(const SString& output, const StringPairPtrDeque& expected, LogSink& log) {
  SString::Size position = 0;
  if (!skipToValues(output, position, log)) return false;
  for (const StringPair& property : expected) {
    if (position >= output.length()) return true;
    SString line;
    readLine(output, position, line);
    if (!satisfies(line, property.value)) return false;
  }
  return true;
}

}  // namespace vessant
