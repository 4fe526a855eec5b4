// The manifest that packs the extracted files of an installer again, to the same bytes if it can.
#pragma once

#include <string>

#include "packer/Installer.h"

namespace vessant {

/// Says of each file what its index entry says, so that the packer has nothing to choose.
class UnpackedManifest {
 public:
  /// The installer's structure must be sound; it must outlive this.
  explicit UnpackedManifest(const Installer& installer);

  /// The names of the manifest and of the launcher's file, which no packed file has.
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::string& launcherName() const { return launcherName_; }

  /// The whole manifest, for a file in the directory of the extracted ones.
  [[nodiscard]] std::string text() const;
  /// Whether packing with this manifest makes the installer again, byte for byte. An installer that
  /// was not packed by vspack may have its files in another order or gaps of its own.
  [[nodiscard]] bool makesSameBytes() const { return align_ || plain_; }

 private:
  [[nodiscard]] std::string freeName(const std::string& ending) const;
  [[nodiscard]] bool isLaidOut(bool align) const;
  [[nodiscard]] bool isGapWritten(std::uint64_t start, std::uint64_t end, bool lineBreak) const;

  const Installer& installer_;
  std::string name_;
  std::string launcherName_;
  bool align_ = false;
  bool plain_ = false;
};

}  // namespace vessant
