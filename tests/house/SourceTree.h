// The sources of the project, as the tests of the house rules read them.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace vessant::test {

struct SourceFile {
  /// Below native/ or tests/, as an include names it, such as "launcher/base/SString.h".
  std::string path;
  std::vector<std::string> lines;

  /// The directory that it lies in, without "launcher/": "base", "driver/output", "packer".
  [[nodiscard]] std::string room() const;
  /// The path without its ending: a header and its source are one unit.
  [[nodiscard]] std::string unit() const;
  /// The project's own headers that it includes.
  [[nodiscard]] std::vector<std::string> includes() const;
};

/// Every C++ file below a directory of the project, in the order of their paths.
[[nodiscard]] std::vector<SourceFile> sourceFiles(const std::string& directory = "native");

}  // namespace vessant::test
