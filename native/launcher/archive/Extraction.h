// Copies files out of the launcher file: one by one, and those that are needed once a run.
#pragma once

#include <unordered_map>

#include "launcher/archive/LauncherFile.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

class FileExtractor {
 public:
  /// `launcherFile` is the path of the file whose index is used. Both must outlive this.
  FileExtractor(const SString& launcherFile, const RunServices& services)
      : launcherFile_(launcherFile), services_(services) {}

  /// Copies one file into `directory` under its own name and returns the path of the copy. JVM
  /// installers and embedded launchers come out executable. The copy is not registered anywhere:
  /// callers extract into a temporary directory.
  ///
  /// Throws LauncherException when the disk is too small, when writing fails and when the user
  /// cancelled; a partly written copy is left for the clean-up of its directory. A launcher file
  /// that ends early makes a short copy.
  [[nodiscard]] SString extractFile(const FileIndexEntry& entry, const SString& directory) const;

 private:
  void checkSpace(const FileIndexEntry& entry, const SString& directory) const;
  /// Returns 0 or the error number that ended the copying.
  [[nodiscard]] int copyBytes(const FileIndexEntry& entry, const SString& target) const;
  [[nodiscard]] SString writeErrorText(const SString& detail) const;

  const SString& launcherFile_;
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
