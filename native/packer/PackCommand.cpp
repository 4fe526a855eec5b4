#include "packer/PackCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "launcher/base/PathUtil.h"
#include "packer/LauncherFileWriter.h"
#include "packer/Manifest.h"
#include "packer/NoLog.h"
#include "packer/Text.h"

namespace vessant {
namespace {

struct PackOptions {
  std::string manifest;
  std::string output;
  std::string launcher;
  std::vector<std::string> directories;
};

/// The launcher that was built and installed together with this packer.
SString launcherBeside(const std::string& program) {
  return joinPath(directoryOf(sstr(program)), "launcher");
}

int pack(const PackOptions& options, const Session& session) {
  NoLog log;
  SearchPath searchPath;
  for (const std::string& directory : options.directories) searchPath.push_back(sstr(directory));
  Manifest manifest = readManifest(sstr(options.manifest), searchPath, log);
  if (!options.output.empty()) manifest.output = sstr(options.output);
  if (!options.launcher.empty()) manifest.launcher = sstr(options.launcher);
  if (manifest.launcher.isEmpty()) manifest.launcher = launcherBeside(session.program);
  if (manifest.output.isEmpty()) {
    throw failure(options.manifest + ": there is no OUTPUT tag and no -o option");
  }
  writeLauncherFile(manifest, log);
  return kFine;
}

}  // namespace

void addPackCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("pack", "Write the installer that a manifest describes");
  const auto options = std::make_shared<PackOptions>();
  command->add_option("MANIFEST", options->manifest, "The manifest")->required();
  command->add_option("-o,--output", options->output, "Write this file, not the manifest's OUTPUT");
  command->add_option("-l,--launcher", options->launcher,
                      "Put this launcher in front, not the manifest's LAUNCHER nor the one next "
                      "to vspack");
  command
      ->add_option("-I,--include", options->directories,
                   "Look here, too, for files that are not beside the manifest")
      ->type_name("DIR")
      ->allow_extra_args(false);
  command->callback([options, &session] { session.status = pack(*options, session); });
}

}  // namespace vessant
