// For which machine a program was built, and whether it is a launcher.
#pragma once

#include <string>

#include "packer/ByteSource.h"

namespace vessant {

/// The machine of an ELF program, such as "x86-64"; empty when the bytes are none.
[[nodiscard]] std::string machineOf(std::string_view bytes);

/// The machine of the runtime that a JVM installer brings: the installer itself, or the first
/// program in the tar file behind its shell script. Empty when that cannot be told quickly.
[[nodiscard]] std::string machineOfRuntime(const ByteSource& installer);

/// The JVM file that a JVM installer of `vspack bundle-jvm` leaves where it has unpacked its
/// runtime. Empty for other installers: only running them tells. Takes as long as unpacking does.
[[nodiscard]] std::string jvmFileOfRuntime(const ByteSource& installer);

/// Whether a program is a launcher: it knows a launcher's options.
[[nodiscard]] bool isLauncher(const ByteSource& program);

/// The version in the note that a launcher carries, an ELF note with the owner "Vessant"; empty
/// when there is none.
[[nodiscard]] std::string launcherVersionOf(const ByteSource& program);

}  // namespace vessant
