#include "packer/InfoCommand.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/TextUtil.h"
#include "packer/CommandOptions.h"
#include "packer/FileKinds.h"
#include "packer/Installer.h"
#include "packer/Text.h"
#include "packer/check/Machine.h"

namespace vessant {
namespace {

/// One JVM file: a Java that the installer takes.
struct WantedJava {
  std::string file;
  std::string description;
  /// As written: name=value.
  std::vector<std::string> properties;
  bool searchesWholeDisk = false;
};

struct InstallerInfo {
  std::string path;
  std::uint64_t size = 0;
  /// In UTF-8.
  std::string title;
  /// Empty when it cannot be told.
  std::string launcherVersion;
  std::string launcherMachine;
  std::uint64_t launcherSize = 0;
  int mode = 0;
  std::vector<std::string> files;
  std::vector<WantedJava> javas;
  /// The names of the JVM installers.
  std::vector<std::string> bundledRuntimes;
  /// As written.
  std::string command;
  /// The statements, as written.
  std::vector<std::string> script;
};

/// Codes have 16 bits at most, so three bytes are enough (RFC 3629).
void appendUtf8(std::string& text, std::uint32_t code) {
  const auto tail = [&text, code](unsigned shift) {
    text += static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
  };
  if (code < 0x80U) {
    text += static_cast<char>(code);
  } else if (code < 0x800U) {
    text += static_cast<char>(0xC0U | (code >> 6U));
    tail(0);
  } else {
    text += static_cast<char>(0xE0U | ((code >> 12U) & 0xFU));
    tail(6);
    tail(0);
  }
}

/// A title as users see it. Bytes that are no ASCII stand for themselves, as Latin-1.
std::string shownTitle(const SString& text) {
  std::string title;
  for (const std::uint32_t code : decodeUnicodeEscapes(text)) {
    if (code == 0) break;
    appendUtf8(title, code);
  }
  return title;
}

std::vector<std::string> valuesOf(const TagFile& tags, const char* name) {
  std::vector<std::string> values;
  const StringDeque* found = tags.findValues(name);
  if (found == nullptr) return values;
  for (const SString& value : *found) values.push_back(str(value));
  return values;
}

/// Of several scripts of one kind the launcher uses the first.
void addText(const FileIndexEntry& entry, const TagFile& tags, InstallerInfo& info) {
  if (entry.type == FileType::JvmFile) {
    info.javas.push_back({str(entry.fileName), shownTitle(tags.getValue("DESC")),
                          valuesOf(tags, "JVM_PROPERTIES"), tags.getBoolean("SEARCH_ALL", false)});
  } else if (entry.type == FileType::Instructions && info.script.empty()) {
    info.script = valuesOf(tags, "INSTRUCTIONS");
  } else if (entry.type == FileType::LaunchScript && info.command.empty()) {
    info.title = shownTitle(tags.getValue("DESC"));
    info.command = str(tags.getValue("COMMAND"));
  }
}

void addFile(const Installer& installer, const FileIndexEntry& entry, InstallerInfo& info) {
  info.files.push_back(str(entry.fileName));
  if (entry.type == FileType::JvmInstaller) info.bundledRuntimes.push_back(str(entry.fileName));
  if (!isTextType(entry.type)) return;
  TagFile tags;
  installer.loadTags(entry, tags);
  addText(entry, tags, info);
}

std::string joined(const std::vector<std::string>& texts, const char* between) {
  std::string result;
  for (const std::string& text : texts) result += (result.empty() ? "" : between) + text;
  return result;
}

/// One line of the answer; the label only where it is new.
std::string row(const std::string& label, const std::string& value) {
  constexpr std::size_t kColumn = 10;
  const std::string gap(kColumn - std::min(kColumn, label.size()), ' ');
  return label + gap + printable(value) + "\n";
}

std::string javaText(const WantedJava& java) {
  std::string text = java.description + " (" + java.file + ")";
  if (!java.properties.empty()) text += ": " + joined(java.properties, ", ");
  if (java.searchesWholeDisk) text += "; looked for on the whole disk";
  return text;
}

/// A launcher without a note is older than notes, or none.
std::string launcherText(const InstallerInfo& info) {
  const std::string version = info.launcherVersion.empty() ? "unknown" : info.launcherVersion;
  const std::string machine =
      info.launcherMachine.empty() ? "no ELF program" : info.launcherMachine;
  return "version " + version + ", " + machine + ", " + std::to_string(info.launcherSize) +
         " bytes";
}

/// Reads the head of the launcher, the index and the texts, whatever the size of the rest.
InstallerInfo infoOf(const Installer& installer) {
  constexpr std::size_t kElfHead = 64;
  InstallerInfo info;
  info.path = installer.path();
  info.size = installer.size();
  info.mode = installer.modeByte();
  const ByteSource launcher = installer.launcher();
  info.launcherSize = launcher.length();
  info.launcherVersion = launcherVersionOf(launcher);
  info.launcherMachine = machineOf(launcher.bytesAt(0, kElfHead));
  for (const FileIndexEntry& entry : installer.entries()) addFile(installer, entry, info);
  return info;
}

std::string infoAsText(const InstallerInfo& info) {
  std::string text =
      row("installer", info.path) + row("title", info.title) + row("launcher", launcherText(info));
  text += row("mode", std::to_string(info.mode) + (isWizardMode(info.mode) ? " (wizard)" : ""));
  text += row("size", std::to_string(info.size) + " bytes, " + std::to_string(info.files.size()) +
                          " files");
  const char* label = "Java";
  for (const WantedJava& java : info.javas) {
    text += row(label, javaText(java));
    label = "";
  }
  if (!info.bundledRuntimes.empty()) text += row("brings", joined(info.bundledRuntimes, ", "));
  text += row("command", info.command);
  label = "script";
  for (const std::string& statement : info.script) {
    text += row(label, statement);
    label = "";
  }
  return text;
}

std::string infoAsJson(const InstallerInfo& info) {
  Json javas = Json::array();
  for (const WantedJava& java : info.javas) {
    javas.push_back({{"file", java.file},
                     {"description", java.description},
                     {"properties", java.properties},
                     {"searchAll", java.searchesWholeDisk}});
  }
  return jsonText({{"installer", info.path},
                   {"size", info.size},
                   {"title", info.title},
                   {"launcher",
                    {{"version", info.launcherVersion},
                     {"machine", info.launcherMachine},
                     {"size", info.launcherSize}}},
                   {"mode", info.mode},
                   {"files", info.files},
                   {"java", javas},
                   {"bundledRuntimes", info.bundledRuntimes},
                   {"command", info.command},
                   {"script", info.script}});
}

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

void addInfoCommand(CLI::App& app, Session& session) {
  struct InfoOptions {
    std::string installer;
    bool json = false;
  };
  CLI::App* command = app.add_subcommand("info", "Tell what an installer is");
  const auto options = std::make_shared<InfoOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  addJsonOption(*command, options->json, "Write it as JSON");
  command->callback([options, &session] {
    const Installer installer(options->installer);
    installer.requireIndex();
    const InstallerInfo info = infoOf(installer);
    session.out << (options->json ? infoAsJson(info) : infoAsText(info));
  });
}

}  // namespace vessant
