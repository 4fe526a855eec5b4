#include "packer/ManifestOptions.h"

#include "packer/InstalledFiles.h"
#include "packer/PackageReader.h"
#include "packer/Text.h"
#include "packer/check/PackageCheck.h"
#include "packer/check/TagCheck.h"

namespace vessant {

void addManifestOptions(CLI::App& command, ManifestOptions& options) {
  command
      .add_option("-l,--launcher", options.launcher,
                  "Put this launcher in front, not the manifest's LAUNCHER nor vspack's own")
      ->type_name("FILE");
  command
      .add_option("-I,--include", options.directories,
                  "Look here, too, for files that are not beside the manifest")
      ->type_name("DIR")
      ->allow_extra_args(false);
}

Manifest readManifestWith(const ManifestOptions& options, const std::string& path,
                          const Session& session, Findings& findings) {
  SearchPath searchPath;
  for (const std::string& directory : options.directories) searchPath.push_back(sstr(directory));
  for (const std::string& directory : installedDirectories(session.program)) {
    searchPath.push_back(sstr(directory));
  }
  Manifest manifest = readManifest(path, searchPath, findings);
  if (!options.launcher.empty()) manifest.launcher = sstr(options.launcher);
  if (manifest.launcher.isEmpty()) manifest.launcher = sstr(installedLauncher(session.program));
  return manifest;
}

void checkManifest(const Manifest& manifest, const LaunchCheckOptions& checks, Findings& findings) {
  checkTags(manifest.text, TextKind::Manifest, {}, findings);
  if (!manifest.text.isReadable()) return;
  Package package = packageOf(manifest);
  checkPackage(package, checks, findings);
}

}  // namespace vessant
