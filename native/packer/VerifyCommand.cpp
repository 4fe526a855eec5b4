#include "packer/VerifyCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "packer/ContentCheck.h"
#include "packer/FindingOptions.h"
#include "packer/Input.h"
#include "packer/Installer.h"
#include "packer/OnePass.h"
#include "packer/Structure.h"
#include "packer/Sums.h"
#include "packer/Text.h"

namespace vessant {
namespace {

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
