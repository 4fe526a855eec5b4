// One line of a manifest's FILES, taken apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "launcher/archive/LauncherFormat.h"

namespace vessant {

/// What unpacking a file will make of it.
struct SizeInformation {
  /// Files, directories and links.
  std::uint32_t files = 0;
  /// The sizes of the files together, by which the launcher looks for room on the disk.
  std::uint32_t bytes = 0;
};

struct ManifestLine {
  FileType type = FileType::Instructions;
  /// Absent when vspack shall number the file.
  std::optional<std::uint32_t> id;
  /// As written, without its quotes.
  std::string path;
  /// Empty when the file keeps its own name.
  std::string name;
  std::optional<SizeInformation> unpacks;
};

/// What is wrong with a line.
struct ManifestMistake {
  /// The name of the finding.
  const char* name;
  std::string text;
};

/// Takes a line apart. Throws ManifestMistake at the first thing that is wrong.
[[nodiscard]] ManifestLine readManifestLine(const std::string& line);

/// Reads `FILES:BYTES`; nothing when the text is none or does not fit into 32 bits.
[[nodiscard]] std::optional<SizeInformation> readSizeInformation(std::string_view text);

/// What stands in front of FILES:BYTES.
inline constexpr std::string_view kUnpacksWord = "unpacks=";

}  // namespace vessant
