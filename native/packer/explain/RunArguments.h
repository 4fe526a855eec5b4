// What a user's arguments make of a run, as far as finding and launching a JVM goes.
#pragma once

#include <string>
#include <vector>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"

namespace vessant {

struct RunArguments {
  SString javaHome = {};
  SString tempDirectory = {};
  SString classPathPrefix = {};
  SString classPathSuffix = {};
  StringDeque passThrough = {};
  bool javaConsole = false;
  /// Options that make the launcher do something else than run its script.
  std::vector<std::string> otherActions = {};
};

/// Takes the arguments apart as the launcher does.
void readRunArguments(const std::vector<std::string>& words, RunArguments& run);

}  // namespace vessant
