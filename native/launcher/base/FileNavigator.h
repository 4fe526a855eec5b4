// FileNavigator walks a directory tree depth first, without recursion, and hands everything that is
// not a directory to an operation of its subclass.
//
// Symbolic links below the start are never followed. A directory that cannot be opened is passed
// over. The subdirectories of a directory are visited after it is finished, the last found first.
//
// Each directory is opened from its parent's descriptor, so that no path is too long and nothing
// can be swapped in above it. The walk remembers the directories on the way to the current one and
// the names of their subdirectories still to see, and nothing else; it keeps few descriptors open,
// however deep the tree. Entries may be removed while it runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include <dirent.h>

#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// Reads the entries of open directories, a large piece at a time. One reader serves
/// many directories, one after the other. It asks the kernel itself (getdents64
/// of Linux), because the C library's streams read 32 KiB at a time and allocate for each
/// directory.
class DirectoryReader {
 public:
  DirectoryReader();

  /// Reads `directory` from where it stands; the descriptor stays the caller's.
  void start(int directory);
  /// The next entry other than "." and "..", or null at the end. Good until the next call.
  ///
  /// A read error looks like the end: nobody could do more with the rest of such a directory.
  [[nodiscard]] dirent64* next();

 private:
  [[nodiscard]] bool refill();

  std::unique_ptr<std::byte[]> buffer_;
  std::size_t filled_ = 0;
  std::size_t position_ = 0;
  int directory_ = -1;
};

/// An entry that a walk has found. Good only during the call that hands it over.
class FoundFile {
 public:
  /// `path` is the directory's with a separator at its end; the name goes behind it when asked for.
  FoundFile(int directory, const char* name, SString& path)
      : directory_(directory), name_(name), path_(path), directoryLength_(path.length()) {}
  FoundFile(const FoundFile&) = delete;
  FoundFile& operator=(const FoundFile&) = delete;
  ~FoundFile() { path_.erase(directoryLength_); }

  /// The descriptor of the directory that holds the entry.
  [[nodiscard]] int directory() const { return directory_; }
  [[nodiscard]] const char* name() const { return name_; }
  /// The full path. Most entries of a search are turned down by their name, so that it is only put
  /// together here.
  [[nodiscard]] const SString& path() const;

 private:
  int directory_;
  const char* name_;
  SString& path_;
  SString::Size directoryLength_;
};

class FileNavigator {
 public:
  /// A cancellable walk ends as soon as the run's cancel flag is set. `services` must outlive this.
  FileNavigator(const RunServices& services, bool cancellable)
      : services_(services), cancellable_(cancellable) {}
  FileNavigator(const FileNavigator&) = delete;
  FileNavigator& operator=(const FileNavigator&) = delete;
  virtual ~FileNavigator() = default;

  /// Walks the tree below `start`, which may be a link. Returns whether the subclass stopped the
  /// walk.
  virtual bool navigate(const SString& start);

 protected:
  /// One entry that is not a directory. Returns true to stop the walk.
  virtual bool processFile(const FoundFile& file) = 0;
  /// True to leave a directory unread. Asked once for every directory of the walk, the start
  /// included, when its turn comes.
  virtual bool skipDirectory(const SString& path);
  /// Opens a directory for reading; what it returns may be no descriptor. Here, a link is followed
  /// under AT_FDCWD alone, where only the start can be.
  [[nodiscard]] virtual UniqueFd openDirectory(int parent, const char* name);
  /// Everything below a directory has been seen, or it could not be opened. Not called for the
  /// start, nor once the walk has ended. `parent` is negative when the parent cannot be reached any
  /// more.
  virtual void leaveDirectory(int parent, const char* name, const SString& path);

  /// The walk of `navigate`, from the directory that lies in the open directory `parent` under the
  /// name that begins at `nameStart` of its path.
  bool walk(int parent, const SString& path, SString::Size nameStart);

  [[nodiscard]] const RunServices& services() const { return services_; }

 private:
  /// A directory on the way to the current one.
  struct Level {
    /// Closed while the walk is far below.
    UniqueFd directory;
    /// Set while it is closed.
    FileIdentity identity = {};
    /// Of its path with a separator at the end.
    SString::Size pathLength = 0;
    /// Where the names of its subdirectories begin in `names_`.
    std::size_t firstName = 0;
  };

  [[nodiscard]] bool hasEnded() const;
  void enter(int parent, SString::Size nameStart);
  void enterNext();
  void leaveLast();
  void readLast();
  void visitEntry(const Level& level, const dirent64& entry);
  void countFile();
  void closeFarLevel();
  void reopen(Level& level, int child);

  const RunServices& services_;
  DirectoryReader reader_;
  /// Of the directory that is being visited.
  SString path_;
  std::vector<Level> levels_;
  /// The subdirectories still to see, each ended by a NUL; those of the last level last.
  std::vector<char> names_;
  bool cancellable_;
  bool stopped_ = false;
  std::int64_t fileCount_ = 0;
};

}  // namespace vessant
