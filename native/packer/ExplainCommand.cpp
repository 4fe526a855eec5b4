#include "packer/ExplainCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "packer/Installer.h"
#include "packer/Text.h"
#include "packer/explain/Explanation.h"

namespace vessant {
namespace {

struct ExplainOptions {
  std::string installer;
  std::string javaHome;
  std::vector<std::string> variables;
  std::vector<std::string> arguments;
  bool tries = false;
};

void setVariable(DryRun& run, const std::string& setting) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw failure("--env " + printable(setting) + ": write NAME=value");
  }
  run.platform.setEnvironmentVariable(sstr(setting.substr(0, equals)),
                                      sstr(setting.substr(equals + 1)));
}

void explainInstaller(const ExplainOptions& options, const Session& session) {
  Installer(options.installer).requireIndex();
  RunArguments arguments;
  readRunArguments(options.arguments, arguments);
  if (!options.javaHome.empty()) arguments.javaHome = sstr(options.javaHome);
  DryRun run(options.installer, arguments);
  for (const std::string& setting : options.variables) setVariable(run, setting);
  run.platform.runs = options.tries;
  run.files.extractsVerification = options.tries;
  explain(run, session.out);
}

}  // namespace

void addExplainCommand(CLI::App& app, Session& session) {
  CLI::App* command =
      app.add_subcommand("explain", "Tell what an installer would do here, without running it");
  const auto options = std::make_shared<ExplainOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  command->add_option("--java-home", options->javaHome, "As -vs:javahome of the installer")
      ->type_name("DIR");
  command->add_option("--env", options->variables, "With this environment variable")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command->add_flag("--try", options->tries,
                    "Run the verification of each Java home and show what it answers");
  command->add_option("ARGS", options->arguments, "Arguments of the installer, behind --");
  command->callback([options, &session] { explainInstaller(*options, session); });
}

}  // namespace vessant
