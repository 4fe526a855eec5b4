#include "LaunchRoom.h"

#include <algorithm>

namespace vessant::test {

void LaunchRoom::setJvmTag(const char* name, std::string_view value) {
  jvmTags.setValue(name, value);
}

std::string LaunchRoom::resolve(std::string_view command) {
  LaunchScript script(command, true, true, launch);
  return str(script.resolveCommand(jvmFile));
}

std::string LaunchRoom::scriptError(std::string_view command) {
  const std::string prefix = "Launch script error: ";
  const std::string message = thrownMessage([&] { static_cast<void>(resolve(command)); });
  EXPECT_TRUE(message.starts_with(prefix)) << message;
  return message.substr(std::min(prefix.size(), message.size()));
}

std::string LaunchRoom::resolveWithArchive(std::string_view command, std::string_view archive) {
  TagFile tags;
  tags.setValue("COMMAND", command);
  tags.setValue("ARCHIVE", archive);
  LaunchScript script(tags, true, launch);
  return str(script.resolveCommand(jvmFile));
}

std::string LaunchRoom::extracted(std::int32_t index) {
  return str(embeddedFiles.extractedPath(*launcherFile.index().get(index)));
}

}  // namespace vessant::test
