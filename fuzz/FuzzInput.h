// What the fuzz targets share: the input as a stream, as a text and as a file, and a run that says
// nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "launcher/base/Handles.h"
#include "launcher/driver/LauncherState.h"

namespace vessant::fuzz {

/// The bytes as a stream to read from; null for an empty input.
[[nodiscard]] StdFile streamOf(const std::uint8_t* data, std::size_t size);
[[nodiscard]] SString textOf(const std::uint8_t* data, std::size_t size);

/// The bytes as a file in memory, for as long as the object lives.
class InputFile {
 public:
  InputFile(const std::uint8_t* data, std::size_t size);

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  UniqueFd fd_;
  std::string path_;
};

/// The input's first line, and the bytes behind it.
struct FirstLine {
  FirstLine(const std::uint8_t* data, std::size_t size);

  SString line;
  const std::uint8_t* rest;
  std::size_t restSize;
};

/// The services of a real run that shows nothing.
struct QuietRun {
  QuietRun() { state.console.silent = true; }

  LauncherState state;
  LauncherServices services{state};
};

/// Stops the target with a finding.
void require(bool holds, const char* what);

}  // namespace vessant::fuzz
