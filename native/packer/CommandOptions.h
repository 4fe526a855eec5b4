// The options that several commands share, and what they mean.
#pragma once

#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "packer/Finding.h"
#include "packer/Manifest.h"
#include "packer/Session.h"
#include "packer/check/LaunchCheck.h"

namespace vessant {

/// What a user says of findings.
struct FindingOptions {
  /// Names of findings that are not to be told. They do not count for the status, either.
  std::vector<std::string> allowed;
  /// Whether findings go to standard output for a machine, and not to standard error.
  bool json = false;
};

/// Adds `--allow NAME`, which may come again and again and takes known names only.
void addAllowOption(CLI::App& command, FindingOptions& options);
/// Adds `--json`.
void addJsonOption(CLI::App& command, bool& json, const char* help);

/// What the command line adds to a manifest.
struct ManifestOptions {
  /// Goes before the manifest's own; empty for none.
  std::string launcher;
  /// Searched behind the manifest's own directory, in this order.
  std::vector<std::string> directories;
};

/// What `pack` and `check` are told of a manifest. Adds `-l` and `-I`.
void addManifestOptions(CLI::App& command, ManifestOptions& options);

/// Reads the manifest at `path`, with what was installed along with vspack behind the directories
/// that the user named. The result always has a launcher. Mistakes are findings.
[[nodiscard]] Manifest readManifestWith(const ManifestOptions& options, const std::string& path,
                                        const Session& session, Findings& findings);

/// Reports everything else that can be known of the installer that the manifest describes. Throws
/// LauncherException when the launcher cannot be read.
void checkManifest(const Manifest& manifest, const LaunchCheckOptions& checks, Findings& findings);

}  // namespace vessant
