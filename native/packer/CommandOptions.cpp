#include "packer/CommandOptions.h"

#include <algorithm>
#include <filesystem>

#include "packer/Session.h"
#include "packer/Text.h"
#include "packer/check/Package.h"
#include "packer/check/PackageCheck.h"
#include "packer/check/TagCheck.h"

namespace vessant {
namespace {

/// The reason why a name is refused; empty for a known one.
std::string checkName(const std::string& name) {
  const std::vector<std::string>& names = findingNames();
  if (std::find(names.begin(), names.end(), name) != names.end()) return "";
  return "there is no finding " + quotedName(name) + suggestion(name, names);
}

/// A directory that is misspelt would be searched in vain, and the error name a file.
std::string whyNoDirectory(const std::string& path) {
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown)) return "";
  return printable(path) + " is no directory";
}

bool isSameFile(const SString& a, const SString& b) {
  std::error_code unknown;
  return std::filesystem::equivalent(a.cString(), b.cString(), unknown);
}

/// Packing would replace what it is made of.
void checkOutput(const Manifest& manifest, Findings& findings) {
  const TextTag* tag = manifest.text.find("OUTPUT");
  const auto check = [&](const SString& input) {
    if (manifest.output.isEmpty() || !isSameFile(manifest.output, input)) return;
    findings.error(manifest.text.file(), tag == nullptr ? 1 : tag->line, "output-is-input",
                   "packing would replace " + quotedName(str(input)) +
                       ", which it reads: give the installer another name");
  };
  for (const PackedFile& file : manifest.files) check(file.path);
  check(manifest.launcher);
  check(sstr(manifest.text.file()));
}

}  // namespace

void addAllowOption(CLI::App& command, FindingOptions& options) {
  command.add_option("--allow", options.allowed, "Turn findings of this name off")
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->check(checkName);
}

void addJsonOption(CLI::App& command, bool& json, const char* help) {
  command.add_flag("--json", json, help);
}

void addManifestOptions(CLI::App& command, ManifestOptions& options) {
  command
      .add_option("-l,--launcher", options.launcher,
                  "Put this launcher in front, not the manifest's LAUNCHER nor vspack's own")
      ->type_name("FILE");
  command
      .add_option("-I,--include", options.directories,
                  "Look here, too, for files that are not beside the manifest")
      ->type_name("DIR")
      ->allow_extra_args(false)
      ->check(whyNoDirectory);
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
  checkOutput(manifest, findings);
  Package package = packageOf(manifest);
  checkPackage(package, checks, findings);
}

}  // namespace vessant
