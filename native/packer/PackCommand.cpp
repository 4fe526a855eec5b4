#include "packer/PackCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "packer/FindingOptions.h"
#include "packer/Input.h"
#include "packer/InstalledFiles.h"
#include "packer/LauncherFileWriter.h"
#include "packer/Manifest.h"
#include "packer/Text.h"

namespace vessant {
namespace {

struct PackOptions {
  std::string manifest;
  std::string output;
  std::string launcher;
  std::vector<std::string> directories;
  bool noAlign = false;
  FindingOptions findings;
};

Manifest readPackedManifest(const PackOptions& options, const Session& session,
                            Findings& findings) {
  std::vector<std::string> directories = options.directories;
  for (const std::string& installed : installedDirectories(session.program)) {
    directories.push_back(installed);
  }
  SearchPath searchPath;
  for (const std::string& directory : directories) searchPath.push_back(sstr(directory));
  Manifest manifest = readManifest(manifestAt(options.manifest), searchPath, findings);
  if (!options.output.empty()) manifest.output = sstr(options.output);
  if (!options.launcher.empty()) manifest.launcher = sstr(options.launcher);
  if (manifest.launcher.isEmpty()) manifest.launcher = sstr(installedLauncher(session.program));
  if (options.noAlign) manifest.align = false;
  return manifest;
}

int pack(const PackOptions& options, const Session& session) {
  Findings findings(options.findings.allowed);
  const Manifest manifest = readPackedManifest(options, session, findings);
  if (manifest.output.isEmpty()) {
    findings.error(manifest.path, 1, "no-output", "there is no OUTPUT tag and no -o option");
  }
  if (findings.hasErrors()) {
    printFindings(findings, session.err);
    return kFindings;
  }
  const LauncherFileWriter writer(manifest, findings);
  printFindings(findings, session.err);
  if (findings.hasErrors()) return kFindings;
  writer.write(session);
  return kFine;
}

}  // namespace

void addPackCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("pack", "Write the installer that a manifest describes");
  const auto options = std::make_shared<PackOptions>();
  command
      ->add_option("MANIFEST", options->manifest,
                   "The manifest, or the directory with the only one; - reads standard input")
      ->required();
  command->add_option("-o,--output", options->output, "Write this file, not the manifest's OUTPUT")
      ->type_name("FILE");
  command
      ->add_option("-l,--launcher", options->launcher,
                   "Put this launcher in front, not the manifest's LAUNCHER nor vspack's own")
      ->type_name("FILE");
  command
      ->add_option("-I,--include", options->directories,
                   "Look here, too, for files that are not beside the manifest")
      ->type_name("DIR")
      ->allow_extra_args(false);
  command->add_flag("--no-align", options->noAlign, "Let large files begin anywhere");
  addAllowOption(*command, options->findings);
  command->callback([options, &session] { session.status = pack(*options, session); });
}

}  // namespace vessant
