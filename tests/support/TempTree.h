// A directory tree of a test's own, deleted with the object, also when an assertion fails.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace vessant::test {

class TempTree {
 public:
  TempTree();
  TempTree(const TempTree&) = delete;
  TempTree& operator=(const TempTree&) = delete;
  ~TempTree();

  /// The absolute path of the tree, without links in it.
  [[nodiscard]] const std::string& root() const { return root_; }
  /// The absolute path of something in the tree.
  [[nodiscard]] std::string path(std::string_view relative) const;

  // Each makes the directories above and returns the absolute path.
  std::string file(std::string_view relative, std::string_view content = "");
  std::string program(std::string_view relative, std::string_view content);
  std::string dir(std::string_view relative);
  std::string link(std::string_view relative, std::string_view target);

  /// Everything below a directory of the tree, as sorted relative paths.
  [[nodiscard]] std::vector<std::string> list(std::string_view relative = "") const;

 private:
  std::string root_;
};

/// The mode bits of the file itself, also when it is a link.
[[nodiscard]] mode_t permissionsOf(const std::string& path);
[[nodiscard]] std::string readFile(const std::string& path);
void writeFile(const std::string& path, std::string_view content);

}  // namespace vessant::test
