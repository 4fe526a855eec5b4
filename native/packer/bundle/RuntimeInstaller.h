// A Java runtime as a program that unpacks it: what INSTALL_JVM runs.
#pragma once

#include <string>
#include <vector>

#include "packer/jvm/JavaHome.h"

namespace vessant {

struct RuntimeRequest {
  /// The Java home that the runtime comes from.
  std::string home;
  /// The modules to take; empty: the whole home.
  std::vector<std::string> modules = {};
  bool compress = false;
};

/// Writes the program to `output`, `-` being standard output, and returns what its Java is. The
/// same home gives the same bytes. Throws LauncherException, naming the file, when the home is none
/// or something cannot be read or written.
JavaFacts writeRuntimeInstaller(const RuntimeRequest& request, const std::string& verifyJar,
                                const std::string& output);

}  // namespace vessant
