#include "packer/Listing.h"

#include <cstdio>

#include "launcher/archive/ModeByte.h"
#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"
#include "packer/IndexReader.h"
#include "packer/Manifest.h"

namespace vessant {
namespace {

/// One line of the table. The name comes last: it may be of any length.
SString lineOf(const FileIndexEntry& entry) {
  char columns[96];
  std::snprintf(columns, sizeof(columns), "%-14s %10u %10u %10u  ", fileTypeName(entry.type),
                entry.fileId, entry.length, entry.offset);
  SString line = columns + entry.fileName;
  if (entry.hasSizeInformation) {
    line.append("  (expands to " + longToString(entry.expandedFileCount) + " files, " +
                longToString(entry.expandedSize) + " bytes)");
  }
  return line + "\n";
}

}  // namespace

SString listLauncherFile(const SString& path, LogSink& log, const MessageSource& messages) {
  LauncherFile file;
  loadIndex(file, path, log, messages);
  if (file.index().isEmpty()) throw LauncherException(path + ": carries no files");
  std::int32_t modeByte = kNoModeByte;
  ModeByteProbe probe(path, modeByte);
  SString text = "mode byte " + longToString(probe.ownModeByte()) + "\n" +
                 "kind                   id     length     offset  name\n";
  for (const FileIndexEntry& entry : file.index()) text.append(lineOf(entry));
  return text;
}

}  // namespace vessant
