// A launcher file's index and the tag files in it.

#include <cstdlib>

#include <unistd.h>

#include "FuzzInput.h"
#include "launcher/archive/LauncherFile.h"
#include "launcher/base/Exceptions.h"
#include "launcher/driver/output/Messages.h"

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
  char path[] = "/tmp/vessant-fuzz-XXXXXX";
  const int fd = ::mkstemp(path);
  if (fd < 0 || ::write(fd, data, size) != static_cast<ssize_t>(size)) std::abort();
  ::close(fd);
  vessant::fuzz::QuietLog log;
  const vessant::fuzz::QuietPlatform platform;
  const vessant::Messages messages(platform);
  NoObjects builder;
  try {
    vessant::LauncherFile file;
    file.loadFileIndex(path, &builder, log, messages);
  } catch (const vessant::LauncherException&) {
  }
  ::unlink(path);
  return 0;
}
