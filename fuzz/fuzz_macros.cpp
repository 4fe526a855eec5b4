// A launch command, expanded for a JVM file: the input's first line is the command, the rest is the
// JVM file.

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/launch/LaunchScript.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 512;  // nested macros multiply
  if (size > kLongest) return 0;
  const vessant::fuzz::FirstLine input(data, size);
  vessant::fuzz::QuietRun run;
  vessant::TagFile tags;
  try {
    const vessant::StdFile stream = vessant::fuzz::streamOf(input.rest, input.restSize);
    if (stream != nullptr) tags.load(stream.get(), "jvm", 0, -1, run.services.log);
    vessant::JVMFile jvmFile(tags);
    vessant::LaunchScript script(input.line, true, true, run.services.launch);
    static_cast<void>(script.resolveCommand(jvmFile));
  } catch (const vessant::LauncherException&) {
  } catch (const vessant::LengthException&) {
  }
  run.services.tempFiles.cleanupTempFiles();
  return 0;
}
