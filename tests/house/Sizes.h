// How large the project is: what scripts/sizes prints.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "house/SourceTree.h"

namespace vessant::test {

struct Spread {
  std::size_t count = 0;
  std::size_t median = 0;
  std::size_t p90 = 0;
  std::size_t longest = 0;
};

[[nodiscard]] Spread spreadOf(std::vector<std::size_t> values);

struct Sizes {
  Spread functions;
  Spread files;
  std::size_t filesUnder60 = 0;
  std::size_t lines = 0;
  /// In percent of the lines that are not empty.
  double comments = 0;
};

[[nodiscard]] Sizes sizesOf(const std::vector<SourceFile>& files);

/// A table in the form of the pages, with one column for each part of the project.
[[nodiscard]] std::string sizeTable();

}  // namespace vessant::test
