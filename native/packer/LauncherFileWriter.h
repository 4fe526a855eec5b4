// Writes installers: a launcher with files, their index, the mode byte and the trailer behind it.
#pragma once

#include <string>

#include "packer/Finding.h"
#include "packer/Manifest.h"
#include "packer/Session.h"

namespace vessant {

class LauncherFileWriter {
 public:
  /// Looks at all files of the manifest, whose output and launcher are set. What the format cannot
  /// hold is a finding. Throws LauncherException, naming the file, for one that cannot be read.
  LauncherFileWriter(const Manifest& manifest, Findings& findings);

  /// Writes the installer, executable for everybody who may read it. It takes its name in one
  /// step; on failure nothing is left of it. Throws LauncherException, naming the file concerned.
  void write(const Session& session) const;

 private:
  struct Part {
    PackedFile file;
    std::uint64_t length;
    std::uint64_t offset;
    bool needsLineBreak;
  };

  void checkLauncher(Findings& findings);
  void measure(const PackedFile& file);
  void place(Findings& findings);

  const Manifest& manifest_;
  std::uint64_t launcherLength_ = 0;
  std::uint64_t indexOffset_ = 0;
  bool fits_ = false;
  std::vector<Part> parts_;
};

}  // namespace vessant
