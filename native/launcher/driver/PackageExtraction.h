// PackageExtraction: "-vs:extract". Writes what the launcher file carries into the current
// directory together with an input file, with which the same scripts run from disk.
#pragma once

#include "launcher/archive/LauncherFormat.h"
#include "launcher/driver/LauncherServices.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/driver/LoadedObjects.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

class PackageExtraction {
 public:
  /// All must outlive this.
  PackageExtraction(LauncherState& state, LauncherServices& services, LoadedObjects& objects)
      : state_(state), services_(services), objects_(objects) {}

  /// Reads the index, without the objects that it describes, and writes everything. Throws
  /// LauncherException.
  void extractFiles();

 private:
  void writeExtractedInputFile();

  LauncherState& state_;
  LauncherServices& services_;
  LoadedObjects& objects_;
};

}  // namespace vessant
