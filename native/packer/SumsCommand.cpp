#include "packer/SumsCommand.h"

#include <memory>
#include <string>

#include "packer/Installer.h"
#include "packer/OnePass.h"
#include "packer/Structure.h"
#include "packer/Sums.h"

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

}  // namespace

void addSumsCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand(
      "sums", "Print SHA-256 sums as sha256sum does: of the installer, then of each file in it");
  const auto path = std::make_shared<std::string>();
  command->add_option("INSTALLER", *path, "The installer")->required();
  command->callback([path, &session] { session.status = sums(*path, session); });
}

}  // namespace vessant
