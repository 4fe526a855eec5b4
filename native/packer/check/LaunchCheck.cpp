#include "packer/check/LaunchCheck.h"

#include <algorithm>

#include "launcher/base/PathUtil.h"
#include "packer/Text.h"
#include "packer/check/CommandTrial.h"
#include "packer/check/JavaCommand.h"
#include "packer/check/JvmFileCheck.h"
#include "packer/check/ShellCommand.h"
#include "packer/check/TagCheck.h"

namespace vessant {
namespace {

/// For a package without JVM files of its own: its JVM installer brings one.
constexpr std::string_view kUsualJvmFile =
    "DESC: Java\nJVM_PROPERTIES: java.vm.version=...\nJVM_EXE: bin/java\n"
    "CLASSPATH: \"-classpath \"\nCLASSPATH_SEPARATOR: \":\"\nSYSTEM: \"-D\"\n"
    "SYSTEM_SEPARATOR: \"=\"\n";

/// Java's, on Linux.
constexpr const char* kSeparator = ":";

/// What is reported as wrong in the JVM file would be reported in every word of the command again.
bool hasUsualSwitches(const TagText& jvmFile) {
  const std::string separator = jvmFile.textOf("CLASSPATH_SEPARATOR");
  const std::string system = jvmFile.textOf("SYSTEM");
  return (separator.empty() || separator == kSeparator) &&
         (system.empty() || system.starts_with('-'));
}

class LaunchCheck {
 public:
  LaunchCheck(const Package& package, const PackageFile& script, JarCache& jars, Findings& findings)
      : package_(package), script_(script), jars_(jars), findings_(findings) {}

  void run(const LaunchCheckOptions& options);

 private:
  void collectJvmFiles();
  void tryWith(const TagText& jvmFile);
  void keepCertain(const Findings& found);
  void checkShell(const ShellReading& reading);
  void checkBarePath(const std::string& what);
  void checkStart(const ShellReading& reading, const TagText& jvmFile, bool usesClassPath);
  void checkEntry(const JavaStart& start, const PackageFile& file);
  void checkLeftOut(const JavaStart& start, const PackageFile& file);
  [[nodiscard]] const JarFile* jarOf(const std::string& entry);
  void checkClassPath();
  void checkArchiveTag();
  void checkUnused();
  void checkPlanted();
  void error(const char* name, const std::string& text) {
    findings_.error(script_.label, line_, name, text);
  }

  const Package& package_;
  const PackageFile& script_;
  JarCache& jars_;
  Findings& findings_;
  int line_ = 1;  // of the command
  TagText usual_;
  std::vector<const TagText*> jvmFiles_;
  bool hasSearchable_ = false;
  TrialCommand used_;  // what any of the commands used
};

void LaunchCheck::run(const LaunchCheckOptions& options) {
  const TagText& text = script_.text;
  requireTag(text, "COMMAND", "the command line that starts the program", findings_);
  if (text.find("DESC") == nullptr) {
    findings_.warning(script_.label, 1, "missing-tag",
                      "there is no DESC, the title that users see: \"Running ...\"");
  }
  const TextValue* command = text.value("COMMAND");
  if (command == nullptr) return;
  line_ = command->line;
  collectJvmFiles();
  for (const TagText* jvmFile : jvmFiles_) tryWith(*jvmFile);
  if (package_.isComplete) checkClassPath();
  checkArchiveTag();
  checkUnused();
  if (options.strict) checkPlanted();
}

void LaunchCheck::collectJvmFiles() {
  for (const PackageFile* file : package_.all(FileType::JvmFile)) {
    if (!file->text.isReadable()) continue;
    jvmFiles_.push_back(&file->text);
    hasSearchable_ = hasSearchable_ || !isMessageFile(file->text);
  }
  if (hasSearchable_) return;
  Findings none;
  usual_ = readTagText("", kUsualJvmFile, TextKind::JvmFile, none);
  jvmFiles_.push_back(&usual_);
}

/// Each JVM file makes another command of the script, and a mistake may show with one of them only.
void LaunchCheck::tryWith(const TagText& jvmFile) {
  TrialWorld world{script_.text, jvmFiles_, {}, package_.applicationArchive() != nullptr};
  for (const PackageFile* archive : package_.all(FileType::ClassPathArchive)) {
    world.archives.push_back(archive->id);
  }
  Findings found;
  const TrialCommand command = tryCommand(world, jvmFile, found);
  keepCertain(found);
  used_.usesClassPath = used_.usesClassPath || command.usesClassPath;
  used_.usesApplicationArchive = used_.usesApplicationArchive || command.usesApplicationArchive;
  if (command.usesSystemProperties && !isMessageFile(jvmFile)) {
    requireTag(jvmFile, "SYSTEM", "the switch of a system property: \"-D\"", findings_);
    requireTag(jvmFile, "SYSTEM_SEPARATOR", "between a property and its value: \"=\"", findings_);
  }
  if (command.isBroken) return;
  const ShellReading reading = readShellWords(command.text);
  checkShell(reading);
  if (isMessageFile(jvmFile) || !hasUsualSwitches(jvmFile)) return;
  for (const CommandFlaw& flaw : flawsOf(reading, jvmFile.textOf("JVM_EXE"))) {
    findings_.add({script_.label, line_, flaw.severity, flaw.text, flaw.name});
  }
  if (package_.isComplete) checkStart(reading, jvmFile, command.usesClassPath);
}

/// The tags and archives of a file that is not there are not known.
void LaunchCheck::keepCertain(const Findings& found) {
  for (const Finding& finding : found.sorted()) {
    const bool mayBeInMissingFile =
        finding.name == "unknown-jvm-tag" || finding.name == "missing-archive";
    if (package_.isComplete || !mayBeInMissingFile) findings_.add(finding);
  }
}

void LaunchCheck::checkShell(const ShellReading& reading) {
  if (reading.classPathInQuotes) {
    error("quoted-class-path",
          "%CP%() quotes its archives itself and must stand outside of quotes");
  } else {
    for (const std::string& path : reading.barePaths) checkBarePath(path);
  }
  if (reading.openQuote != 0) {
    error("unclosed-shell-quote", std::string("the shell's quote ") + reading.openQuote +
                                      " is not closed, so the user's arguments become a part of "
                                      "the text");
  }
}

void LaunchCheck::checkBarePath(const std::string& what) {
  std::string name = writtenFormOf(what);
  for (const PackageFile* archive : package_.all(FileType::ClassPathArchive)) {
    if (what == archiveMark(archive->id)) name = archive->name;
  }
  error("unquoted-path", printable(name) +
                             " stands outside of quotes and falls apart where the "
                             "path has a blank: put quotes around it");
}

void LaunchCheck::checkStart(const ShellReading& reading, const TagText& jvmFile,
                             bool usesClassPath) {
  const JavaStart start = readJavaStart(reading, jvmFile.textOf("JVM_EXE"));
  const std::string reason =
      whyStartFails(start, kSeparator, [this](const std::string& entry) { return jarOf(entry); });
  if (!reason.empty()) return error("missing-main-class", reason);
  if (!start.isKnown) return;
  for (const PackageFile& file : package_.files) {
    const bool isJar =
        file.type == FileType::ApplicationArchive || file.type == FileType::ClassPathArchive;
    if (isJar) checkEntry(start, file);
    // The class path may travel in a variable.
    if (isJar && !usesClassPath) checkLeftOut(start, file);
  }
}

/// How the command is to name a packed jar.
std::string macroFor(const PackageFile& jar, const char* option) {
  if (jar.type == FileType::ClassPathArchive) return "%CP%()";
  return std::string(option) + "'%APPLICATION_ARCHIVE%()'";
}

/// A packed jar lies in a temporary directory at the user's, and nowhere else.
void LaunchCheck::checkEntry(const JavaStart& start, const PackageFile& file) {
  const std::string beside = kPathBegin + std::string("function LAUNCHER_DIR") + kPathEnd + "/";
  const std::string entries = kSeparator + start.classPath + kSeparator;
  for (const std::string& path : {file.name, "./" + file.name, beside + file.name}) {
    if (entries.find(kSeparator + path + kSeparator) == std::string::npos) continue;
    error("missing-archive", quotedName(file.name) +
                                 " is packed and does not lie beside the installer: write " +
                                 macroFor(file, ""));
  }
}

void LaunchCheck::checkLeftOut(const JavaStart& start, const PackageFile& file) {
  if (!start.classPath.empty() || start.mainClass.empty()) return;
  if (!jars_.of(file).holdsClass(start.mainClass)) return;
  error("missing-main-class", "no class path leads to " + quotedName(start.mainClass) + ", which " +
                                  quotedName(file.name) + " has: put " + macroFor(file, "-cp ") +
                                  " in front of the class");
}

const JarFile* LaunchCheck::jarOf(const std::string& entry) {
  const auto isMark = [&entry](const std::string& what) {
    return entry == kPathBegin + what + kPathEnd;
  };
  const PackageFile* application = package_.applicationArchive();
  if (application != nullptr && isMark(kApplicationMark)) return &jars_.of(*application);
  for (const PackageFile* archive : package_.all(FileType::ClassPathArchive)) {
    if (isMark(archiveMark(archive->id))) return &jars_.of(*archive);
  }
  return nullptr;
}

/// The macro alone gives an empty class path.
void LaunchCheck::checkClassPath() {
  if (!used_.usesClassPath || package_.first(FileType::ClassPathArchive) != nullptr) return;
  const std::string command = script_.text.value("COMMAND")->meant;
  const bool hasEntries =
      command.find("%CP%(\"") != std::string::npos || !script_.text.textOf("ARCHIVE").empty();
  const auto hasOwn = [](const TagText* file) { return !file->textOf("JVM_CLASSPATH").empty(); };
  if (hasEntries || std::any_of(jvmFiles_.begin(), jvmFiles_.end(), hasOwn)) return;
  error("missing-archive",
        "nothing is on the class path of %CP%(): pack a jar as \"archive\", or "
        "name an entry in ARCHIVE");
}

/// A relative path without macros counts from the working directory, which is the installer's.
void LaunchCheck::checkArchiveTag() {
  const TextValue* archive = script_.text.value("ARCHIVE");
  if (archive == nullptr || archive->text.empty()) return;
  const auto warn = [&](const char* name, const std::string& text) {
    findings_.warning(script_.label, archive->line, name, text);
  };
  if (!used_.usesClassPath) {
    return warn("unused-archive", "ARCHIVE is a part of %CP%(), which COMMAND does not use");
  }
  const std::string& path = archive->text;
  if (path.find_first_of("%@#$*\"':") != std::string::npos) return;
  const bool isThere = fileExists(joinPath(sstr(package_.directory), path)) ||
                       (path.starts_with('/') && fileExists(sstr(path)));
  if (isThere) return;
  const bool isPacked = std::any_of(package_.files.begin(), package_.files.end(),
                                    [&path](const PackageFile& f) { return f.name == path; });
  warn("missing-archive", isPacked ? "packed archives are on the class path already: remove ARCHIVE"
                                   : "there is no " + quotedName(path) +
                                         " beside the installer, where ARCHIVE is "
                                         "looked for");
}

/// A file that is packed and never asked for makes the installer larger; more often the macro that
/// was to ask for it is missing.
void LaunchCheck::checkUnused() {
  const auto report = [this](FileType type, const char* macro) {
    for (const PackageFile* file : package_.all(type)) {
      findings_.warning(package_.label, file->line, "unused-file",
                        quotedName(file->name) + " is never used: COMMAND has no " + macro);
    }
  };
  if (!used_.usesClassPath) report(FileType::ClassPathArchive, "%CP%()");
  if (!used_.usesApplicationArchive) {
    report(FileType::ApplicationArchive, "%APPLICATION_ARCHIVE%()");
  }
}

/// The launcher puts an empty entry at both ends of the class path, which Java takes for the
/// directory that it runs in. That cannot be changed without breaking installers that rely on it.
void LaunchCheck::checkPlanted() {
  if (!used_.usesClassPath) return;
  const bool isUsers = script_.text.textOf("AUTO_SET_WORKING_DIR") == "0";
  findings_.warning(
      script_.label, line_, "planted-class",
      std::string("the class path of %CP%() begins with the working directory, so a class that "
                  "somebody put ") +
          (isUsers ? "where the user is" : "beside the installer") +
          " is loaded in place of yours: pack the jar as \"application\" and start it with -jar "
          "'%APPLICATION_ARCHIVE%()' or -cp '%APPLICATION_ARCHIVE%()'");
}

}  // namespace

void checkLaunch(const Package& package, const PackageFile& script, JarCache& jars,
                 const LaunchCheckOptions& options, Findings& findings) {
  if (!script.text.isReadable()) return;
  LaunchCheck(package, script, jars, findings).run(options);
}

}  // namespace vessant
