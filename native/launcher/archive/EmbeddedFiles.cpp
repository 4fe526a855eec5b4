#include "launcher/archive/EmbeddedFiles.h"

namespace vessant {

const SString& EmbeddedFiles::extractedPath(const FileIndexEntry& entry) {
  SString& path = paths_[&entry];
  if (path.isEmpty()) path = extractor_.extractFile(entry, tempFiles_.createTempDir());
  return path;
}

const SString& EmbeddedFiles::applicationArchive() {
  if (!applicationArchive_.isEmpty()) return applicationArchive_;
  SString directory;
  for (const FileIndexEntry& entry : launcherFile_.index()) {
    if (entry.type != FileType::ApplicationArchive) continue;
    if (directory.isEmpty()) directory = tempFiles_.createTempDir();
    applicationArchive_ = extractor_.extractFile(entry, directory);
  }
  return applicationArchive_;
}

}  // namespace vessant
