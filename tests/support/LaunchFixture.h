// What the launch and jvm rooms need of a run, over a fake run and a real launcher file on disk.
#pragma once

#include <memory>
#include <string>

#include "launcher/archive/Extraction.h"
#include "launcher/archive/LauncherFile.h"
#include "launcher/archive/LauncherFormat.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/tagfile/TagFile.h"
#include "support/FakeRun.h"
#include "support/LauncherFileBuilder.h"
#include "support/TempTree.h"

namespace vessant::test {

/// The launcher file is "app/setup.bin" of the tree, the temporary root "temp". `file` may be
/// filled before `load` writes it and reads its index.
struct LaunchFixture {
  LaunchFixture();
  ~LaunchFixture();

  void load();
  /// A tag file from its text.
  [[nodiscard]] std::unique_ptr<TagFile> tags(const std::string& text);

  TempTree tree;
  FakeRun run;
  LauncherFileBuilder file;
  SString launcherFileName{std::string_view(tree.path("app/setup.bin"))};
  SString originalLauncherFileName{launcherFileName};
  SString classPathPrefix;
  SString classPathSuffix;
  SString javaHome;
  SString tempRoot{std::string_view(tree.dir("temp"))};
  std::int32_t lastTrailerByte = kNoModeByte;
  LauncherFile launcherFile;
  TempFiles tempFiles{run.services, tempRoot};
  FileExtractor extractor{originalLauncherFileName, launcherFile, run.services};
  EmbeddedFiles embeddedFiles{launcherFile, extractor, tempFiles};
  ModeByteProbe modeByte{launcherFileName, lastTrailerByte};
  LaunchContext launch{run.services,    embeddedFiles,    tempFiles,
                       modeByte,        launcherFileName, originalLauncherFileName,
                       classPathPrefix, classPathSuffix};
  JVMSearchContext search{launch, javaHome};
};

}  // namespace vessant::test
