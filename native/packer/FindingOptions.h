// The options that every command with findings has.
#pragma once

#include <string>
#include <vector>

#include <CLI/App.hpp>

namespace vessant {

struct FindingOptions {
  std::vector<std::string> allowed;
  bool json = false;
};

/// Adds `--allow NAME`, which may come again and again and takes known names only.
void addAllowOption(CLI::App& command, FindingOptions& options);
/// Adds `--json`.
void addJsonOption(CLI::App& command, bool& json, const char* help);

}  // namespace vessant
