#include "packer/VerifyCommand.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "packer/CommandOptions.h"
#include "packer/Installer.h"
#include "packer/InstallerCheck.h"
#include "packer/Sums.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// The progress is gone from the terminal before there is a result to show.
std::vector<SumLine> sumsWithProgress(const Installer& installer, const Session& session) {
  Progress progress(session, "summing up " + printable(installer.path()), installer.size());
  OnePass pass(installer, [&progress](std::uint64_t count) { progress.advance(count); });
  return sumsOf(installer, pass);
}

int sums(const std::string& path, const Session& session) {
  const Installer installer(path);
  Findings findings;
  checkStructure(installer, findings);
  if (findings.hasErrors()) {
    printFindings(findings, session.err);
    return kTrouble;
  }
  for (const SumLine& sum : sumsWithProgress(installer, session)) {
    session.out << lineOf(sum) << '\n';
  }
  return kFine;
}

struct VerifyOptions {
  std::string installer;
  std::string sums;
  FindingOptions findings;
};

/// Texts, archives and sums, with each byte read once.
void verifyContents(const Installer& installer, const std::string& sumsFile, Progress& progress,
                    Findings& findings) {
  const auto advance = [&progress](std::uint64_t count) { progress.advance(count); };
  if (sumsFile.empty()) {
    const auto watch = [&advance](std::uint64_t, std::string_view bytes) { advance(bytes.size()); };
    return checkContents(installer, watch, findings);
  }
  const std::vector<SumLine> wanted = readSums(sumsFile, readTextInput(sumsFile), findings);
  OnePass pass(installer, advance);
  const auto watch = [&pass](std::uint64_t position, std::string_view bytes) {
    pass.offer(position, bytes);
  };
  checkContents(installer, watch, findings);
  compareSums(installer, sumsOf(installer, pass), sumsFile, wanted, findings);
}

int verify(const VerifyOptions& options, const Session& session) {
  const Installer installer(options.installer);
  Findings findings(options.findings.allowed);
  Findings structure;
  checkStructure(installer, structure);
  checkStructure(installer, findings);
  if (!structure.hasErrors()) {
    Progress progress(session, "verifying " + printable(installer.path()), installer.size());
    verifyContents(installer, options.sums, progress, findings);
  }
  if (options.findings.json) {
    printFindingsAsJson(findings, session.out);
  } else {
    printFindings(findings, session.err);
    if (findings.isEmpty()) session.out << printable(options.installer) << ": OK\n";
  }
  return findings.hasErrors() ? kFindings : kFine;
}

}  // namespace

void addSumsCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand(
      "sums", "Print SHA-256 sums as sha256sum does: of the installer, then of each file in it");
  const auto path = std::make_shared<std::string>();
  command->add_option("INSTALLER", *path, "The installer")->required();
  command->callback([path, &session] { session.status = sums(*path, session); });
}

void addVerifyCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("verify", "Check that an installer is whole");
  const auto options = std::make_shared<VerifyOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  command
      ->add_option("--sums", options->sums,
                   "Compare with what vspack sums wrote into this file; - reads standard input")
      ->type_name("FILE");
  addAllowOption(*command, options->findings);
  addJsonOption(*command, options->findings.json, "Write the findings to standard output as JSON");
  command->callback([options, &session] { session.status = verify(*options, session); });
}

}  // namespace vessant
