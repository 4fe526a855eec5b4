#include "unit/base/RecordingWalk.h"

#include <algorithm>

namespace vessant::test {

RecordingWalk::RecordingWalk(const FakeRun& run, const TempTree& tree, bool cancellable)
    : FileNavigator(run.services, cancellable), tree_(tree) {}

bool RecordingWalk::walk() {
  return walkFrom(tree_.root());
}

bool RecordingWalk::walkFrom(const std::string& start) {
  visited.clear();
  return navigate(SString(std::string_view(start)));
}

std::vector<std::string> RecordingWalk::sortedFiles() const {
  std::vector<std::string> sorted = files;
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

bool RecordingWalk::processFile(const FoundFile& file) {
  files.push_back(relative(file.path()));
  events.push_back("file " + files.back());
  return onFile(files.back());
}

bool RecordingWalk::skipDirectory(const SString& path) {
  visited.push_back(relative(path));
  events.push_back("enter " + visited.back());
  return onDirectory(relative(path));
}

std::string RecordingWalk::relative(const SString& path) const {
  const std::string text = str(path);
  if (text == tree_.root()) return ".";
  const std::string prefix = tree_.root() + "/";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

}  // namespace vessant::test
