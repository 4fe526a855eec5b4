// Small text files next to the launcher file by which a user or an administrator adds class path
// entries, system properties and Java arguments without touching the installer, and the form in
// which the Java command takes those.
#pragma once

#include <string_view>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/launch/JvmTags.h"

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

/// Reads the lines of a text file, trimmed, into `lines`. Returns whether it could be opened: a
/// side file that is not there is no error.
bool readLines(const SString& path, StringDeque& lines);

/// A system property as the JVM file writes it; the value's @ macros are expanded. Nothing is
/// quoted.
[[nodiscard]] SString systemProperty(const SString& name, const SString& value, JvmTags& jvm);

/// The properties of the ".sp" side file, separated by blanks. Lines without "=" are skipped.
[[nodiscard]] SString runtimeSystemProperties(const SString& launcherFile, JvmTags& jvm);

/// The arguments of the ".ja" side file, separated by blanks, then a blank and the arguments that
/// the JVM always requires. The blank is put even when nothing came before. Kept: command templates
/// join it to the text in front.
[[nodiscard]] SString runtimeJavaArguments(const SString& launcherFile, JvmTags& jvm);

}  // namespace vessant
