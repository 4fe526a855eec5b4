#include "launcher/driver/CommandLineParser.h"

namespace vessant {
namespace {

constexpr const char* kVersion = VESSANT_VERSION;  // the build's one number
constexpr const char* kSilentOption = "-silent";
constexpr const char* kLauncherSilentOption = "-vs:silent";
constexpr const char* kConsoleOption = "-console";

}  // namespace

// Compared from first to last. A value is taken as it stands, even when it looks like an option.
const CommandLineParser::Option CommandLineParser::kOptions[] = {
    {"-vs:log", true, &CommandLineParser::setLog, &CommandLineParser::missingLog},
    {"-vs:orig", true, &CommandLineParser::setOriginal, &CommandLineParser::missingOriginal},
    {"-vs:tempdir", true, &CommandLineParser::setTempDirectory, nullptr},
    {kLauncherSilentOption, false, &CommandLineParser::setSilent, nullptr},
    {kSilentOption, false, &CommandLineParser::setSilentAndPass, nullptr},
    {"-vs:javahome", true, &CommandLineParser::setJavaHome, nullptr},
    {"-vs:extract", false, &CommandLineParser::extract, nullptr},
    {"-vs:in", true, &CommandLineParser::loadInput, &CommandLineParser::missingInput},
    {"-vs:version", false, &CommandLineParser::showVersion, nullptr},
    {"-vs:javaconsole", false, &CommandLineParser::setJavaConsole, nullptr},
    {"-accessibility", false, &CommandLineParser::setConsoleAndPass, nullptr},
    {kConsoleOption, false, &CommandLineParser::setConsoleAndPass, nullptr},
    {"-cp:p", true, &CommandLineParser::setClassPathPrefix, nullptr},
    {"-cp:a", true, &CommandLineParser::setClassPathSuffix, nullptr},
};

CommandLineParser::Outcome CommandLineParser::parse(const StringDeque& arguments) {
  state_.originalLauncherCleanup = false;
  services_.console.setProgress(0);
  outcome_ = Outcome();
  silenceAskedFor_ = asksForSilence(arguments);
  for (std::int32_t i = 0; i < arguments.count(); ++i) applyAt(arguments, i);
  return outcome_;
}

const CommandLineParser::Option* CommandLineParser::findOption(const SString& argument) {
  for (const Option& option : kOptions) {
    if (argument == option.name) return &option;
  }
  return nullptr;
}

/// Applies the argument at `index`, which moves on to its value when it takes one.
void CommandLineParser::applyAt(const StringDeque& arguments, std::int32_t& index) {
  const SString& argument = arguments.get(index);
  const Option* option = findOption(argument);
  // Also a misspelt option: whether it is one, only the Java program can say.
  if (option == nullptr) return state_.passThroughArguments.add(argument);
  if (!option->takesValue) return (this->*option->apply)(argument);
  if (arguments.isValidIndex(index + 1)) return (this->*option->apply)(arguments.get(++index));
  if (option->applyMissing != nullptr) (this->*option->applyMissing)(argument);
}

/// Whether a silent option stands anywhere, but not as the value of another option.
bool CommandLineParser::asksForSilence(const StringDeque& arguments) {
  for (std::int32_t i = 0; i < arguments.count(); ++i) {
    const SString& argument = arguments.get(i);
    if (argument == kLauncherSilentOption || argument == kSilentOption) return true;
    const Option* option = findOption(argument);
    if (option != nullptr && option->takesValue) ++i;
  }
  return false;
}

void CommandLineParser::fail(const SString& message) {
  outcome_.result = kRunFailed;
  services_.console.showMessage(message);
}

void CommandLineParser::missingLog(const SString& /*value*/) {
  fail(services_.messages.errorText(ErrorId::MissingLogFileName));
}

void CommandLineParser::setOriginal(const SString& value) {
  state_.originalLauncherMode = true;
  state_.originalLauncherCleanup = true;
  state_.originalLauncherFileName = value;
}

void CommandLineParser::missingOriginal(const SString& /*value*/) {
  fail("Missing original launcher file name.");
}

void CommandLineParser::setSilent(const SString& /*value*/) {
  services_.console.setSilent(true);
}

void CommandLineParser::setSilentAndPass(const SString& value) {
  services_.console.setSilent(true);
  state_.passThroughArguments.add(value);
}

/// Whatever the script would do is off, unless an input file behind this option turns it on again.
void CommandLineParser::extract(const SString& /*value*/) {
  actions_.extractFiles();
  outcome_.runDefaultFlow = false;
}

void CommandLineParser::missingInput(const SString& /*value*/) {
  outcome_.runDefaultFlow = false;
  fail(services_.messages.errorText(ErrorId::MissingInputFileName));
}

/// A silent option counts for this line wherever it stands on the command line.
void CommandLineParser::showVersion(const SString& /*value*/) {
  if (!silenceAskedFor_) services_.console.showMessage(kVersion);
  outcome_.runDefaultFlow = false;
}

void CommandLineParser::setJavaConsole(const SString& /*value*/) {
  state_.javaConsole = true;
}

/// "-accessibility", too, reaches the Java program as "-console", the name that it knows.
void CommandLineParser::setConsoleAndPass(const SString& /*value*/) {
  state_.javaConsole = true;
  state_.passThroughArguments.add(kConsoleOption);
}

}  // namespace vessant
