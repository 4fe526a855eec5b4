#include "launcher/archive/ModeByte.h"

#include <cstdio>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/Handles.h"

namespace vessant {
namespace {

std::int32_t readModeByte(const SString& fileName) {
  const StdFile file = openFile(fileName, OpenMode::Read);
  if (file == nullptr) return kNoModeByte;
  if (std::fseek(file.get(), -kModeByteDistance, SEEK_END) != 0) return kNoModeByte;
  const int byte = std::getc(file.get());
  return byte == EOF ? kNoModeByte : byte;
}

}  // namespace

std::int32_t ModeByteProbe::launcherModeByte(const SString& fileName) {
  if (fileName != launcherFileName_) return readModeByte(fileName);
  // Once: the launcher asks again when it ends, and by then its file may be gone.
  if (lastTrailerByte_ == kNoModeByte) lastTrailerByte_ = readModeByte(fileName);
  return lastTrailerByte_;
}

}  // namespace vessant
