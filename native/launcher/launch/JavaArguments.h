// The runtime arguments of the Java command: system properties and Java options from the side files
// and the JVM file.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/launch/JvmTags.h"

namespace vessant {

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
