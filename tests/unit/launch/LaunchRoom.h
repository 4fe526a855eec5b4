// What the tests of launching share: a launcher file on disk, a JVM file and short ways to expand a
// command.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/jvm/JVMFile.h"
#include "launcher/launch/LaunchScript.h"
#include "support/LaunchFixture.h"
#include "support/Thrown.h"

namespace vessant::test {

[[nodiscard]] inline SString text(std::string_view bytes) {
  return SString(bytes);
}

class LaunchRoom : public ::testing::Test, protected LaunchFixture {
 protected:
  using Texts = std::vector<std::string>;
  using Line = RecordingLog::Line;

  /// Sets a tag of the JVM file; it has none at first.
  void setJvmTag(const char* name, std::string_view value);

  /// The expanded template.
  std::string resolve(std::string_view command);
  /// The error that the template ends in, behind "Launch script error: ".
  std::string scriptError(std::string_view command);
  /// A launch script with the ARCHIVE `archive`, resolved.
  std::string resolveWithArchive(std::string_view command, std::string_view archive);
  /// The path of the temporary copy of an embedded file.
  std::string extracted(std::int32_t index);

  TagFile jvmTags;
  JVMFile jvmFile{jvmTags};
};

}  // namespace vessant::test
