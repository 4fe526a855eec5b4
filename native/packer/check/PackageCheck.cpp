#include "packer/check/PackageCheck.h"

#include <cstdio>
#include <memory>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/tagfile/TagFile.h"
#include "packer/NoLog.h"
#include "packer/Text.h"
#include "packer/check/CommandTrial.h"
#include "packer/check/FileCheck.h"
#include "packer/check/JvmFileCheck.h"
#include "packer/check/ScriptCheck.h"
#include "packer/check/ScriptFilesCheck.h"
#include "packer/check/TagCheck.h"

namespace vessant {
namespace {

std::optional<TextKind> textKindOf(FileType type) {
  if (type == FileType::Instructions) return TextKind::Instructions;
  if (type == FileType::JvmFile) return TextKind::JvmFile;
  if (type == FileType::LaunchScript) return TextKind::LaunchScript;
  return std::nullopt;
}

/// Why the launcher's own parser refuses a text; empty when it does not.
std::string whyRefused(std::string bytes, const std::string& label) {
  bytes += '\n';  // fmemopen takes no empty text
  const StdFile stream(::fmemopen(bytes.data(), bytes.size(), "r"));
  if (stream == nullptr) return "";
  NoLog log;
  try {
    TagFile().load(stream.get(), sstr(label), 0, TagFile::kToEndOfFile, log);
    return "";
  } catch (const LauncherException& error) {
    return str(error.message());
  }
}

class PackageCheck {
 public:
  PackageCheck(Package& package, const LaunchCheckOptions& options, Findings& findings)
      : package_(package), options_(options), findings_(findings) {}

  void run();

 private:
  void readTexts();
  void readText(PackageFile& file, TextKind kind);
  [[nodiscard]] MacroTags macroTags() const;
  void checkTexts();
  void checkSearchAll();

  Package& package_;
  const LaunchCheckOptions& options_;
  Findings& findings_;
};

void PackageCheck::run() {
  readTexts();
  const PackageFile* script = package_.first(FileType::Instructions);
  if (script != nullptr) package_.statements = readStatements(script->text);
  checkTexts();
  checkScriptFiles(package_, findings_);
  checkSearchAll();
  JarCache jars;
  const PackageFile* launch = package_.first(FileType::LaunchScript);
  if (launch != nullptr) checkLaunch(package_, *launch, jars, options_, findings_);
  checkFiles(package_, jars, findings_);
}

void PackageCheck::readTexts() {
  for (PackageFile& file : package_.files) {
    const std::optional<TextKind> kind = textKindOf(file.type);
    if (kind) readText(file, *kind);
  }
}

/// The launcher has the last word: what only it refuses is reported in its words.
void PackageCheck::readText(PackageFile& file, TextKind kind) {
  const std::string bytes = file.bytes.text();
  Findings found;
  file.text = readTagText(file.label, bytes, kind, found);
  for (const Finding& finding : found.sorted()) findings_.add(finding);
  if (found.hasErrors()) return;
  const std::string reason = whyRefused(bytes, file.label);
  if (!reason.empty()) findings_.error(file.label, 1, "refused-text", reason);
}

/// The tags that any text of the package puts in as a macro.
MacroTags PackageCheck::macroTags() const {
  MacroTags names;
  for (const PackageFile& file : package_.files) {
    if (file.type == FileType::Instructions) continue;
    for (const TextTag& tag : file.text.tags()) {
      for (const TextValue& value : tag.values) {
        for (const std::string& name : macroTagsIn(value.meant)) names.insert(name);
      }
    }
  }
  return names;
}

void PackageCheck::checkTexts() {
  const MacroTags names = macroTags();
  const PackageFile* script = package_.first(FileType::Instructions);
  for (const PackageFile& file : package_.files) {
    const std::optional<TextKind> kind = textKindOf(file.type);
    if (!kind) continue;
    checkTags(file.text, *kind, names, findings_);
    if (&file == script) checkScript(file.text, package_.statements, findings_);
    if (file.type != FileType::JvmFile) continue;
    checkJvmFile(file.text, isLaunchedById(package_, file), findings_);
  }
}

/// Behind a JVM file that has the whole disk searched no other is tried by its hints.
void PackageCheck::checkSearchAll() {
  const PackageFile* hiding = nullptr;
  for (const PackageFile* file : package_.all(FileType::JvmFile)) {
    if (isMessageFile(file->text)) continue;
    if (hiding != nullptr) {
      return findings_.warning(hiding->label, hiding->text.value("SEARCH_ALL")->line,
                               "search-all-hides",
                               "the hints of " + quotedName(file->name) +
                                   " and of all files behind it are never tried: SEARCH_ALL "
                                   "belongs into the last JVM file");
    }
    const std::string value = file->text.textOf("SEARCH_ALL");
    if (!value.empty() && value != "0") hiding = file;
  }
}

}  // namespace

void checkPackage(Package& package, const LaunchCheckOptions& options, Findings& findings) {
  PackageCheck(package, options, findings).run();
}

}  // namespace vessant
