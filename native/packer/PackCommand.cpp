#include "packer/PackCommand.h"

#include <memory>
#include <string>

#include "packer/CommandOptions.h"
#include "packer/LauncherFileWriter.h"
#include "packer/Manifest.h"
#include "packer/Text.h"

namespace vessant {
namespace {

struct PackOptions {
  std::string path;
  std::string output;
  ManifestOptions manifest;
  bool noAlign = false;
  FindingOptions findings;
};

/// The manifest with what the command line changes of it, after all checks.
Manifest readCheckedManifest(const PackOptions& options, const Session& session,
                             Findings& findings) {
  const std::string path = manifestAt(options.path);
  Manifest manifest = readManifestWith(options.manifest, path, session, findings);
  if (!options.output.empty()) manifest.output = sstr(options.output);
  if (options.noAlign) manifest.align = false;
  if (manifest.output.isEmpty()) {
    findings.error(path, 1, "no-output", "there is no OUTPUT tag and no -o option");
  }
  checkManifest(manifest, {}, findings);
  return manifest;
}

int pack(const PackOptions& options, const Session& session) {
  Findings findings(options.findings.allowed);
  const Manifest manifest = readCheckedManifest(options, session, findings);
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
      ->add_option("MANIFEST", options->path,
                   "The manifest, or the directory with the only one; - reads standard input")
      ->required();
  command->add_option("-o,--output", options->output, "Write this file, not the manifest's OUTPUT")
      ->type_name("FILE");
  addManifestOptions(*command, options->manifest);
  command->add_flag("--no-align", options->noAlign, "Let large files begin anywhere");
  addAllowOption(*command, options->findings);
  command->callback([options, &session] { session.status = pack(*options, session); });
}

}  // namespace vessant
