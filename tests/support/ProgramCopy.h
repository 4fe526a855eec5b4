// Copies programs into a file system of a test's own.
#pragma once

#include <string>

namespace vessant::test {

/// Copies a program, with the libraries that it loads, below `root`: the libraries to where they
/// lie outside, the program to `place`. Returns false when there is no such program.
bool copyProgram(const std::string& program, const std::string& root, const std::string& place);

}  // namespace vessant::test
