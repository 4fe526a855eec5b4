#include "launcher/driver/CommandLineParser.h"

namespace vessant {
namespace {

constexpr const char* kVersion = "2.52";
constexpr const char* kSilentOption = "-silent";
constexpr const char* kLauncherSilentOption = "-vs:silent";
constexpr const char* kConsoleOption = "-console";

}  // namespace

// In the order of comparison.
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

DriverOutcome CommandLineParser::parse(const StringDeque& arguments) {
  state_.originalLauncherCleanup = false;
  console_.setProgress(0);
  outcome_ = DriverOutcome();
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
  console_.showMessage(message);
}

void CommandLineParser::setLog(const SString& value) {
  state_.logFileName = value;
}

void CommandLineParser::missingLog(const SString& /*value*/) {
  fail(messages_.errorText(ErrorId::MissingLogFileName));
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
  state_.silent = true;
}

void CommandLineParser::setSilentAndPass(const SString& value) {
  state_.silent = true;
  state_.passThroughArguments.add(value);
}

void CommandLineParser::extract(const SString& /*value*/) {
  actions_.extractFiles();
  outcome_.runDefaultFlow = false;
}

void CommandLineParser::loadInput(const SString& value) {
  actions_.loadInputFile(value, outcome_);
}

void CommandLineParser::missingInput(const SString& /*value*/) {
  outcome_.runDefaultFlow = false;
  fail(messages_.errorText(ErrorId::MissingInputFileName));
}

/// A silent option counts for this line wherever it stands on the command line.
void CommandLineParser::showVersion(const SString& /*value*/) {
  if (!silenceAskedFor_) console_.showMessage(kVersion);
  outcome_.runDefaultFlow = false;
}

void CommandLineParser::setJavaConsole(const SString& /*value*/) {
  state_.javaConsole = true;
}

void CommandLineParser::setConsoleAndPass(const SString& /*value*/) {
  state_.javaConsole = true;
  state_.passThroughArguments.add(kConsoleOption);
}

}  // namespace vessant
