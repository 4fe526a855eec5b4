// Writes installers: a launcher with files, their index, the mode byte and the trailer behind it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "packer/Finding.h"
#include "packer/Manifest.h"
#include "packer/Session.h"

namespace vessant {

/// A file to place.
struct PlacedPart {
  std::uint64_t length = 0;
  /// A text whose last line does not end gets a line break behind it, outside its length: the
  /// launcher reads whole lines and would go on into what follows.
  bool needsLineBreak = false;
};

struct Layout {
  /// Of each file, in order. May lie beyond what an index can say.
  std::vector<std::uint64_t> offsets;
  std::uint64_t indexOffset = 0;

  /// Whether every number fits into the index's 32 bits.
  [[nodiscard]] bool fits() const;
};

/// Large files begin on a page, so that systems which share equal blocks find them in every
/// version of an installer, and copies can be made without moving bytes.
inline constexpr std::uint64_t kAlignedSize = 65536;
inline constexpr std::uint64_t kAlignment = 4096;

/// Places the files behind a launcher of `launcherLength` bytes.
[[nodiscard]] Layout layOut(std::uint64_t launcherLength, const std::vector<PlacedPart>& parts,
                            bool align);

/// In two steps, so that what cannot be packed is known before anything is written.
class LauncherFileWriter {
 public:
  /// Looks at all files of the manifest, whose output and launcher are set. What the format cannot
  /// hold is a finding. Throws LauncherException, naming the file, for one that cannot be read.
  LauncherFileWriter(const Manifest& manifest, Findings& findings);

  /// Writes the installer, executable for everybody who may read it. It takes its name in one
  /// step; on failure nothing is left of it. Throws LauncherException, naming the file concerned.
  void write(const Session& session) const;

 private:
  /// A file as it was measured; `write` refuses one that has another length by then.
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
