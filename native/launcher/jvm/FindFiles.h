// Walks the file system for files whose paths end in one of several suffixes, such as "bin/java".
#pragma once

#include "launcher/base/Deque.h"
#include "launcher/base/FileNavigator.h"

namespace vessant {

/// Is told of each file found.
class FileFindListener {
 public:
  /// `path` is the full path, good only during the call. Returns true to stop the walk.
  virtual bool fileFound(const SString& path) = 0;

 protected:
  FileFindListener() = default;
  FileFindListener(const FileFindListener&) = default;
  FileFindListener& operator=(const FileFindListener&) = default;
  ~FileFindListener() = default;  // nobody owns an object by this interface
};

/// A cancellable walk that leaves out the temporary directories. A path that ends in several of the
/// suffixes is reported once for each.
class FindFiles : public FileNavigator {
 public:
  /// Suffixes and listener are the caller's. `tempRoot` is the run's temporary root.
  FindFiles(const RunServices& services, const StringDeque& suffixes, FileFindListener& listener,
            const SString& tempRoot);

 protected:
  bool processFile(const FoundFile& file) override;
  bool skipDirectory(const SString& path) override;

 private:
  const StringDeque& suffixes_;
  FileFindListener& listener_;
  SString skipped_;
};

}  // namespace vessant
