#include "launcher/launch/JavaArguments.h"

#include "launcher/launch/SideFiles.h"

namespace vessant {
namespace {

void appendSeparated(SString& text, const SString& addition) {
  if (!text.isEmpty()) text += ' ';
  text.append(addition);
}

}  // namespace

SString systemProperty(const SString& name, const SString& value, JVMFile& jvmFile) {
  return jvmFile.tag("SYSTEM") + name + jvmFile.tag("SYSTEM_SEPARATOR") +
         expandJVMMacros(jvmFile, value);
}

SString runtimeSystemProperties(const SString& launcherFile, JVMFile& jvmFile) {
  SString result;
  StringDeque lines;
  readLines(sideFilePath(launcherFile, sidefile::kSystemProperties), lines);
  for (const SString& line : lines) {
    const SString::Size equals = line.find('=');
    if (equals == SString::npos) continue;
    appendSeparated(result,
                    systemProperty(line.substr(0, equals), line.substr(equals + 1), jvmFile));
  }
  return result;
}

SString runtimeJavaArguments(const SString& launcherFile, JVMFile& jvmFile) {
  SString result;
  StringDeque lines;
  readLines(sideFilePath(launcherFile, sidefile::kJavaArguments), lines);
  for (const SString& line : lines) {
    const SString expanded = expandJVMMacros(jvmFile, line);
    if (!expanded.isEmpty()) appendSeparated(result, expanded);
  }
  const SString required = jvmFile.tag("REQ_JAVA_ARGS");
  if (!required.isEmpty()) result.append(" ").append(required);
  return result;
}

}  // namespace vessant
