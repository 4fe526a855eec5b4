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
  SString last;
  for (const FileIndexEntry& entry : launcherFile_.index()) {
    if (entry.type != FileType::ApplicationArchive) continue;
    if (directory.isEmpty()) directory = tempFiles_.createTempDir();
    last = extractor_.extractFile(entry, directory);
  }
  applicationArchive_ = last;
  return applicationArchive_;
}

}  // namespace vessant
