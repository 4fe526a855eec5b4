// FileNavigator walks a directory tree depth first, without recursion, and hands everything that is
// not a directory to an operation of its subclass.
//
// Symbolic links are never followed. A directory that cannot be opened is passed over. The
// subdirectories of a directory are visited after it is finished, the last found first. The walk
// remembers the directories it has seen and those still to see, and nothing else; entries may be
// removed while it runs.
#pragma once

#include <cstdint>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"

struct dirent;

namespace vessant {

class FileNavigator {
 public:
  /// A cancellable walk ends as soon as the run's cancel flag is set. `services` must outlive this.
  FileNavigator(const RunServices& services, bool cancellable)
      : services_(services), cancellable_(cancellable) {}
  FileNavigator(const FileNavigator&) = delete;
  FileNavigator& operator=(const FileNavigator&) = delete;
  virtual ~FileNavigator() = default;

  /// Walks the tree below `start`. Returns whether the subclass stopped the walk.
  virtual bool navigate(const SString& start);

 protected:
  /// One entry that is not a directory. Returns true to stop the walk. `path` is good only during
  /// the call.
  virtual bool processFile(const SString& path) = 0;
  /// True to leave a directory unread.
  virtual bool skipDirectory(const SString& path);

  [[nodiscard]] const StringDeque& visitedDirectories() const { return visited_; }
  [[nodiscard]] const RunServices& services() const { return services_; }

 private:
  [[nodiscard]] bool isCancelled() const;
  void readDirectory(const SString& directory);
  void visitEntry(SString& path, SString::Size directoryLength, const dirent& entry);
  void countFile();

  const RunServices& services_;
  StringDeque visited_;
  StringDeque pending_;
  bool cancellable_;
  bool stopped_ = false;
  std::int64_t fileCount_ = 0;
};

}  // namespace vessant
