// Deletes what the launcher has made, and nothing else.
//
// Whoever deletes as root in a directory that others may write to must not be led astray: paths are
// resolved once, a directory is entered by descriptors from then on, and links are deleted as links
// wherever they lead. A file or directory that is known by its identity is left alone, with a
// warning, when something else lies in its place.
#pragma once

#include <optional>

#include "launcher/base/FileNavigator.h"
#include "launcher/base/PathUtil.h"

namespace vessant {

/// Deletes one path: a directory, which must be empty, or anything else. With `expected`, only the
/// file that it identifies. Returns whether the path is gone by this; a failure is logged as a
/// warning, but nothing is said of a path under which nothing lies.
bool deletePath(const SString& path, const RunServices& services,
                const std::optional<FileIdentity>& expected = std::nullopt);

/// navigate(directory) deletes the whole tree; anything else than a directory is deleted as
/// deletePath does. What cannot be deleted stays, with the directories above it; all else goes.
///
/// Directories of the tree that their owner has closed to himself are opened first. Other file
/// systems that are mounted in the tree are left alone. The walk cannot be cancelled.
class DeleteFullDir : public FileNavigator {
 public:
  explicit DeleteFullDir(const RunServices& services,
                         const std::optional<FileIdentity>& expected = std::nullopt)
      : FileNavigator(services, false), expected_(expected) {}

  bool navigate(const SString& start) override;

 protected:
  bool processFile(const FoundFile& file) override;
  [[nodiscard]] UniqueFd openDirectory(int parent, const char* name) override;
  void leaveDirectory(int parent, const char* name, const SString& path) override;

 private:
  std::optional<FileIdentity> expected_;
  std::optional<FileIdentity> start_;
  bool isStartAhead_ = false;
  bool directoryStays_ = false;
};

}  // namespace vessant
