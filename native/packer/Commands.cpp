#include "packer/Commands.h"

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "launcher/base/Exceptions.h"
#include "packer/DiffCommand.h"
#include "packer/ExtractCommand.h"
#include "packer/InfoCommand.h"
#include "packer/ManifestCommands.h"
#include "packer/ProjectCommands.h"
#include "packer/Text.h"
#include "packer/VerifyCommand.h"
#include "packer/explain/ExplainCommand.h"

namespace vessant {
namespace {

using AddCommand = void (*)(CLI::App& app, Session& session);

/// All commands, in the order in which `--help` lists them.
// clang-format off
constexpr AddCommand kCommands[] = {
    addInitCommand,
    addPackCommand,
    addCheckCommand,
    addListCommand,
    addInfoCommand,
    addExtractCommand,
    addCatCommand,
    addVerifyCommand,
    addSumsCommand,
    addDiffCommand,
    addExplainCommand,
    addJvmCommand,
    addBundleJvmCommand,
};
// clang-format on

/// A call that makes no sense.
struct WrongCall {
  std::string text;
};

std::vector<std::string> commandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

/// The names of all options, with their dashes.
std::vector<std::string> optionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
  }
  return names;
}

/// The first word must be a command or an option of vspack itself.
void checkCommandWord(const CLI::App& app, const std::vector<std::string>& words) {
  if (words.empty()) throw WrongCall{"a command is missing; vspack --help lists them"};
  const std::string& word = words.front();
  const std::vector<std::string> known =
      word.starts_with('-') ? optionNames(app) : commandNames(app);
  for (const std::string& name : known) {
    if (name == word) return;
  }
  const char* kind = word.starts_with('-') ? "option" : "command";
  const std::string meant = suggestion(word, known);
  throw WrongCall{"there is no " + std::string(kind) + " " + quotedName(word) +
                  (meant.empty() ? "; vspack --help lists them" : meant)};
}

/// vspack itself as long as no command was read.
const CLI::App& chosenCommand(const CLI::App& app) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  return chosen.empty() ? app : *chosen.front();
}

/// An option is likelier to be misspelt than an argument to be one too many.
std::string unexpectedText(const CLI::App& app) {
  const CLI::App& command = chosenCommand(app);
  for (const std::string& word : app.remaining(true)) {
    if (word.starts_with('-')) {
      return "there is no option " + quotedName(word) + suggestion(word, optionNames(command));
    }
  }
  const std::vector<std::string> rest = app.remaining(true);
  return rest.empty() ? "there are too many arguments"
                      : quotedName(rest.front()) + " is one argument too many";
}

/// An option that is misspelt is not one that is missing.
void checkOptionWords(const CLI::App& app, const std::vector<std::string>& words) {
  const std::vector<std::string> known = optionNames(chosenCommand(app));
  for (const std::string& word : words) {
    if (word == "--") return;
    const std::string name = word.substr(0, word.find('='));
    const bool isKnown = std::find(known.begin(), known.end(), name) != known.end();
    if (!word.starts_with("--") || isKnown) continue;
    throw WrongCall{"there is no option " + quotedName(word) + suggestion(name, known)};
  }
}

/// What CLI11 says of a call, with the way to the right one.
std::string wrongCallText(const CLI::App& app, const CLI::ParseError& error) {
  const CLI::App& command = chosenCommand(app);
  std::string text = error.what();
  const std::size_t number = text.find(" required ");
  const bool isValueMissing = number != std::string::npos && text.ends_with(" missing");
  if (isValueMissing) text = text.substr(0, text.find(':')) + " needs a value";
  const std::string help =
      &command == &app ? "vspack --help" : "vspack " + command.get_name() + " --help";
  return text + "; " + help + " tells how it is called";
}

void describe(CLI::App& app, Session& session) {
  app.name("vspack");
  app.set_version_flag("--version", "vspack " VESSANT_VERSION);
  app.set_help_flag("-h,--help", "Show this help");
  app.require_subcommand(1);
  for (const AddCommand add : kCommands) add(app, session);
}

/// CLI11's own exceptions leave here as help, version or WrongCall.
void parse(CLI::App& app, const std::vector<std::string>& words, Session& session) {
  try {
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::CallForHelp&) {
    session.out << app.help();  // that of the chosen command
  } catch (const CLI::CallForVersion& version) {
    session.out << version.what() << '\n';
  } catch (const CLI::ExtrasError&) {
    throw WrongCall{unexpectedText(app)};
  } catch (const CLI::ParseError& error) {
    checkOptionWords(app, words);
    throw WrongCall{wrongCallText(app, error)};
  }
}

void parseAndRun(const std::vector<std::string>& words, Session& session) {
  CLI::App app("Makes, checks and opens installers for Java programs.");
  describe(app, session);
  checkCommandWord(app, words);
  parse(app, words, session);
  session.out.flush();
  if (!session.out) throw failure("standard output: " + str(systemErrorText()));
}

}  // namespace

int runPacker(int argumentCount, const char* const* arguments, Session& session) {
  const std::vector<std::string> words(arguments + std::min(argumentCount, 1),
                                       arguments + argumentCount);
  try {
    parseAndRun(words, session);
    return session.status;
  } catch (const WrongCall& wrong) {
    session.err << "vspack: " << wrong.text << '\n';
  } catch (const LauncherException& error) {
    session.err << "vspack: " << str(error.message()) << '\n';
  } catch (const std::exception& error) {
    session.err << "vspack: " << error.what() << '\n';
  }
  return kTrouble;
}

}  // namespace vessant
