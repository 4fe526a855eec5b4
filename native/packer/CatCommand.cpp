#include "packer/CatCommand.h"

#include <memory>
#include <string>

#include "packer/EntryLookup.h"
#include "packer/Installer.h"
#include "packer/Text.h"

namespace vessant {
namespace {

struct CatOptions {
  std::string installer;
  std::string name;
};

void cat(const CatOptions& options, std::ostream& out) {
  const Installer installer(options.installer);
  installer.requireIndex();
  installer.bytesOf(requireEntry(installer, options.name)).forEachBlock([&out](auto block) {
    if (out.write(block.data(), static_cast<std::streamsize>(block.size()))) return;
    throw failure("standard output: " + str(systemErrorText()));
  });
}

}  // namespace

void addCatCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("cat", "Write one file of an installer out");
  const auto options = std::make_shared<CatOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  command->add_option("NAME", options->name, "The file's name or id")->required();
  command->callback([options, &session] { cat(*options, session.out); });
}

}  // namespace vessant
