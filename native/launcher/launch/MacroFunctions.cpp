#include "launcher/launch/MacroFunctions.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/launch/JavaArguments.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

/// The search goes on behind the inserted text, so a replacement that holds the search text is not
/// replaced again. An empty search text replaces nothing.
SString replaceAll(const MacroCall& call) {
  const SString search = expandJVMMacros(call.jvm, call.arguments.get(0));
  const SString replacement = expandJVMMacros(call.jvm, call.arguments.get(1));
  SString text = call.arguments.get(2);
  if (search.isEmpty()) return text;
  SString result;
  SString::Size start = 0;
  for (auto found = text.find(search); found != SString::npos; found = text.find(search, start)) {
    result.append(text, start, found - start).append(replacement);
    start = found + search.length();
  }
  return result.append(text, start, SString::npos);
}

SString runtimeSystemProp(const MacroCall& call) {
  return runtimeSystemProperties(call.context.originalLauncherFileName, call.jvm);
}

SString runtimeJavaArgs(const MacroCall& call) {
  return runtimeJavaArguments(call.context.originalLauncherFileName, call.jvm);
}

SString systemProp(const MacroCall& call) {
  return systemProperty(call.arguments.get(0), call.arguments.get(1), call.jvm);
}

/// Hands the class path to the program in an environment variable.
void setClassPathVariable(const MacroCall& call, const SString& classPath) {
  const RunServices& services = call.context.services;
  const SString name = call.jvm.tag(jvmtag::kClassPathVariable);
  if (name.isEmpty()) {
    services.log(
        "If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file should also define "
        "CP_ENV_VAR.",
        LogLevel::Error);
    return;
  }
  services.platform.setEnvironmentVariable(name, classPath);
  services.log("Set env var " + name + " to " + classPath + "\n");
}

SString classPath(const MacroCall& call) {
  const ClassPathBuilder builder(call.context, call.jvm);
  const SString path = builder.build(call.arguments, call.archive, call.includeArchives);
  if (builder.usesEnvironment()) {
    setClassPathVariable(call, path);
    return "";
  }
  return path.isEmpty() ? path : call.jvm.tag(jvmtag::kClassPathOption) + path;
}

SString ifExists(const MacroCall& call) {
  if (call.jvm.tag(call.arguments.get(0)).isEmpty()) return "";
  return expandJVMMacros(call.jvm, call.arguments.get(1));
}

SString launcherFile(const MacroCall& call) {
  return call.context.launcherFileName;
}

SString launcherDir(const MacroCall& call) {
  return directoryOf(call.context.originalLauncherFileName);
}

SString applicationArchive(const MacroCall& call) {
  if (call.arguments.isEmpty()) return embeddedApplicationArchive(call.context);
  return copiedApplicationArchive(call.context, call.arguments.get(0));
}

SString tempDir(const MacroCall& call) {
  SString root = call.context.tempFiles.getTempRoot();
  if (root.view().ends_with('\\')) root.erase(root.length() - 1);
  return root;
}

constexpr const char* kNoMessage = "";

// In the order of comparison. The messages' two wordings, and the one of APPLICATION_ARCHIVE, which
// takes an argument after all, are kept: authors know them.
constexpr MacroFunction kFunctions[] = {
    {"REPLACE", 3, 3, "REPLACE function requires 3 arguments.", false, replaceAll},
    {"RUNTIME_SYSTEMPROP", 0, 0, "RUNTIME_SYSTEMPROP function takes no arguments.", false,
     runtimeSystemProp},
    {"RUNTIME_JAVAARGS", 0, 0, "RUNTIME_JAVAARGS function takes no arguments.", false,
     runtimeJavaArgs},
    {"SYSTEMPROP", 2, 2, "SYSTEMPROP function requires 2 arguments.", false, systemProp},
    {"CP", 0, MacroFunction::kAnyCount, kNoMessage, true, classPath},
    {"IF_EXISTS", 2, 2, "IF_EXISTS function requires 2 arguments.", false, ifExists},
    {"LAUNCHER_FILE", 0, 0, "LAUNCHER_FILE function takes 0 arguments.", false, launcherFile},
    {"LAUNCHER_DIR", 0, 0, "LAUNCHER_DIR function takes 0 arguments.", false, launcherDir},
    {"APPLICATION_ARCHIVE", 0, 1, "APPLICATION_ARCHIVE function takes 0 arguments.", false,
     applicationArchive},
    {"TEMP_DIR", 0, 0, "TEMP_DIR function takes 0 arguments.", false, tempDir},
};

/// Three states and the end. An error names the place where the step that failed began, ahead of
/// the whitespace in front of what is wrong: that is where the author stopped writing.
class ArgumentListParser {
 public:
  ArgumentListParser(const MacroText& text, SString::Size position, StringDeque& arguments,
                     LogSink& log)
      : text_(text),
        rest_(text.rest()),
        position_(position),
        mark_(position),
        arguments_(arguments),
        log_(log) {}

  SString::Size parse();

 private:
  enum class State { BeforeList, ExpectingArgument, AfterArgument, Done };

  void step();
  void stepBeforeList(char character);
  void stepExpectingArgument(char character);
  void stepAfterArgument(char character);
  [[noreturn]] void fail(const char* message) const;

  const MacroText& text_;
  const std::string_view rest_;
  SString::Size position_;
  SString::Size mark_;  // where the current step began
  StringDeque& arguments_;
  LogSink& log_;
  State state_ = State::BeforeList;
};

SString::Size ArgumentListParser::parse() {
  while (position_ != SString::npos && state_ != State::Done) {
    step();
    mark_ = position_;
  }
  return position_;
}

void ArgumentListParser::step() {
  while (position_ < rest_.size() && isSpaceChar(rest_[position_])) ++position_;
  // A text that has ended looks like a character that no state accepts.
  const char character = position_ < rest_.size() ? rest_[position_] : '\0';
  if (state_ == State::BeforeList) {
    stepBeforeList(character);
  } else if (state_ == State::ExpectingArgument) {
    stepExpectingArgument(character);
  } else {
    stepAfterArgument(character);
  }
}

void ArgumentListParser::stepBeforeList(char character) {
  if (character != '(') fail("Expected left parenthesis.");
  ++position_;
  state_ = State::ExpectingArgument;
}

void ArgumentListParser::stepExpectingArgument(char character) {
  if (character != '"' && character != ')') fail("Expected string arg.");
  ++position_;
  if (character == ')') {
    state_ = State::Done;
    return;
  }
  SString argument;
  nextArgument(argument, rest_, position_, ArgumentForm::Quoted, text_.position());
  arguments_.add(argument);
  state_ = State::AfterArgument;
}

void ArgumentListParser::stepAfterArgument(char character) {
  if (character != ',' && character != ')') fail("Expected right parenthesis.");
  ++position_;
  state_ = character == ',' ? State::ExpectingArgument : State::Done;
}

void ArgumentListParser::fail(const char* message) const {
  const auto mark = static_cast<std::int32_t>(text_.position() + mark_);
  launchScriptError(text_.whole(),
                    SString(message) + " (near character " + longToString(mark) + ")", log_);
}

}  // namespace

const MacroFunction* findMacroFunction(const SString& name) {
  for (const MacroFunction& function : kFunctions) {
    if (name == function.name) return &function;
  }
  return nullptr;
}

void parseFunctionArguments(const MacroText& text, SString::Size& position, StringDeque& arguments,
                            LogSink& log) {
  position = ArgumentListParser(text, position, arguments, log).parse();
}

void launchScriptError(const SString& command, const SString& message, LogSink& log) {
  log.log("Launch command:", LogLevel::Information);
  log.log(command, LogLevel::Information);
  throw LauncherException("Launch script error: " + message);
}

}  // namespace vessant
