#include "packer/ManifestCommands.h"

#include <memory>
#include <string>

#include "packer/ByteSource.h"
#include "packer/CommandOptions.h"
#include "packer/InstallerCheck.h"
#include "packer/LauncherFileWriter.h"
#include "packer/Manifest.h"
#include "packer/Text.h"
#include "packer/check/Machine.h"
#include "packer/check/Package.h"
#include "packer/check/PackageCheck.h"

namespace vessant {
namespace {

struct CheckOptions {
  std::string subject;
  ManifestOptions manifest;
  LaunchCheckOptions checks;
  FindingOptions findings;
};

void checkInstaller(const Installer& installer, const CheckOptions& options, Findings& findings) {
  checkStructure(installer, findings);
  Package package = packageOf(installer, findings);
  checkPackage(package, options.checks, findings);
}

void checkManifestAt(const std::string& path, const CheckOptions& options, const Session& session,
                     Findings& findings) {
  const Manifest manifest = readManifestWith(options.manifest, path, session, findings);
  checkManifest(manifest, options.checks, findings);
}

/// Whether a file is a program, which no manifest is.
bool isProgram(const std::string& path) {
  constexpr std::size_t kElfHead = 64;
  return path != kStandardStream && !machineOf(ByteSource(path).bytesAt(0, kElfHead)).empty();
}

/// A program that carries nothing is neither an installer nor a text.
void checkFile(const std::string& path, const CheckOptions& options, const Session& session,
               Findings& findings) {
  if (path == kStandardStream) return checkManifestAt(path, options, session, findings);
  const Installer installer(path);
  if (installer.isInstaller()) return checkInstaller(installer, options, findings);
  if (isProgram(path)) {
    throw failure(printable(path) +
                  ": is neither an installer, which carries files, nor a manifest");
  }
  checkManifestAt(path, options, session, findings);
}

int check(const CheckOptions& options, const Session& session) {
  Findings findings(options.findings.allowed);
  checkFile(manifestAt(options.subject), options, session, findings);
  if (options.findings.json) {
    printFindingsAsJson(findings, session.out);
  } else {
    printFindings(findings, session.err);
  }
  return findings.isEmpty() ? kFine : kFindings;
}

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
  if (isProgram(path)) throw failure(printable(path) + ": is a program and no manifest");
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

void addCheckCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand(
      "check", "Find what is wrong with an installer, before it is packed or after");
  const auto options = std::make_shared<CheckOptions>();
  command->add_option("SUBJECT", options->subject, "A manifest, its directory or an installer")
      ->required();
  command->add_flag("--strict", options->checks.strict,
                    "Tell, too, of what is right but can be abused");
  addManifestOptions(*command, options->manifest);
  addAllowOption(*command, options->findings);
  addJsonOption(*command, options->findings.json, "Write the findings as JSON, to standard output");
  command->callback([options, &session] { session.status = check(*options, session); });
}

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
