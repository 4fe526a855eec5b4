#include "launcher/launch/JavaArguments.h"

#include "launcher/base/Handles.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
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

ClassPathBuilder::ClassPathBuilder(LaunchContext& context, const JvmTags& jvm)
    : context_(context),
      jvm_(jvm),
      separator_(jvm.tag(jvmtag::kClassPathSeparator)),
      useEnvironment_(jvm.tag(jvmtag::kUseClassPathVariable) == "1") {}

SString ClassPathBuilder::build(const StringDeque& entries, const SString& archive,
                                bool includeArchives) const {
  SString classPath;
  // The quotes come before everything else: an option that was not given is an empty quoted entry.
  addClassPathOption(classPath, quoted(context_.classPathPrefix));
  appendClassPathEntry(classPath, readSideFileClassPath(sidefile::kClassPathFirst));
  appendClassPathEntry(classPath, jvm_.tag(jvmtag::kOwnClassPath));
  appendClassPathEntry(classPath, readSideFileClassPath(sidefile::kClassPath));
  for (const SString& entry : entries) appendClassPathEntry(classPath, asEntry(entry));
  appendClassPathEntry(classPath, asEntry(archive));
  if (includeArchives) appendClassPathEntry(classPath, extractedArchives(!useEnvironment_));
  appendClassPathEntry(classPath, readSideFileClassPath(sidefile::kClassPathLast));
  addClassPathOption(classPath, quoted(context_.classPathSuffix));
  return classPath;
}

void ClassPathBuilder::appendClassPathEntry(SString& classPath, const SString& entry) const {
  if (entry.isEmpty()) return;
  if (!classPath.isEmpty()) classPath.append(separator_);
  classPath.append(entry);
}

/// An option of the command line begins with a quote by now, and is never taken for a list file.
/// Kept: a class path that begins with "@" is one.
void ClassPathBuilder::addClassPathOption(SString& classPath, const SString& text) const {
  const SString entry = trimmed(text);
  if (entry.view().starts_with('@')) {
    appendClassPathEntry(classPath, readClassPathFile(entry.substr(1), true));
  } else {
    appendClassPathEntry(classPath, entry);
  }
}

SString ClassPathBuilder::readClassPathFile(const SString& path, bool warn) const {
  SString classPath;
  StringDeque lines;
  if (!readLines(path, lines) && warn) {
    context_.services.log("Could not find the file " + path + " while building the classpath.",
                          LogLevel::Warning);
  }
  for (const SString& line : lines) appendClassPathEntry(classPath, line);
  return classPath;
}

SString ClassPathBuilder::readSideFileClassPath(std::string_view suffix) const {
  return readClassPathFile(sideFilePath(context_.originalLauncherFileName, suffix), false);
}

/// Each archive is extracted when a command first asks for it, into a directory of its own: two may
/// have the same name.
SString ClassPathBuilder::extractedArchives(bool quote) const {
  SString classPath;
  for (const FileIndexEntry& entry : context_.embeddedFiles.launcherFile().index()) {
    if (entry.type != FileType::ClassPathArchive) continue;
    const SString& path = context_.embeddedFiles.extractedPath(entry);
    appendClassPathEntry(classPath, quote ? quoted(path) : path);
  }
  return classPath;
}

/// No shell takes the quotes off a class path that goes into an environment variable.
SString ClassPathBuilder::asEntry(const SString& entry) const {
  return useEnvironment_ ? withoutOuterQuotes(entry) : entry;
}

}  // namespace vessant
