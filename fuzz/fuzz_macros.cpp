// A launch command, expanded for a JVM file: the input's first line is the command, the rest is the
// JVM file.

#include <cstdlib>

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "launcher/driver/LauncherServices.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/launch/LaunchScript.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 512;  // nested macros multiply
  if (size > kLongest) return 0;
  const vessant::SString text = vessant::fuzz::textOf(data, size);
  const vessant::SString::Size newline = text.find('\n');
  const vessant::SString command = text.substr(0, newline);
  vessant::fuzz::QuietLog log;
  vessant::TagFile tags;
  vessant::LauncherState state;
  state.silent = true;
  vessant::LauncherServices services(state);
  try {
    if (newline != vessant::SString::npos) {
      const vessant::StdFile stream =
          vessant::fuzz::streamOf(data + newline + 1, size - newline - 1);
      if (stream != nullptr) tags.load(stream.get(), "jvm", 0, -1, log);
    }
    vessant::JVMFile jvmFile(tags);
    vessant::LaunchScript script(command, true, true, services.launch);
    static_cast<void>(script.resolveCommand(jvmFile));
  } catch (const vessant::LauncherException&) {
  } catch (const vessant::LengthException&) {
  }
  services.tempFiles.cleanupTempFiles();
  return 0;
}
