// The extracted copies of embedded files, each made once a run.
#pragma once

#include <unordered_map>

#include "launcher/archive/Extraction.h"
#include "launcher/archive/LauncherFile.h"
#include "launcher/archive/TempFiles.h"

namespace vessant {

class EmbeddedFiles {
 public:
  /// All three must outlive this.
  EmbeddedFiles(const LauncherFile& launcherFile, const FileExtractor& extractor,
                TempFiles& tempFiles)
      : launcherFile_(launcherFile), extractor_(extractor), tempFiles_(tempFiles) {}
  EmbeddedFiles(const EmbeddedFiles&) = delete;
  EmbeddedFiles& operator=(const EmbeddedFiles&) = delete;

  [[nodiscard]] const LauncherFile& launcherFile() const { return launcherFile_; }

  /// The path of the entry's copy, in a temporary directory of its own.
  const SString& extractedPath(const FileIndexEntry& entry);
  /// Extracts all application archives into one temporary directory and returns the path of the
  /// last; empty when there are none.
  const SString& applicationArchive();

 private:
  const LauncherFile& launcherFile_;
  const FileExtractor& extractor_;
  TempFiles& tempFiles_;
  std::unordered_map<const FileIndexEntry*, SString> paths_;
  SString applicationArchive_;
};

}  // namespace vessant
