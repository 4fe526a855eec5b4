// Deletes a directory with everything in it.
#pragma once

#include "launcher/base/FileNavigator.h"

namespace vessant {

/// Deletes one path: a directory, which must be empty, or anything else. Returns whether it is
/// gone; a failure is logged as a warning. A path that stat cannot follow is left without a word,
/// and a link to a directory stays, because stat takes it for the directory.
bool deletePath(const SString& path, const RunServices& services);

/// navigate(directory) deletes the whole tree. What cannot be deleted stays, with the directories
/// above it; all else goes. The walk cannot be cancelled.
class DeleteFullDir : public FileNavigator {
 public:
  explicit DeleteFullDir(const RunServices& services) : FileNavigator(services, false) {}

  bool navigate(const SString& start) override;

 protected:
  bool processFile(const SString& path) override;

 private:
  [[nodiscard]] bool isKnownToStay(std::int32_t position, const SString& directory) const;

  StringDeque unremoved_;
};

}  // namespace vessant
