// A directory walk that writes down what it is shown, with a tree of its own to walk.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "launcher/base/FileNavigator.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {

/// Paths are written down relative to the tree; its root is ".".
class RecordingWalk : public FileNavigator {
 public:
  RecordingWalk(const FakeRun& run, const TempTree& tree, bool cancellable = true);

  /// Walks the whole tree.
  bool walk();
  /// Walks from exactly this text.
  bool walkFrom(const std::string& start);

  [[nodiscard]] std::vector<std::string> sortedFiles() const;

  /// What processFile and skipDirectory answer.
  std::function<bool(const std::string&)> onFile = [](const std::string&) { return false; };
  std::function<bool(const std::string&)> onDirectory = [](const std::string&) { return false; };

  std::vector<std::string> files;
  /// The directories of the last walk, in the order in which it asked for them.
  std::vector<std::string> visited;
  /// Both kinds of calls in their order: "enter DIRECTORY" and "file PATH".
  std::vector<std::string> events;

 protected:
  bool processFile(const FoundFile& file) override;
  bool skipDirectory(const SString& path) override;

 private:
  [[nodiscard]] std::string relative(const SString& path) const;

  const TempTree& tree_;
};

}  // namespace vessant::test
