#include "launcher/launch/LaunchScript.h"

#include <utility>

#include "launcher/base/PathUtil.h"
#include "launcher/base/TextUtil.h"
#include "launcher/launch/MacroFunctions.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

constexpr const char* kJavaHome = "JAVA_HOME";
constexpr char kFunctionDelimiter = '%';
constexpr char kEnvironmentDelimiter = '#';
constexpr SString::Size kMostOfEndlessOutput = 64 << 10;

/// Each argument reaches the command line in double quotes. Inside them the shell still reads a
/// dollar sign, a backquote and a backslash. Kept: installers are called with such arguments.
void appendArguments(SString& command, const StringDeque& arguments) {
  for (const SString& argument : arguments) {
    command.append(" \"");
    for (const char character : argument.view()) {
      if (character == '"') command += '\\';
      command += character;
    }
    command += '"';
  }
}

/// Applies one setting of the form NAME=value; the value may be missing.
void applySetting(const SString& setting, Platform& platform) {
  const SString text = trimmed(setting);
  if (text.isEmpty()) return;
  const SString::Size equals = text.find('=');
  if (equals == SString::npos) return platform.setEnvironmentVariable(text, "");
  platform.setEnvironmentVariable(trimmed(text.substr(0, equals)),
                                  trimmed(text.substr(equals + 1)));
}

/// The directory must not change when the path holds no "/".
SString runningDirectory(const SString& launcherFile) {
  const SString::Size separator = launcherFile.rfind("/");
  return separator == SString::npos ? launcherFile : launcherFile.substr(0, separator);
}

/// Gives a member another value for the length of a scope, however that ends.
template <class T>
class ScopedValue {
 public:
  ScopedValue(T& member, T value) : member_(member), former_(std::exchange(member, value)) {}
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;
  ~ScopedValue() { member_ = former_; }

 private:
  T& member_;
  T former_;
};

}  // namespace

LaunchScript::LaunchScript(const TagFile& tags, bool captureOutput, LaunchContext& context)
    : context_(context),
      command_(tags.getValue("COMMAND")),
      captureOutput_(captureOutput),
      displayConsole_(tags.getBoolean("DISPLAY_CONSOLE", false)),
      autoSetWorkingDir_(tags.getBoolean("AUTO_SET_WORKING_DIR", true)),
      includeArchives_(true),
      description_(tags.getValue("DESC")),
      archive_(tags.getValue("ARCHIVE")) {}

LaunchScript::LaunchScript(const SString& command, bool captureOutput, bool includeArchives,
                           LaunchContext& context)
    : context_(context),
      command_(command),
      captureOutput_(captureOutput),
      includeArchives_(includeArchives) {}

/// The order is fixed: the value of a function may hold the macros of the later passes. The value
/// of an environment variable holds at most further variables, since its own pass goes through it
/// again.
SString LaunchScript::resolveCommand(JvmTags& jvm) {
  const ScopedValue<JvmTags*> inUse(jvm_, &jvm);
  SString command = command_;
  try {
    command = expandMacros(command, *this, kFunctionDelimiter);
    command = expandJVMMacros(jvm, command);
    return expandMacros(command, *this, kEnvironmentDelimiter);
  } catch (const EndlessMacro& error) {
    // The log gets the command from before the pass: by now it is too long to be read.
    launchScriptError(command, error.message(), context_.services.logSink);
  }
}

std::int32_t LaunchScript::execute(JvmTags& jvm, const StringDeque* passThroughArguments,
                                   bool javaConsole) {
  ChildCommand child;
  child.runInBackground = displayConsole_ || javaConsole;
  child.captureOutput = captureOutput_ && !child.runInBackground;
  return executeAs(jvm, passThroughArguments, std::move(child)).exitCode;
}

ChildResult LaunchScript::executeLimited(JvmTags& jvm, const ChildLimits& limits) {
  ChildCommand child;
  child.captureOutput = captureOutput_;
  child.emptyInput = true;
  child.limits = limits;
  return executeAs(jvm, nullptr, std::move(child));
}

/// Nothing of the environment changes before the command is known to be right.
ChildResult LaunchScript::executeAs(JvmTags& jvm, const StringDeque* passThroughArguments,
                                    ChildCommand child) {
  const RunServices& services = context_.services;
  services.throwIfCanceled();  // a cancelled run starts nothing more
  child.command = resolveCommand(jvm);
  child.workingDirectory = workingDirectory();
  if (passThroughArguments != nullptr) appendArguments(child.command, *passThroughArguments);
  services.log("Executing launch script command: " + child.command +
               (autoSetWorkingDir_ ? " in working directory " + child.workingDirectory
                                   : SString(" in current working directory")));
  const SString savedJavaHome = services.platform.getEnvironmentVariable(kJavaHome);
  services.platform.setEnvironmentVariable(kJavaHome, jvm.tag(jvmtag::kHome));
  if (isWizardMode(context_.modeByte.ownModeByte())) applyWizardEnvironment(jvm);
  const ChildResult result = runCommand(child);
  services.platform.setEnvironmentVariable(kJavaHome, savedJavaHome);
  if (result.startError != 0) {
    services.log("The shell could not be started:  " + systemErrorText(result.startError),
                 LogLevel::Error);
  }
  if (child.captureOutput) logOutput(result.end);
  return result;
}

void LaunchScript::handleMacro(MacroText& text, char delimiter, SString::Size end) {
  if (delimiter == kFunctionDelimiter) {
    handleFunction(text, end);
  } else if (delimiter == kEnvironmentDelimiter) {
    const SString name = macroName(text, end);
    text.replace(end + 1, context_.services.platform.getEnvironmentVariable(name));
  }
}

void LaunchScript::handleFunction(MacroText& text, SString::Size end) {
  LogSink& log = context_.services.logSink;
  const SString name = macroName(text, end);
  const MacroFunction* function = findMacroFunction(name);
  if (function == nullptr) {
    launchScriptError(text.whole(), "Invalid function name (" + name + ").", log);
  }
  StringDeque arguments;
  SString::Size position = end + 1;
  parseFunctionArguments(text, position, arguments, log);
  if (!function->accepts(arguments.count())) {
    launchScriptError(text.whole(), function->countMessage, log);
  }
  const SString archive = function->usesArchive ? expandArchive(text) : SString();
  const MacroCall call{context_, *jvm_, arguments, archive, includeArchives_};
  text.replace(position, function->evaluate(call));
}

/// The archive is a part of the class path and cannot have the class path as a part of its own.
SString LaunchScript::expandArchive(const MacroText& text) {
  if (expandingArchive_) {
    launchScriptError(text.whole(), "ARCHIVE cannot use the class path.",
                      context_.services.logSink);
  }
  const ScopedValue<bool> expanding(expandingArchive_, true);
  return expandMacros(archive_, *this, kFunctionDelimiter);
}

SString LaunchScript::workingDirectory() const {
  return autoSetWorkingDir_ ? runningDirectory(context_.launcherFileName) : SString();
}

/// In the order of the file, so that a later setting may replace an earlier one.
void LaunchScript::applyWizardEnvironment(const JvmTags& jvm) const {
  const StringDeque* settings = jvm.tags().findValues(jvmtag::kWizardEnvironment);
  if (settings == nullptr) return;
  for (const SString& setting : *settings) applySetting(setting, context_.services.platform);
}

ChildResult LaunchScript::runCommand(ChildCommand& child) {
  child.redirectChildOutput = true;
  child.stdoutText = &standardOutput_;
  child.stderrText = &standardError_;
  return context_.services.platform.executeCommand(child, context_.services.progress);
}

/// Of a program that was ended because it wrote without end, the beginning tells enough.
void LaunchScript::logOutput(ChildEnd end) const {
  const SString::Size most = end == ChildEnd::OutputLimit ? kMostOfEndlessOutput : SString::npos;
  const SString lines[] = {"Output from the launch script execution",
                           "StdOut:", standardOutput_.substr(0, most),
                           "ErrOut:", standardError_.substr(0, most)};
  for (const SString& line : lines) context_.services.log(line);
}

}  // namespace vessant
