// Copies files out of the launcher file: one by one, and those that are needed once a run.
#pragma once

#include <cstdint>
#include <unordered_map>

#include "launcher/archive/LauncherFile.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

class NewFile;
class UniqueFd;

/// What becomes of a copy that could not be finished.
enum class PartialFile { Stays, Removed };

class FileExtractor {
 public:
  /// `path` is that of the file whose index is used. All must outlive this.
  FileExtractor(const SString& path, const LauncherFile& launcherFile, const RunServices& services)
      : path_(path), launcherFile_(launcherFile), services_(services) {}

  /// Copies one file into `directory` under its own name and returns the path of the copy. What
  /// lies there under that name is removed first, a directory excepted. JVM installers and embedded
  /// launchers come out executable. The copy is not registered anywhere: one in a temporary
  /// directory goes with it, and so does a part of one.
  ///
  /// Throws LauncherException, and writes the reason to the log, when the entry has no name of a
  /// file, when the disk is too small, when writing fails, when the user cancelled, and when the
  /// launcher file ends ahead of the entry's last byte or has changed since its index was read.
  [[nodiscard]] SString extractFile(const FileIndexEntry& entry, const SString& directory,
                                    PartialFile onFailure = PartialFile::Stays) const;

 private:
  void checkSpace(const FileIndexEntry& entry, const SString& directory, const SString& path) const;
  void fill(NewFile& target, const SString& path, const UniqueFd& source,
            const FileIndexEntry& entry) const;
  [[noreturn]] void throwCutShort(const FileIndexEntry& entry, std::uint64_t found) const;
  [[noreturn]] void throwBadName(const SString& name) const;
  [[noreturn]] void throwWriteError(const SString& path, int error) const;
  void logWriteError(const SString& path, int error) const;
  [[nodiscard]] SString writeErrorText(const SString& detail) const;

  const SString& path_;
  const LauncherFile& launcherFile_;
  const RunServices& services_;
};

/// The copies that a run makes in temporary directories, which the clean-up deletes. A program that
/// only tells what a run would do derives from this.
class EmbeddedFiles {
 public:
  /// All three must outlive this.
  EmbeddedFiles(const LauncherFile& launcherFile, const FileExtractor& extractor,
                TempFiles& tempFiles)
      : launcherFile_(launcherFile), extractor_(extractor), tempFiles_(tempFiles) {}
  EmbeddedFiles(const EmbeddedFiles&) = delete;
  EmbeddedFiles& operator=(const EmbeddedFiles&) = delete;
  virtual ~EmbeddedFiles() = default;

  [[nodiscard]] const LauncherFile& launcherFile() const { return launcherFile_; }

  /// The path of the entry's copy, in a temporary directory of its own. Made at the first call; a
  /// call that throws, as extractFile does, leaves it to the next.
  virtual const SString& extractedPath(const FileIndexEntry& entry);
  /// Extracts all application archives into one new temporary directory and returns the path of
  /// the last; empty when there are none. Every call makes new copies: the caller keeps the path.
  [[nodiscard]] virtual SString extractApplicationArchives() const;

 private:
  const LauncherFile& launcherFile_;
  const FileExtractor& extractor_;
  TempFiles& tempFiles_;
  std::unordered_map<const FileIndexEntry*, SString> paths_;
};

}  // namespace vessant
