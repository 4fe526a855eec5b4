#include "packer/ListCommand.h"

#include <cstdio>
#include <memory>
#include <string>

#include "packer/FileKinds.h"
#include "packer/Installer.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// One line of the table. The name comes last: it may be of any length.
std::string rowOf(const FileIndexEntry& entry) {
  char columns[96];
  std::snprintf(columns, sizeof(columns), "%-14s %10u %10u %10u  ", fileTypeName(entry.type),
                entry.fileId, entry.length, entry.offset);
  std::string row = columns + printable(entry.fileName);
  if (entry.hasSizeInformation) {
    row += "  (expands to " + std::to_string(entry.expandedFileCount) + " files, " +
           std::to_string(entry.expandedSize) + " bytes)";
  }
  return row + "\n";
}

void list(const std::string& path, std::ostream& out) {
  const Installer installer(path);
  installer.requireIndex();
  out << "mode byte " << int{installer.modeByte()} << "\n"
      << "kind                   id     length     offset  name\n";
  for (const FileIndexEntry& entry : installer.entries()) out << rowOf(entry);
}

}  // namespace

void addListCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("list", "List the files that an installer carries");
  const auto path = std::make_shared<std::string>();
  command->add_option("INSTALLER", *path, "The installer")->required();
  command->callback([path, &session] { list(*path, session.out); });
}

}  // namespace vessant
