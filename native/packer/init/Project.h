// A new installer, as `vspack init` is asked for one.
#pragma once

#include <string>

#include "packer/init/ApplicationJar.h"
#include "packer/jvm/JavaRange.h"

namespace vessant {

/// Where the program's Java comes from.
enum class JavaSource {
  /// The user's machine.
  Found,
  /// The installer brings it.
  Bundled,
  /// The user's machine, and where there is none the installer.
  FoundOrBundled,
};

struct Project {
  /// What its files are called: safe in a shell, without extension.
  std::string name;
  /// As the author writes it, in UTF-8.
  std::string title;
  ApplicationJar jar;
  JavaRange range = {};
  JavaSource javaSource = JavaSource::Found;
};

/// The names of what is packed from it, and of its two large files.
[[nodiscard]] std::string installerNameOf(const Project& project);
[[nodiscard]] std::string jarNameOf(const Project& project);
[[nodiscard]] std::string runtimeNameOf(const Project& project);

}  // namespace vessant
