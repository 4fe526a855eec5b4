#include "launcher/launch/SideFiles.h"

#include "launcher/base/Handles.h"
#include "launcher/base/Readers.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

void appendSeparated(SString& text, const SString& addition) {
  if (!text.isEmpty()) text += ' ';
  text.append(addition);
}

}  // namespace

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

SString systemProperty(const SString& name, const SString& value, JvmTags& jvm) {
  return jvm.tag(jvmtag::kSystemProperty) + name + jvm.tag(jvmtag::kSystemSeparator) +
         expandJVMMacros(jvm, value);
}

SString runtimeSystemProperties(const SString& launcherFile, JvmTags& jvm) {
  SString result;
  StringDeque lines;
  readLines(sideFilePath(launcherFile, sidefile::kSystemProperties), lines);
  for (const SString& line : lines) {
    const SString::Size equals = line.find('=');
    if (equals == SString::npos) continue;
    appendSeparated(result, systemProperty(line.substr(0, equals), line.substr(equals + 1), jvm));
  }
  return result;
}

SString runtimeJavaArguments(const SString& launcherFile, JvmTags& jvm) {
  SString result;
  StringDeque lines;
  readLines(sideFilePath(launcherFile, sidefile::kJavaArguments), lines);
  for (const SString& line : lines) {
    const SString expanded = expandJVMMacros(jvm, line);
    if (!expanded.isEmpty()) appendSeparated(result, expanded);
  }
  const SString required = jvm.tag(jvmtag::kRequiredArguments);
  if (!required.isEmpty()) result.append(" ").append(required);
  return result;
}

}  // namespace vessant
