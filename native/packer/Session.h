// What a command knows of the run that it is part of.
#pragma once

#include <iostream>
#include <string>

namespace vessant {

/// vspack's exit statuses.
inline constexpr int kFine = 0;
/// Something is to be put right: an error was found, a packing refused, two installers differ.
inline constexpr int kFindings = 1;
/// A wrong call, or a file that cannot be read or written.
inline constexpr int kTrouble = 2;

struct Session {
  /// Results, and nothing else.
  std::ostream& out;
  /// Findings, errors and progress.
  std::ostream& err;
  /// Whether somebody watches `err`: only then is progress shown.
  bool errIsTerminal = false;
  /// The running vspack, to find what was built or installed with it; empty when unknown.
  std::string program = {};
  /// What the chosen command ended with.
  int status = kFine;
};

}  // namespace vessant
