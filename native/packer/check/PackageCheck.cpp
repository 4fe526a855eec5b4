#include "packer/check/PackageCheck.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/tagfile/TagFile.h"
#include "packer/Session.h"
#include "packer/Text.h"
#include "packer/check/CommandTrial.h"
#include "packer/check/FileCheck.h"
#include "packer/check/JvmFileCheck.h"
#include "packer/check/ScriptCheck.h"
#include "packer/check/Statement.h"
#include "packer/check/TagCheck.h"

namespace vessant {
namespace {

/// What the kind is called in manifests and sentences.
const char* kindName(FileType type) {
  if (type == FileType::JvmFile) return "jvm";
  return type == FileType::EmbeddedLauncher ? "launcher" : "file";
}

class ScriptFilesCheck {
 public:
  ScriptFilesCheck(const Package& package, const PackageFile& script, Findings& findings)
      : package_(package), script_(script), findings_(findings) {}

  void run();

 private:
  void checkId(const Statement& statement);
  void checkFileName(const Statement& statement);
  void checkNeeded();
  void checkUnused();
  [[nodiscard]] std::string idsOf(FileType type) const;
  [[nodiscard]] bool hasSearchableFile() const;
  [[nodiscard]] bool launches() const;
  void need(bool isNeeded, FileType type, const char* name, const std::string& text);
  void notUsed(FileType type, Verb verb, const char* command);

  const Package& package_;
  const PackageFile& script_;
  Findings& findings_;
};

void ScriptFilesCheck::run() {
  for (const Statement& statement : package_.statements) {
    checkId(statement);
    checkFileName(statement);
  }
  if (package_.isComplete) checkNeeded();
  checkUnused();
}

/// ILAUNCH 0 where no file has this id is the way to end with a failure.
void ScriptFilesCheck::checkId(const Statement& statement) {
  const std::optional<std::string> argument = idArgument(statement);
  const std::optional<std::int64_t> id = argument ? wholeNumber(*argument) : std::nullopt;
  if (!id || *id < 0 || *id > std::numeric_limits<std::int32_t>::max()) return;
  const PackageFile* file = package_.withId(*id);
  if (file == nullptr && statement.verb == Verb::ILaunch && *id == 0) return;
  const bool wantsLauncher = statement.verb == Verb::ExecuteLauncher;
  const FileType wanted = wantsLauncher ? FileType::EmbeddedLauncher : FileType::JvmFile;
  if (file == nullptr && !package_.isComplete) return;
  if (file == nullptr) {
    findings_.error(script_.label, statement.line, "unknown-id",
                    "no file has the id " + *argument + idsOf(wanted));
  } else if (file->type != wanted) {
    findings_.error(script_.label, statement.line, "wrong-kind",
                    "the file with the id " + *argument + ", " + quotedName(file->name) +
                        ", is not of the kind \"" + kindName(wanted) + "\"" + idsOf(wanted));
  }
}

/// LAUNCH reads a file of the disk, and what is packed is not there.
void ScriptFilesCheck::checkFileName(const Statement& statement) {
  if (statement.verb != Verb::Launch) return;
  std::string name = statement.argument(0);
  if (name.size() > 1 && name.starts_with('"')) name = name.substr(1, name.size() - 2);
  for (const PackageFile* file : package_.all(FileType::JvmFile)) {
    if (file->name != name) continue;
    findings_.error(script_.label, statement.line, "not-a-file",
                    quotedName(name) + " is packed and no file of the user's disk: write ILAUNCH " +
                        std::to_string(file->id) + " 0");
  }
}

std::string ScriptFilesCheck::idsOf(FileType type) const {
  std::string ids;
  for (const PackageFile* file : package_.all(type)) {
    ids += (ids.empty() ? ": there are " : ", ") + std::to_string(file->id) + " (" +
           printable(file->name) + ")";
  }
  return ids.empty() ? std::string("; no file of the kind \"") + kindName(type) + "\" is packed"
                     : ids;
}

void ScriptFilesCheck::checkNeeded() {
  const bool finds = uses(package_, Verb::FindJvm);
  need(launches(), FileType::LaunchScript, "no-launch-script",
       "the script launches, but there is no launch script: add a line \"launch-script\"");
  need(finds || uses(package_, Verb::Verify), FileType::VerificationClass, "no-verification-class",
       "no JVM can be verified without the verification class: add a line \"verification\" with "
       "verify.jar");
  need(uses(package_, Verb::InstallJvm), FileType::JvmInstaller, "no-jvm-installer",
       "INSTALL_JVM has nothing to install: add a line \"jvm-installer\"");
  if (finds && !hasSearchableFile()) {
    findings_.error(package_.label, package_.line, "no-jvm-file",
                    "FIND_JVM finds nothing without a JVM file: add a line \"jvm\"");
  }
}

bool ScriptFilesCheck::hasSearchableFile() const {
  const std::vector<const PackageFile*> files = package_.all(FileType::JvmFile);
  return std::any_of(files.begin(), files.end(),
                     [](const PackageFile* file) { return !isMessageFile(file->text); });
}

bool ScriptFilesCheck::launches() const {
  return std::any_of(package_.statements.begin(), package_.statements.end(),
                     [](const Statement& statement) {
                       return statement.verb == Verb::Launch ||
                              (statement.verb == Verb::ILaunch && statement.argument(0) != "0");
                     });
}

void ScriptFilesCheck::need(bool isNeeded, FileType type, const char* name,
                            const std::string& text) {
  if (!isNeeded || package_.first(type) != nullptr) return;
  findings_.error(package_.label, package_.line, name, text);
}

void ScriptFilesCheck::checkUnused() {
  notUsed(FileType::JvmInstaller, Verb::InstallJvm, "INSTALL_JVM");
  notUsed(FileType::EmbeddedLauncher, Verb::ExecuteLauncher, "EXECUTE_LAUNCHER");
}

void ScriptFilesCheck::notUsed(FileType type, Verb verb, const char* command) {
  const PackageFile* file = package_.first(type);
  if (file == nullptr || uses(package_, verb)) return;
  findings_.warning(package_.label, file->line, "unused-file",
                    quotedName(file->name) + " is never used: the script has no " + command);
}

/// Of two scripts the launcher takes the first.
void checkSecond(const Package& package, FileType type, const char* name, const char* what,
                 Findings& findings) {
  const std::vector<const PackageFile*> files = package.all(type);
  for (std::size_t i = 1; i < files.size(); ++i) {
    findings.warning(package.label, files[i]->line, name,
                     quotedName(files[i]->name) + " is never used: the first " + what + ", " +
                         quotedName(files.front()->name) + ", counts");
  }
}

/// Reports ids that name no file or one of another kind, files that the script needs and that are
/// missing, and files that nothing uses.
void checkScriptFiles(const Package& package, Findings& findings) {
  checkSecond(package, FileType::Instructions, "second-script", "instruction script", findings);
  checkSecond(package, FileType::LaunchScript, "second-launch-script", "launch script", findings);
  const PackageFile* script = package.first(FileType::Instructions);
  if (script == nullptr && !package.isComplete) return;
  if (script == nullptr) {
    findings.error(package.label, package.line, "no-script",
                   "there is no instruction script, and the installer only ends with status 255: "
                   "add a line \"instructions\"");
    return;
  }
  ScriptFilesCheck(package, *script, findings).run();
}

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
