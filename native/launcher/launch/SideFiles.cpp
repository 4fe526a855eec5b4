#include "launcher/launch/SideFiles.h"

#include "launcher/base/Handles.h"
#include "launcher/base/Readers.h"

namespace vessant {

SString sideFilePath(const SString& launcherFile, std::string_view suffix) {
  const SString::Size separator = launcherFile.findLastOf("/\\");
  const SString::Size dot = launcherFile.findLastOf(".");
  const bool hasExtension = separator != SString::npos && dot != SString::npos && dot > separator;
  return (hasExtension ? launcherFile.substr(0, dot) : launcherFile) + suffix;
}

bool readLines(const SString& path, StringDeque& lines) {
  const StdFile file = openFile(path, OpenMode::Read);
  if (file == nullptr) return false;
  bool more = true;
  while (more) {
    SString line;
    more = readLine(file.get(), line);
    lines.add(line);
  }
  return true;
}

}  // namespace vessant
