#include "packer/ListCommand.h"

#include <cstdio>
#include <memory>
#include <string>

#include "packer/FileKinds.h"
#include "packer/FindingOptions.h"
#include "packer/Installer.h"
#include "packer/Json.h"
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

void listAsText(const Installer& installer, std::ostream& out) {
  out << "mode byte " << int{installer.modeByte()} << "\n"
      << "kind                   id     length     offset  name\n";
  for (const FileIndexEntry& entry : installer.entries()) out << rowOf(entry);
}

void listAsJson(const Installer& installer, std::ostream& out) {
  Json files = Json::array();
  for (const FileIndexEntry& entry : installer.entries()) {
    Json file = {{"kind", fileTypeName(entry.type)},
                 {"id", entry.fileId},
                 {"length", entry.length},
                 {"offset", entry.offset},
                 {"name", str(entry.fileName)}};
    if (entry.hasSizeInformation) {
      file["unpacks"] = {{"files", entry.expandedFileCount}, {"bytes", entry.expandedSize}};
    }
    files.push_back(file);
  }
  out << jsonText({{"mode", installer.modeByte()}, {"files", files}});
}

}  // namespace

void addListCommand(CLI::App& app, Session& session) {
  struct ListOptions {
    std::string installer;
    bool json = false;
  };
  CLI::App* command = app.add_subcommand("list", "List the files that an installer carries");
  const auto options = std::make_shared<ListOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  addJsonOption(*command, options->json, "Write it as JSON");
  command->callback([options, &session] {
    const Installer installer(options->installer);
    installer.requireIndex();
    (options->json ? listAsJson : listAsText)(installer, session.out);
  });
}

}  // namespace vessant
