#include "launcher/launch/JavaArguments.h"

#include "launcher/launch/SideFiles.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

void appendSeparated(SString& text, const SString& addition) {
  if (!text.isEmpty()) text += ' ';
  text.append(addition);
}

}  // namespace

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
