// The mode byte of a launcher file: the byte just ahead of its trailer.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"

namespace vessant {

/// No mode byte: not read yet, or the file cannot be read.
inline constexpr std::int32_t kNoModeByte = -1;

/// Answers the mode byte of files and remembers that of the launcher itself.
class ModeByteProbe {
 public:
  /// Both are the caller's; `lastTrailerByte` is where the launcher's own mode byte is kept.
  ModeByteProbe(const SString& launcherFileName, std::int32_t& lastTrailerByte)
      : launcherFileName_(launcherFileName), lastTrailerByte_(lastTrailerByte) {}

  /// The byte 9 bytes before the end of the file, 0..255, or kNoModeByte.
  std::int32_t launcherModeByte(const SString& fileName);
  /// The mode byte of the launcher itself.
  std::int32_t ownModeByte() { return launcherModeByte(launcherFileName_); }

 private:
  const SString& launcherFileName_;
  std::int32_t& lastTrailerByte_;
};

/// Modes in which the program is an installer's wizard: it gets the JVM file's extra environment
/// variables, and its exit status 232 is no failure to tell the user about.
[[nodiscard]] constexpr bool isWizardMode(std::int32_t modeByte) {
  return modeByte == 0 || modeByte == 2;
}

}  // namespace vessant
