#include "packer/VerifyCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "packer/CommandOptions.h"
#include "packer/ContentCheck.h"
#include "packer/Installer.h"
#include "packer/Structure.h"
#include "packer/Sums.h"
#include "packer/Text.h"

namespace vessant {
namespace {

int sums(const std::string& path, const Session& session) {
  const Installer installer(path);
  Findings findings;
  checkStructure(installer, findings);
  if (findings.hasErrors()) {
    printFindings(findings, session.err);
    return kTrouble;
  }
  OnePass pass(installer);
  for (const SumLine& sum : sumsOf(installer, pass)) session.out << lineOf(sum) << '\n';
  return kFine;
}

struct VerifyOptions {
  std::string installer;
  std::string sums;
  FindingOptions findings;
};

/// Texts, archives and sums, with each byte read once.
void verifyContents(const Installer& installer, const std::string& sumsFile, Findings& findings) {
  if (sumsFile.empty()) return checkContents(installer, {}, findings);
  const std::vector<SumLine> wanted = readSums(sumsFile, readTextInput(sumsFile), findings);
  OnePass pass(installer);
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
  if (!structure.hasErrors()) verifyContents(installer, options.sums, findings);
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
