// A launcher file with files to extract, and places to extract them to.
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "launcher/archive/Extraction.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"

namespace vessant::test {

/// One step of an extraction's progress.
inline constexpr std::size_t kChunk = 61439;

/// Sets the cancel flag when the display has moved on by a number of steps.
class CancellingProgress : public RecordingProgress {
 public:
  explicit CancellingProgress(CancelFlag& flag) : flag_(flag) {}

  void addProgressDots(std::int32_t count) override {
    RecordingProgress::addProgressDots(count);
    if (steps == cancelAt) flag_.set();
  }

  std::int32_t cancelAt = 0;

 private:
  CancelFlag& flag_;
};

class ExtractionFixture : public ::testing::Test {
 protected:
  /// Makes `content` the bytes of the entry, in the middle of a launcher file.
  void embed(std::string_view content) {
    tree.file("setup.bin", std::string("STUB") + std::string(content) + "and more");
    entry.offset = 4;
    entry.length = static_cast<std::uint32_t>(content.size());
  }
  std::string extract() { return extractTo(target); }
  std::string extractTo(const std::string& directory) {
    return str(extractor.extractFile(entry, SString(directory)));
  }

  /// Bytes that tell where they stand.
  static std::string pattern(std::size_t length) {
    std::string bytes(length, '\0');
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(i % 251);
    return bytes;
  }

  TempTree tree;
  FakeRun run;
  CancellingProgress progress{run.cancelFlag};
  RunServices services{run.log, progress, run.messages, run.cancelFlag, run.platform};
  SString launcherFile{tree.path("setup.bin")};
  LauncherFile index;
  FileExtractor extractor{launcherFile, index, services};
  std::string target = tree.dir("target");
  std::string copy = tree.path("target/file");
  FileIndexEntry entry = [] {
    FileIndexEntry file;
    file.type = FileType::ApplicationArchive;
    file.fileName = "file";
    return file;
  }();
};

}  // namespace vessant::test
