// What a user reads whose machine has no fitting Java.
#pragma once

#include <string>

#include "packer/jvm/JavaRange.h"

namespace vessant {

/// A JVM file that is no JVM's: launched, it makes the launch command print on standard error which
/// Java is needed, what to install and how to name one, and end with status 3.
[[nodiscard]] std::string noJavaFileText(const JavaRange& range);

/// The same for a bundled runtime that could not be unpacked or run.
[[nodiscard]] std::string noRuntimeFileText();

/// The tag of those two files that the launch command prints.
inline constexpr const char* kNoJavaTag = "NO_JAVA";

}  // namespace vessant
