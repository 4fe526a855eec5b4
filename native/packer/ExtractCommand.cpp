#include "packer/ExtractCommand.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "packer/FileKinds.h"
#include "packer/Installer.h"
#include "packer/InstallerCheck.h"
#include "packer/OutputFile.h"
#include "packer/Text.h"
#include "packer/UnpackedManifest.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

/// Writes files into a directory: nothing is written before every name has been found to be good
/// and free.
class Extraction {
 public:
  /// `force`: replace files that are there already. The directory is made when it is missing.
  Extraction(const Installer& installer, std::string directory, bool force)
      : installer_(installer.path()), directory_(std::move(directory)), force_(force) {}

  // Each throws LauncherException for a name that would lead out of the directory or cannot be
  // taken, before anything is written.
  void add(const Installer& installer, const FileIndexEntry& entry);
  void addBytes(const std::string& name, const ByteSource& bytes, bool isProgram);
  void addText(const std::string& name, const std::string& text);

  /// Writes the files in the order in which they were added; each takes its name when it is whole.
  void run(const Session& session) const;

 private:
  struct Target {
    std::string name;
    std::vector<ByteSource> bytes;  // one, or none for a text
    std::string text;
    bool isProgram;
  };

  [[nodiscard]] std::string pathOf(const std::string& name) const;
  void checkTarget(const std::string& name) const;
  void removeLink(const std::string& path) const;

  std::string installer_;
  std::string directory_;
  bool force_;
  std::vector<Target> targets_;
};

void Extraction::add(const Installer& installer, const FileIndexEntry& entry) {
  const bool isProgram =
      entry.type == FileType::JvmInstaller || entry.type == FileType::EmbeddedLauncher;
  addBytes(str(entry.fileName), installer.bytesOf(entry), isProgram);
}

void Extraction::addBytes(const std::string& name, const ByteSource& bytes, bool isProgram) {
  checkTarget(name);
  targets_.push_back({name, {bytes}, "", isProgram});
}

void Extraction::addText(const std::string& name, const std::string& text) {
  checkTarget(name);
  targets_.push_back({name, {}, text, false});
}

std::string Extraction::pathOf(const std::string& name) const {
  return (fs::path(directory_) / name).string();
}

/// A link counts as taken even when it leads nowhere: writing through it could end anywhere.
void Extraction::checkTarget(const std::string& name) const {
  const std::string flaw = nameFlaw(name);
  if (!flaw.empty()) throw failure(quotedName(name) + " is not extracted: the name " + flaw);
  std::error_code missing;
  const fs::file_status status = fs::symlink_status(pathOf(name), missing);
  if (!fs::exists(status)) return;
  const std::string path = printable(pathOf(name));
  if (!force_) throw failure(path + ": is there already; --force replaces it");
  if (fs::equivalent(pathOf(name), installer_, missing)) {
    throw failure(path + ": is the installer itself and is not replaced");
  }
  if (!fs::is_regular_file(status) && !fs::is_symlink(status)) {
    throw failure(path + ": is no regular file and is not replaced");
  }
}

/// What is written must not follow a link out of the directory.
void Extraction::removeLink(const std::string& path) const {
  std::error_code error;
  if (fs::is_symlink(fs::symlink_status(path, error))) fs::remove(path, error);
  if (error && error != std::errc::no_such_file_or_directory) {
    throw failure(printable(path) + ": " + error.message());
  }
}

void Extraction::run(const Session& session) const {
  std::error_code error;
  fs::create_directories(directory_, error);
  if (error) throw failure(printable(directory_) + ": " + error.message());
  std::uint64_t total = 0;
  for (const Target& target : targets_) {
    if (!target.bytes.empty()) total += target.bytes.front().length();
  }
  Progress progress(session, "extracting", total);
  for (const Target& target : targets_) {
    removeLink(pathOf(target.name));
    OutputFile file(pathOf(target.name),
                    target.isProgram ? OutputFile::kProgram : OutputFile::kData);
    file.write(target.text);
    for (const ByteSource& bytes : target.bytes) {
      file.append(bytes, [&progress](std::uint64_t count) { progress.advance(count); });
    }
    file.publish();
  }
}

struct ExtractOptions {
  std::string installer;
  std::vector<std::string> names;
  std::string directory = ".";
  bool force = false;
};

/// Only the files that the user names.
void extractSome(const Installer& installer, const ExtractOptions& options,
                 const Session& session) {
  Extraction extraction(installer, options.directory, options.force);
  for (const std::string& name : options.names) extraction.add(installer, installer.require(name));
  extraction.run(session);
}

/// All files, the launcher, and a manifest that packs them again.
void extractAll(const Installer& installer, const ExtractOptions& options, const Session& session) {
  const UnpackedManifest manifest(installer);
  Extraction extraction(installer, options.directory, options.force);
  for (const FileIndexEntry& entry : installer.entries()) extraction.add(installer, entry);
  extraction.addBytes(manifest.launcherName(), installer.launcher(), true);
  extraction.addText(manifest.name(), manifest.text());
  extraction.run(session);
  if (manifest.makesSameBytes()) return;
  session.err << "vspack: " << manifest.name()
              << ": packs an installer that works the same, but whose files lie elsewhere\n";
}

int extract(const ExtractOptions& options, const Session& session) {
  const Installer installer(options.installer);
  installer.requireIndex();
  if (!options.names.empty()) {
    extractSome(installer, options, session);
    return kFine;
  }
  Findings findings;
  checkStructure(installer, findings);
  if (findings.hasErrors()) {
    printFindings(findings, session.err);
    return kTrouble;
  }
  extractAll(installer, options, session);
  return kFine;
}

struct CatOptions {
  std::string installer;
  std::string name;
};

void cat(const CatOptions& options, std::ostream& out) {
  const Installer installer(options.installer);
  installer.requireIndex();
  installer.bytesOf(installer.require(options.name)).forEachBlock([&out](auto block) {
    if (out.write(block.data(), static_cast<std::streamsize>(block.size()))) return;
    throw failure("standard output: " + str(systemErrorText()));
  });
}

}  // namespace

void addExtractCommand(CLI::App& app, Session& session) {
  CLI::App* command =
      app.add_subcommand("extract", "Write the files of an installer out, without running it");
  const auto options = std::make_shared<ExtractOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  command->add_option("NAME", options->names,
                      "Only files of these names or ids; without one also the launcher, and a "
                      "manifest that packs all of it again");
  command->add_option("-C,--directory", options->directory, "Write into this directory")
      ->type_name("DIR");
  command->add_flag("--force", options->force, "Replace files that are there already");
  command->callback([options, &session] { session.status = extract(*options, session); });
}

void addCatCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("cat", "Write one file of an installer out");
  const auto options = std::make_shared<CatOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  command->add_option("NAME", options->name, "The file's name or id")->required();
  command->callback([options, &session] { cat(*options, session.out); });
}

}  // namespace vessant
