#include "packer/Extraction.h"

#include <filesystem>
#include <utility>

#include "packer/FileNames.h"
#include "packer/OutputFile.h"
#include "packer/Progress.h"
#include "packer/Text.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

}  // namespace

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

}  // namespace vessant
