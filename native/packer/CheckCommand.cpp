#include "packer/CheckCommand.h"

#include <memory>
#include <string>

#include "packer/ByteSource.h"
#include "packer/CommandOptions.h"
#include "packer/Manifest.h"
#include "packer/PackageReader.h"
#include "packer/Structure.h"
#include "packer/Text.h"
#include "packer/check/Machine.h"
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

/// A program that carries nothing is neither an installer nor a text.
void checkFile(const std::string& path, const CheckOptions& options, const Session& session,
               Findings& findings) {
  constexpr std::size_t kElfHead = 64;
  if (path == kStandardStream) return checkManifestAt(path, options, session, findings);
  const Installer installer(path);
  if (installer.isInstaller()) return checkInstaller(installer, options, findings);
  if (!machineOf(installer.bytes().bytesAt(0, kElfHead)).empty()) {
    throw failure(printable(path) + ": is neither an installer nor a manifest");
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

}  // namespace vessant
