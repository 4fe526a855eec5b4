// Java homes made of a shell script that speaks the verification protocol.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "support/TempTree.h"

namespace vessant::test {

/// Makes `relative`/bin/java in the tree and returns the home.
///
/// Called with an argument "Verify", the script prints a line of noise, the magic line and the
/// values of the properties named behind it (an unknown one as "null"). Called otherwise it is "the
/// program": it prints "PROGRAM", "HOME=" with the home, "JAVA_HOME=" with that variable, "CWD=",
/// and "ARG=" with each argument on a line; it writes "program error" on its standard error and
/// exits with the number of an argument "--exit=N".
std::string makeFakeJavaHome(TempTree& tree, std::string_view relative,
                             const std::map<std::string, std::string>& properties);

/// The text of a JVM file that accepts a home whose java.version is `version`. `more` is appended.
[[nodiscard]] std::string jvmFileText(std::string_view version, std::string_view more = "");

}  // namespace vessant::test
