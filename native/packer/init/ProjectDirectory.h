// The directory that a project is written into: it appears when everything in it is whole.
#pragma once

#include <filesystem>
#include <list>
#include <string>

namespace vessant {

/// Files are written into a hidden directory beside the new one, which gets its name in one step.
/// In a directory that is there already each file is renamed by itself.
class ProjectDirectory {
 public:
  /// Prepares a place for the files of the directory `path`. Throws LauncherException when that is
  /// no directory, cannot be made or, unless `force` is set, has something in it.
  ProjectDirectory(const std::string& path, bool force);
  ProjectDirectory(const ProjectDirectory&) = delete;
  ProjectDirectory& operator=(const ProjectDirectory&) = delete;
  /// Removes what was not published.
  ~ProjectDirectory();

  /// Where to write the file that will have this name.
  [[nodiscard]] std::string stagePath(const std::string& name);
  /// Gives the directory, or each file in one that was there before, its name.
  void publish();

 private:
  void checkContents(bool force) const;
  void makeStage();
  const std::string& remember(const std::string& path);

  std::filesystem::path path_;
  bool isThere_ = false;
  std::filesystem::path stage_;
  std::list<std::string> pending_;  // what an interrupt removes, at addresses that stay
};

}  // namespace vessant
