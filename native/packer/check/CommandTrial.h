// A launch command, expanded as the launcher would for one JVM file, with marks for the paths that
// only a run knows. It goes on behind mistakes, so that all are found.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "packer/Finding.h"
#include "packer/check/TagText.h"

namespace vessant {

/// What a command is expanded with.
struct TrialWorld {
  const TagText& launchScript;
  /// All JVM files: a tag that one of them has is no mistake where another lacks it.
  const std::vector<const TagText*>& jvmFiles;
  /// The ids of the class path archives, in their order.
  std::vector<std::uint32_t> archives;
  bool hasApplicationArchive = false;
};

/// What came of it, and what the command made use of on the way.
struct TrialCommand {
  /// With the marks of ShellWords.h.
  std::string text;
  bool usesClassPath = false;
  bool usesApplicationArchive = false;
  bool usesSystemProperties = false;
  /// Whether a function's arguments could not be read, so that the rest of the text is no command.
  bool isBroken = false;
};

/// Expands the script's command for a JVM file and reports every mistake in its macros.
[[nodiscard]] TrialCommand tryCommand(const TrialWorld& world, const TagText& jvmFile,
                                      Findings& findings);

/// The text between path marks for an archive.
[[nodiscard]] std::string archiveMark(std::uint32_t id);
inline constexpr const char* kApplicationMark = "application archive";
/// The macro that left a path mark, as authors write it.
[[nodiscard]] std::string writtenFormOf(const std::string& mark);

/// All tags that the commands and the values of the JVM files put in as @TAG@ or ask for with
/// %IF_EXISTS%.
[[nodiscard]] std::vector<std::string> macroTagsIn(std::string_view text);

}  // namespace vessant
