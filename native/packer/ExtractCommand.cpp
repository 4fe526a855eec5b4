#include "packer/ExtractCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "packer/EntryLookup.h"
#include "packer/Extraction.h"
#include "packer/Installer.h"
#include "packer/Structure.h"
#include "packer/UnpackedManifest.h"

namespace vessant {
namespace {

struct ExtractOptions {
  std::string installer;
  std::vector<std::string> names;
  std::string directory = ".";
  bool force = false;
};

/// Only the files that the user names.
void extractSome(const Installer& installer, const ExtractOptions& options,
                 const Session& session) {
  Extraction extraction(options.directory, options.force);
  for (const std::string& name : options.names)
    extraction.add(installer, requireEntry(installer, name));
  extraction.run(session);
}

/// All files, the launcher, and a manifest that packs them again.
void extractAll(const Installer& installer, const ExtractOptions& options, const Session& session) {
  const UnpackedManifest manifest(installer);
  Extraction extraction(options.directory, options.force);
  for (const FileIndexEntry& entry : installer.entries()) extraction.add(installer, entry);
  extraction.addBytes(manifest.launcherName(), installer.launcher(), true);
  extraction.addText(manifest.name(), manifest.text());
  extraction.run(session);
  if (manifest.makesSameBytes()) return;
  session.err << "vspack: " << manifest.name()
              << ": packs an installer that works the same, but whose files lie elsewhere\n";
}

int extract(const ExtractOptions& options, const Session& session) {
  const Installer installer(options.installer);
  installer.requireIndex();
  if (!options.names.empty()) {
    extractSome(installer, options, session);
    return kFine;
  }
  Findings findings;
  checkStructure(installer, findings);
  if (findings.hasErrors()) {
    printFindings(findings, session.err);
    return kTrouble;
  }
  extractAll(installer, options, session);
  return kFine;
}

}  // namespace

void addExtractCommand(CLI::App& app, Session& session) {
  CLI::App* command =
      app.add_subcommand("extract", "Write the files of an installer out, without running it");
  const auto options = std::make_shared<ExtractOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  command->add_option("NAME", options->names,
                      "Only files of these names or ids; without one also the launcher, and a "
                      "manifest that packs all of it again");
  command->add_option("-C,--directory", options->directory, "Write into this directory")
      ->type_name("DIR");
  command->add_flag("--force", options->force, "Replace files that are there already");
  command->callback([options, &session] { session.status = extract(*options, session); });
}

}  // namespace vessant
