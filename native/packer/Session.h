// What a command knows of the run that it is part of: its streams and status, whether somebody
// watches, and what was built or installed together with the running vspack.
#pragma once

#include <chrono>
#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

#include "launcher/base/RunServices.h"

namespace vessant {

/// vspack's exit statuses.
inline constexpr int kFine = 0;
/// Something is to be put right: an error was found, a packing refused, two installers differ.
inline constexpr int kFindings = 1;
/// A wrong call, or a file that cannot be read or written.
inline constexpr int kTrouble = 2;

/// Made by `main`, or by a test that wants to see the streams. Commands refer to it and set
/// `status`; an exception that leaves a command makes it kTrouble.
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
  /// How long a command works before it shows progress.
  std::chrono::milliseconds patience = std::chrono::seconds(1);
};

/// Shows a percentage on a terminal, from a second on; nothing anywhere else.
class Progress {
 public:
  /// `what` is the beginning of the line, such as "packing setup"; `total` is in bytes.
  Progress(const Session& session, std::string what, std::uint64_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Clears the line.
  ~Progress();

  /// Counts bytes that are done, and shows the line anew five times a second at most.
  void advance(std::uint64_t bytes);

 private:
  using Clock = std::chrono::steady_clock;

  const Session& session_;
  std::string what_;
  std::uint64_t total_;
  std::uint64_t done_ = 0;
  Clock::time_point next_;
  bool shown_ = false;
};

/// The directories in which files lie that packages bring along, nearest first: `share` next to the
/// build's own program, then the system's. Each is followed by its `jvm` directory. `program` is
/// the path of vspack.
[[nodiscard]] std::vector<std::string> installedDirectories(const std::string& program);

/// The path of an installed file, such as "verify.jar"; empty when there is none.
[[nodiscard]] std::string installedFile(const std::string& program, const std::string& name);

/// The launcher that belongs to this vspack: the one next to it, else the system's. The former when
/// there is none, so that an error names it.
[[nodiscard]] std::string installedLauncher(const std::string& program);

/// Nowhere to write: the launcher's readers repeat their log lines in the errors that they throw.
class NoLog : public LogSink {
 public:
  void log(const SString& /*text*/, LogLevel /*level*/) override {}
};

}  // namespace vessant
