// A launcher file's index and the tag files in it.

#include "FuzzInput.h"
#include "launcher/archive/LauncherFile.h"
#include "launcher/base/Exceptions.h"

namespace {

using vessant::TagFile;

/// Takes what the tag files describe and makes nothing of it.
class NoObjects : public vessant::EmbeddedObjectBuilder {
 public:
  void addJvmFile(TagFile& /*tags*/) override {}
  [[nodiscard]] bool hasInstructions() const override { return false; }
  void setInstructions(TagFile& /*tags*/) override {}
  [[nodiscard]] bool hasLaunchScript() const override { return false; }
  void setLaunchScript(TagFile& /*tags*/) override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::fuzz::InputFile input(data, size);
  vessant::fuzz::QuietRun run;
  NoObjects builder;
  try {
    vessant::LauncherFile file;
    file.loadFileIndex(vessant::SString(input.path()), &builder, run.services.log,
                       run.services.messages);
  } catch (const vessant::LauncherException&) {
  }
  return 0;
}
