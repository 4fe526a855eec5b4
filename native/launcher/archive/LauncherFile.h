// The launcher file's index, read once a run.
#pragma once

#include <cstdint>
#include <cstdio>
#include <ctime>

#include <sys/types.h>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

/// Makes the objects that embedded tag files describe. The rooms above implement it: this one knows
/// the files but not what is built from them. The tag files belong to the index entries and outlive
/// the objects. An operation may throw InstructionsException.
class EmbeddedObjectBuilder {
 public:
  virtual ~EmbeddedObjectBuilder() = default;
  virtual void addJvmFile(TagFile& tags) = 0;
  [[nodiscard]] virtual bool hasInstructions() const = 0;
  virtual void setInstructions(TagFile& tags) = 0;
  [[nodiscard]] virtual bool hasLaunchScript() const = 0;
  virtual void setLaunchScript(TagFile& tags) = 0;
};

class LauncherFile {
 public:
  LauncherFile() = default;
  LauncherFile(const LauncherFile&) = delete;
  LauncherFile& operator=(const LauncherFile&) = delete;

  /// Reads the index of the file at `path` and lists it in the log; with a builder, also makes the
  /// embedded objects. Each is done once a run, so that a later call with a builder only makes the
  /// objects of an index that was read without one, and any other later call does nothing. `path`
  /// is the same file in every call. A file without the identification value has no appended files,
  /// which is no error.
  ///
  /// Throws LauncherException for every other flaw of the format, and then the file counts as not
  /// loaded. An index that could not be read leaves no entries. Objects that could not be made
  /// leave the entries and the objects in front of them, which refer to one another; they are not
  /// made again.
  void loadFileIndex(const SString& path, EmbeddedObjectBuilder* builder, LogSink& log,
                     const MessageSource& messages);

  [[nodiscard]] bool isLoaded() const { return loaded_; }
  /// Whether an input file has named JVM files. Those of the index are used all the same, behind
  /// them.
  [[nodiscard]] bool hasJvmFilesFromInput() const { return jvmFilesFromInput_; }
  void markJvmFilesFromInput() { jvmFilesFromInput_ = true; }
  [[nodiscard]] const FileIndexEntryPtrDeque& index() const { return index_; }
  /// The first entry with the id or of the type, or null.
  [[nodiscard]] FileIndexEntry* findById(std::uint32_t fileId) const;
  [[nodiscard]] FileIndexEntry* findByType(FileType type) const;
  /// Whether an open file is the one whose index was read, with the content of that time. True when
  /// no index has been read.
  [[nodiscard]] bool isUnchanged(int fd) const;

 private:
  /// What a change of the content changes. The inode is not among it: some file systems give a file
  /// another one whenever it is opened.
  struct Stamp {
    off_t size = 0;
    time_t seconds = 0;
    long nanoseconds = 0;
    bool operator==(const Stamp&) const = default;
  };
  [[nodiscard]] static Stamp stampOf(int fd);

  /// Reads the whole index into `index_`, or throws and changes nothing.
  void readIndex(std::FILE* stream);
  void logListing(LogSink& log) const;
  void buildObjects(std::FILE* stream, EmbeddedObjectBuilder& builder, LogSink& log,
                    const MessageSource& messages);

  FileIndexEntryPtrDeque index_;
  Stamp stamp_;
  bool indexRead_ = false;
  bool loaded_ = false;
  bool objectsBuilt_ = false;
  bool jvmFilesFromInput_ = false;
};

}  // namespace vessant
