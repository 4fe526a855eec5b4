#include "support/LaunchFixture.h"

namespace vessant::test {

LaunchFixture::LaunchFixture() {
  tree.dir("app");
}

LaunchFixture::~LaunchFixture() {
  tempFiles.cleanupTempFiles();
}

void LaunchFixture::load() {
  file.write(tree.path("app/setup.bin"));
  launcherFile.loadFileIndex(originalLauncherFileName, nullptr, run.log, run.messages);
  run.log.clear();
}

std::unique_ptr<TagFile> LaunchFixture::tags(const std::string& text) {
  const std::string path = tree.file("tags/file.tag", text);
  return std::make_unique<TagFile>(SString(std::string_view(path)), run.log);
}

}  // namespace vessant::test
