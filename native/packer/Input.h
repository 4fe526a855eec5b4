// Texts that a command is given: a file, or standard input.
#pragma once

#include <string>

namespace vessant {

/// The name by which standard input and standard output are called.
inline constexpr const char* kStandardStream = "-";

/// All bytes of the file at `path`, or of standard input for "-". Throws LauncherException, naming
/// the path, when they cannot be read or are more than 16 MiB.
[[nodiscard]] std::string readTextInput(const std::string& path);

}  // namespace vessant
