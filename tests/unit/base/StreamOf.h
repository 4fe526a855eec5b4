// A stream over given bytes, read from a real file.
#pragma once

#include <cstdio>
#include <string_view>

#include "launcher/base/Handles.h"
#include "support/TempTree.h"

namespace vessant::test {

class StreamOf {
 public:
  explicit StreamOf(std::string_view bytes)
      : stream_(openFile(SString(std::string_view(tree_.file("bytes", bytes))), OpenMode::Read)) {}

  [[nodiscard]] std::FILE* get() const { return stream_.get(); }

 private:
  TempTree tree_;
  StdFile stream_;
};

/// A stream that opens and then fails at its first read: that of a directory.
class FailingStream {
 public:
  FailingStream() : stream_(openFile(SString(std::string_view(tree_.root())), OpenMode::Read)) {}

  [[nodiscard]] std::FILE* get() const { return stream_.get(); }

 private:
  TempTree tree_;
  StdFile stream_;
};

}  // namespace vessant::test
