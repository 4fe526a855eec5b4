#include "launcher/launch/ClassPath.h"

#include "launcher/base/TextUtil.h"
#include "launcher/launch/SideFiles.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {

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
