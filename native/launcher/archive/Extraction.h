// Copies files out of the launcher file.
#pragma once

#include "launcher/archive/FileIndexEntry.h"
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

}  // namespace vessant
