#include "packer/explain/ExplainCommand.h"

#include <algorithm>
#include <csignal>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "launcher/base/PathUtil.h"
#include "launcher/linux/CancelSignals.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "packer/Installer.h"
#include "packer/Text.h"
#include "packer/check/Machine.h"
#include "packer/check/Package.h"
#include "packer/check/Statement.h"
#include "packer/explain/HomeList.h"
#include "packer/explain/StatementWords.h"
#include "packer/jvm/JvmFileText.h"

namespace vessant {
namespace {

/// Stands for the directory that INSTALL_JVM 2 asks the user for.
constexpr const char* kAskedDirectory = "/DIRECTORY";

class Explainer {
 public:
  Explainer(DryRun& run, std::ostream& out) : run_(run), out_(out) {}

  void write();

 private:
  void writeHead();
  void readScript();
  void writeScript();
  void writeHomes();
  void writeLaunches();
  void writeFoundLaunch();
  void writeBundledHome();
  void writeBundledLaunch();
  void writeEmbeddedLaunch(std::uint32_t id);
  void writePlan(const LaunchPlan& plan);
  void writeSideFiles();
  [[nodiscard]] bool has(Verb verb) const;
  [[nodiscard]] std::string destination() const;
  [[nodiscard]] std::string bundledHome(const TagFile& tags) const;
  [[nodiscard]] std::unique_ptr<TagFile> bundledTags(const FileIndexEntry& installer);

  DryRun& run_;
  std::ostream& out_;
  const FileIndexEntry* launchScript_ = nullptr;
  std::vector<Statement> statements_;
  std::vector<HomesOfFile> homes_;
  /// The JVM file of the runtime that the installer brings, when it brings one.
  std::unique_ptr<TagFile> bundled_;
  bool isBundleKnown_ = false;
};

void Explainer::write() {
  launchScript_ = run_.launcherFile.findByType(FileType::LaunchScript);
  writeHead();
  readScript();
  writeScript();
  writeHomes();
  writeLaunches();
  writeSideFiles();
}

void Explainer::writeHead() {
  out_ << printable(str(run_.path)) << '\n';
  if (launchScript_ != nullptr) {
    out_ << "title: " << printable(str(readTags(run_, *launchScript_)->getValue("DESC"))) << '\n';
  }
  for (const std::string& option : run_.arguments.otherActions) {
    out_ << "With " << option << " the script does not run; what follows is a run without it.\n";
  }
}

/// Statements are numbered as jumps count them, from 1 on: lines do not help whoever has no source.
void Explainer::readScript() {
  const FileIndexEntry* script = run_.launcherFile.findByType(FileType::Instructions);
  if (script == nullptr) return;
  const std::unique_ptr<TagFile> tags = readTags(run_, *script);
  for (std::int32_t i = 0; i < tags->getValueCount("INSTRUCTIONS"); ++i) {
    statements_.push_back(readStatement(str(tags->getValue("INSTRUCTIONS", i)), i + 1));
  }
}

void Explainer::writeScript() {
  out_ << "\nThe script\n";
  if (statements_.empty()) out_ << "  there is none: the installer ends with status 255\n";
  for (std::size_t i = 0; i < statements_.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    out_ << std::string(number.size() < 4 ? 4 - number.size() : 0, ' ') << number << "  "
         << printable(statements_[i].text) << '\n';
    if (statements_[i].verb == Verb::Comment) continue;
    out_ << "        " << printable(inWords(statements_, i)) << '\n';
  }
}

void Explainer::writeHomes() {
  homes_ = listHomes(run_);
  out_ << "\nThe Java homes, in the order in which they are tried\n";
  if (homes_.empty()) out_ << "  none: the installer has no JVM file\n";
  for (const HomesOfFile& file : homes_) writeHomesOfFile(file, out_);
  if (has(Verb::InstallJvm)) writeBundledHome();
}

/// The directory that the first INSTALL_JVM unpacks into.
std::string Explainer::destination() const {
  const auto installs = [](const Statement& statement) {
    return statement.verb == Verb::InstallJvm;
  };
  const auto install = std::find_if(statements_.begin(), statements_.end(), installs);
  const bool asks = install != statements_.end() && install->argument(0) == "2";
  return asks ? kAskedDirectory : plannedDirectory(run_);
}

/// As the launcher completes it when the runtime is unpacked.
std::string Explainer::bundledHome(const TagFile& tags) const {
  const SString home = tags.getValue(jvmtag::kHome);
  if (home.isEmpty()) return destination();
  return home.view().starts_with('/') ? str(home) : str(joinPath(sstr(destination()), home));
}

/// What the installer leaves as "jvm", or, where only running it tells, what most leave.
std::unique_ptr<TagFile> Explainer::bundledTags(const FileIndexEntry& installer) {
  const Installer file(str(run_.path));
  const std::string text =
      file.isWithin(installer) ? jvmFileOfRuntime(file.bytesOf(installer)) : "";
  isBundleKnown_ = !text.empty();
  KnownJava usual;
  usual.isLookedFor = false;
  return tagsOf(isBundleKnown_ ? text : jvmFileText(usual), "jvm", run_);
}

void Explainer::writeBundledHome() {
  const FileIndexEntry* installer = run_.launcherFile.findByType(FileType::JvmInstaller);
  if (installer == nullptr) return;
  bundled_ = bundledTags(*installer);
  out_ << "  " << printable(str(installer->fileName)) << ", which the installer brings\n"
       << "    to be unpacked  " << printable(bundledHome(*bundled_)) << "  (INSTALL_JVM)\n";
}

void Explainer::writeBundledLaunch() {
  const FileIndexEntry* installer = run_.launcherFile.findByType(FileType::JvmInstaller);
  if (installer == nullptr || bundled_ == nullptr) return;
  out_ << "\nLaunching with the Java of " << printable(str(installer->fileName))
       << ", unpacked into " << printable(destination()) << '\n';
  if (destination() == kAskedDirectory) {
    out_ << "  " << kAskedDirectory << " stands for the directory that the user names\n";
  }
  if (!isBundleKnown_) {
    out_ << "  only running " << printable(str(installer->fileName))
         << " tells the JVM file that it leaves; this is with the tags that most have\n";
  }
  writePlan(planLaunch(run_, *launchScript_, *bundled_, bundledHome(*bundled_)));
}

bool Explainer::has(Verb verb) const {
  return std::any_of(statements_.begin(), statements_.end(),
                     [verb](const Statement& statement) { return statement.verb == verb; });
}

void Explainer::writeLaunches() {
  if (launchScript_ == nullptr) {
    out_ << "\nThere is no launch script: nothing can be launched.\n";
    return;
  }
  if (has(Verb::Launch)) writeFoundLaunch();
  if (has(Verb::Launch) && has(Verb::InstallJvm)) writeBundledLaunch();
  std::set<std::uint32_t> written;
  for (const Statement& statement : statements_) {
    if (statement.verb != Verb::ILaunch) continue;
    const std::optional<std::int64_t> id = wholeNumber(statement.argument(0));
    const auto number = static_cast<std::uint32_t>(id.value_or(0));
    if (id && *id > 0 && written.insert(number).second) writeEmbeddedLaunch(number);
  }
}

/// Without --try nobody knows whether the first Java that is there is also right.
void Explainer::writeFoundLaunch() {
  const std::optional<ChosenHome> chosen = chooseHome(homes_);
  if (!chosen) {
    if (has(Verb::FindJvm)) out_ << "\nNo Java is found by the hints: N1 is 0 behind FIND_JVM.\n";
    return;
  }
  out_ << "\nLaunching with " << printable(str(chosen->file->entry->fileName))
       << " and the Java at " << printable(chosen->home->path)
       << (chosen->home->answer ? "" : ", if that is verified (--try tells)") << '\n';
  writePlan(
      planLaunch(run_, *launchScript_, *readTags(run_, *chosen->file->entry), chosen->home->path));
}

void Explainer::writeEmbeddedLaunch(std::uint32_t id) {
  const FileIndexEntry* file = run_.launcherFile.findById(id);
  if (file == nullptr || file->type != FileType::JvmFile) return;
  out_ << "\nLaunching with the embedded JVM file " << id << ", " << printable(str(file->fileName))
       << '\n';
  writePlan(planLaunch(run_, *launchScript_, *readTags(run_, *file), ""));
}

void Explainer::writePlan(const LaunchPlan& plan) {
  if (!plan.failure.empty()) {
    out_ << "  fails: " << printable(plan.failure) << '\n';
    return;
  }
  out_ << "  command:     " << printable(plan.command) << '\n'
       << "  directory:   "
       << (plan.directory.empty() ? "the user's own" : printable(plan.directory)) << '\n'
       << "  output:      "
       << (plan.collectsOutput ? "collected for the log" : "the user's console") << '\n';
  for (const auto& [name, value] : plan.variables) {
    out_ << "  environment: " << printable(name) << '=' << printable(value) << '\n';
  }
}

void Explainer::writeSideFiles() {
  out_ << "\nFiles beside the installer that a launch reads\n";
  for (const SideFile& file : sideFilesOf(run_)) {
    out_ << (file.isThere ? "  read     " : "  missing  ") << printable(file.path) << "  ("
         << file.purpose << ")\n";
  }
}

struct ExplainOptions {
  std::string installer;
  std::string javaHome;
  std::vector<std::string> variables;
  std::vector<std::string> arguments;
  bool tries = false;
};

void setVariable(DryRun& run, const std::string& setting) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw failure("--env " + printable(setting) + ": write NAME=value");
  }
  run.platform.setEnvironmentVariable(sstr(setting.substr(0, equals)),
                                      sstr(setting.substr(equals + 1)));
}

/// A signal first ends the Java that is being asked and has the verification class removed; then it
/// ends vspack as it would have anyhow. Returns it, or 0.
int explainTrying(DryRun& run, std::ostream& out) {
  const CancelSignals signals(run.cancelFlag);
  try {
    Explainer(run, out).write();
  } catch (const LauncherException&) {
    if (signals.cancelledBy() == 0) throw;
  }
  return signals.cancelledBy();
}

/// Returns the signal that is to end vspack, or 0.
int explainInstaller(const ExplainOptions& options, const Session& session) {
  Installer(options.installer).requireIndex();
  RunArguments arguments;
  readRunArguments(options.arguments, arguments);
  if (!options.javaHome.empty()) arguments.javaHome = sstr(options.javaHome);
  DryRun run(options.installer, arguments);
  for (const std::string& setting : options.variables) setVariable(run, setting);
  run.platform.runs = options.tries;
  run.files.extractsVerification = options.tries;
  if (options.tries) return explainTrying(run, session.out);
  Explainer(run, session.out).write();
  return 0;
}

}  // namespace

void addExplainCommand(CLI::App& app, Session& session) {
  CLI::App* command =
      app.add_subcommand("explain", "Tell what an installer would do here, without running it");
  const auto options = std::make_shared<ExplainOptions>();
  command->add_option("INSTALLER", options->installer, "The installer")->required();
  command->add_option("--java-home", options->javaHome, "As -vs:javahome of the installer")
      ->type_name("DIR");
  command->add_option("--env", options->variables, "With this environment variable")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command->add_flag("--try", options->tries,
                    "Run the verification of each Java home and show what it answers");
  command->add_option("ARGS", options->arguments, "Arguments of the installer, behind --");
  command->callback([options, &session] {
    const int signal = explainInstaller(*options, session);
    if (signal != 0) std::raise(signal);
  });
}

}  // namespace vessant
