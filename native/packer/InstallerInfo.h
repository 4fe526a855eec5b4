// What an installer is, for people and for machines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "packer/Installer.h"

namespace vessant {

/// One JVM file: a Java that the installer takes.
struct WantedJava {
  std::string file;
  std::string description;
  /// As written: name=value.
  std::vector<std::string> properties;
  bool searchesWholeDisk = false;
};

struct InstallerInfo {
  std::string path;
  std::uint64_t size = 0;
  /// In UTF-8.
  std::string title;
  /// Empty when it cannot be told.
  std::string launcherVersion;
  std::string launcherMachine;
  std::uint64_t launcherSize = 0;
  int mode = 0;
  std::vector<std::string> files;
  std::vector<WantedJava> javas;
  /// The names of the JVM installers.
  std::vector<std::string> bundledRuntimes;
  /// As written.
  std::string command;
  /// The statements, as written.
  std::vector<std::string> script;
};

/// Throws LauncherException when one of the texts cannot be read.
[[nodiscard]] InstallerInfo infoOf(const Installer& installer);

[[nodiscard]] std::string infoAsText(const InstallerInfo& info);
[[nodiscard]] std::string infoAsJson(const InstallerInfo& info);

}  // namespace vessant
