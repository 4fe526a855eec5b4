// Writes files of an installer into a directory: nothing is written before every name has been
// found to be good and free.
#pragma once

#include <string>
#include <vector>

#include "packer/ByteSource.h"
#include "packer/Installer.h"
#include "packer/Session.h"

namespace vessant {

class Extraction {
 public:
  /// `force`: replace files that are there already. The directory is made when it is missing.
  Extraction(std::string directory, bool force) : directory_(std::move(directory)), force_(force) {}

  // Each throws LauncherException for a name that would lead out of the directory or cannot be
  // taken, before anything is written.
  void add(const Installer& installer, const FileIndexEntry& entry);
  void addBytes(const std::string& name, const ByteSource& bytes, bool isProgram);
  void addText(const std::string& name, const std::string& text);

  /// Writes the files in the order in which they were added; each takes its name when it is whole.
  void run(const Session& session) const;

 private:
  struct Target {
    std::string name;
    std::vector<ByteSource> bytes;  // one, or none for a text
    std::string text;
    bool isProgram;
  };

  [[nodiscard]] std::string pathOf(const std::string& name) const;
  void checkTarget(const std::string& name) const;
  void removeLink(const std::string& path) const;

  std::string directory_;
  bool force_;
  std::vector<Target> targets_;
};

}  // namespace vessant
