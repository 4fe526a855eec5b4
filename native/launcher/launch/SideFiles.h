// Small text files next to the launcher file by which a user or an administrator adds class path
// entries, system properties and Java arguments without touching the installer.
#pragma once

#include <string_view>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"

namespace vessant {

namespace sidefile {
inline constexpr std::string_view kClassPathFirst = ".cp1";
inline constexpr std::string_view kClassPath = ".cp";
inline constexpr std::string_view kClassPathLast = ".cp2";
inline constexpr std::string_view kSystemProperties = ".sp";
inline constexpr std::string_view kJavaArguments = ".ja";
}  // namespace sidefile

/// The launcher file's path without its extension, and the suffix. A bare name, without any
/// directory, keeps its extension.
[[nodiscard]] SString sideFilePath(const SString& launcherFile, std::string_view suffix);

/// Reads the lines of a text file, trimmed, into `lines`. Returns whether it could be opened.
bool readLines(const SString& path, StringDeque& lines);

}  // namespace vessant
