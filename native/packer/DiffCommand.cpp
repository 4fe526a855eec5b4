#include "packer/DiffCommand.h"

#include <memory>
#include <string>

#include "packer/Installer.h"
#include "packer/InstallerDiff.h"

namespace vessant {
namespace {

struct DiffOptions {
  std::string before;
  std::string after;
};

int diff(const DiffOptions& options, std::ostream& out) {
  const Installer before(options.before);
  const Installer after(options.after);
  before.requireIndex();
  after.requireIndex();
  const std::string text = diffInstallers(before, after);
  out << text;
  return text.empty() ? kFine : kFindings;
}

}  // namespace

void addDiffCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("diff", "Tell what changed between two installers");
  const auto options = std::make_shared<DiffOptions>();
  command->add_option("BEFORE", options->before, "An installer")->required();
  command->add_option("AFTER", options->after, "The installer to compare it with")->required();
  command->callback([options, &session] { session.status = diff(*options, session.out); });
}

}  // namespace vessant
