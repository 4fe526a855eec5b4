#include "packer/InfoCommand.h"

#include <memory>
#include <string>

#include "packer/FindingOptions.h"
#include "packer/Installer.h"
#include "packer/InstallerInfo.h"

namespace vessant {

void addInfoCommand(CLI::App& app, Session& session) {
  struct InfoOptions {
    std::string installer;
    bool json = false;
  };
  CLI::App* command = app.add_subcommand("info", "Tell what an installer is");
  const auto options = std::make_shared<InfoOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  addJsonOption(*command, options->json, "Write it as JSON");
  command->callback([options, &session] {
    const Installer installer(options->installer);
    installer.requireIndex();
    const InstallerInfo info = infoOf(installer);
    session.out << (options->json ? infoAsJson(info) : infoAsText(info));
  });
}

}  // namespace vessant
