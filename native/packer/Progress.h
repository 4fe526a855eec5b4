// How far a long command has come, for somebody who watches.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "packer/Session.h"

namespace vessant {

/// Shows a percentage on a terminal, from a second on; nothing anywhere else.
class Progress {
 public:
  /// `what` is the beginning of the line, such as "packing setup"; `total` is in bytes.
  Progress(const Session& session, std::string what, std::uint64_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Clears the line.
  ~Progress();

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

}  // namespace vessant
