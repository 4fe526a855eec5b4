#include "packer/CheckCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "launcher/base/PathUtil.h"
#include "packer/FindingOptions.h"
#include "packer/Manifest.h"
#include "packer/NoLog.h"
#include "packer/PackageReader.h"
#include "packer/Text.h"
#include "packer/check/Machine.h"
#include "packer/check/PackageCheck.h"
#include "packer/check/TagCheck.h"

namespace vessant {
namespace {

struct CheckOptions {
  std::string subject;
  std::string launcher;
  std::vector<std::string> directories;
  LaunchCheckOptions checks;
  FindingOptions findings;
};

/// The launcher that was built and installed together with this packer.
std::string launcherBeside(const std::string& program) {
  return str(joinPath(directoryOf(sstr(program)), "launcher"));
}

void checkInstaller(const Installer& installer, const CheckOptions& options, Findings& findings) {
  installer.requireIndex();
  Package package = packageOf(installer, findings);
  checkPackage(package, options.checks, findings);
}

void checkManifest(const std::string& path, const CheckOptions& options, const Session& session,
                   Findings& findings) {
  const ByteSource bytes(path);
  const TagText text = readTagText(path, bytes.text(), TextKind::Manifest, findings);
  checkTags(text, TextKind::Manifest, {}, findings);
  if (!text.isReadable()) return;
  NoLog log;
  SearchPath searchPath;
  for (const std::string& directory : options.directories) searchPath.push_back(sstr(directory));
  const Manifest manifest = readManifest(sstr(path), searchPath, log);
  std::string launcher = options.launcher;
  if (launcher.empty()) launcher = str(manifest.launcher);
  if (launcher.empty()) launcher = launcherBeside(session.program);
  Package package = packageOf(manifest, text, launcher);
  checkPackage(package, options.checks, findings);
}

/// A program that carries nothing is neither an installer nor a text.
void checkFile(const std::string& path, const CheckOptions& options, const Session& session,
               Findings& findings) {
  const Installer installer(path);
  if (installer.isInstaller()) return checkInstaller(installer, options, findings);
  if (!machineOf(installer.bytes().bytesAt(0, 64)).empty()) {
    throw failure(printable(path) + ": is neither an installer nor a manifest");
  }
  checkManifest(path, options, session, findings);
}

int check(const CheckOptions& options, const Session& session) {
  Findings findings(options.findings.allowed);
  checkFile(options.subject, options, session, findings);
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
  command->add_option("-l,--launcher", options->launcher,
                      "The launcher that will stand in front, as for pack");
  command
      ->add_option("-I,--include", options->directories,
                   "Look here, too, for files that are not beside the manifest")
      ->type_name("DIR")
      ->allow_extra_args(false);
  addAllowOption(*command, options->findings);
  addJsonOption(*command, options->findings.json, "Write the findings as JSON, to standard output");
  command->callback([options, &session] { session.status = check(*options, session); });
}

}  // namespace vessant
