// What the tests of tag files share: texts read through files of their own, and tags as plain
// values that can be compared.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/tagfile/TagFile.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {

/// Names with their values, in the order of the file.
using Tags = std::vector<std::pair<std::string, std::vector<std::string>>>;

[[nodiscard]] Tags tagsOf(const TagFile& file);

class TagFileFixture : public ::testing::Test {
 protected:
  /// Writes `text` to a file and reads it into `file`.
  void read(std::string_view text);
  /// Reads `length` bytes of `text` from `offset` into `file`, under the source name "source".
  void readStretch(std::string_view text, std::uint32_t offset, std::int64_t length);
  /// What reading `text` as "source" gives.
  [[nodiscard]] Tags tagsIn(std::string_view text);
  /// The text that saving `file` writes.
  [[nodiscard]] std::string saved() const;

  TempTree tree;
  RecordingLog log;
  TagFile file;
};

}  // namespace vessant::test
