// SHA-256 sums of an installer in the form of `sha256sum`: the whole file first, then each of the
// files that it carries.
#pragma once

#include <string>
#include <vector>

#include "packer/Finding.h"
#include "packer/OnePass.h"

namespace vessant {

struct SumLine {
  std::string sum;
  std::string name;
  /// In the file of sums, from 1.
  int line = 0;
};

/// The line without its break. A name with a backslash is written as `sha256sum` does: doubled,
/// with one more in front of the line.
[[nodiscard]] std::string lineOf(const SumLine& sum);

/// Reads such lines. Whatever is none is a finding, with `file` as its file.
[[nodiscard]] std::vector<SumLine> readSums(const std::string& file, const std::string& text,
                                            Findings& findings);

/// The sums of an installer, the whole file under its own name. Reads the rest of the pass.
[[nodiscard]] std::vector<SumLine> sumsOf(const Installer& installer, OnePass& pass);

/// Holds an installer's sums against those that it should have. The name of the whole file does
/// not count.
void compareSums(const Installer& installer, const std::vector<SumLine>& got,
                 const std::string& file, const std::vector<SumLine>& wanted, Findings& findings);

}  // namespace vessant
