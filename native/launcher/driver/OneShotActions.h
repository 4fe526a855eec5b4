// What the command line asks the launcher to do at once, while it is being read.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"

namespace vessant {

/// What the command line leaves to be done.
struct DriverOutcome {
  std::int32_t result = 0;
  bool runDefaultFlow = true;
};

/// The run's result when something has failed; the exit status is then 255.
inline constexpr std::int32_t kRunFailed = -1;

/// The launcher implements it. Both throw LauncherException.
class OneShotActions {
 public:
  virtual ~OneShotActions() = default;
  /// Writes every embedded file and an "input.tag" that names them into the current directory.
  virtual void extractFiles() = 0;
  /// Loads an input file and performs its action.
  virtual void loadInputFile(const SString& value, DriverOutcome& outcome) = 0;
};

}  // namespace vessant
