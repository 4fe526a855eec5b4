#include "packer/explain/ExplainCommand.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "packer/Installer.h"
#include "packer/Text.h"
#include "packer/check/Package.h"
#include "packer/check/Statement.h"
#include "packer/explain/HomeList.h"
#include "packer/explain/StatementWords.h"

namespace vessant {
namespace {

const char* wordFor(HomeState state) {
  if (state == HomeState::Exists) return "exists";
  if (state == HomeState::Missing) return "missing";
  return state == HomeState::NotExecutable ? "not executable" : "passed over";
}

void writeProperty(const PropertyAnswer& property, std::ostream& out) {
  out << "        " << (property.isRight ? "ok     " : "wrong  ") << printable(property.name)
      << ": wanted \"" << printable(property.wanted) << "\", got ";
  if (property.got) {
    out << '"' << printable(*property.got) << "\"\n";
  } else {
    out << "no answer\n";
  }
}

void writeAnswer(const HomeAnswer& answer, std::ostream& out) {
  if (!answer.answered) {
    out << "      refused: the verification class did not answer; the command ended with status "
        << answer.status << '\n'
        << "        " << printable(answer.command) << '\n';
    if (!answer.errors.empty()) out << "        it said: " << printable(answer.errors) << '\n';
    return;
  }
  out << (answer.isTaken ? "      taken\n" : "      refused\n");
  for (const PropertyAnswer& property : answer.properties) writeProperty(property, out);
}

void writeHome(const Home& home, std::ostream& out) {
  std::string word = wordFor(home.state);
  word.resize(16, ' ');
  out << "    " << word << printable(home.path) << "  (" << printable(home.origin) << ")";
  if (!home.reason.empty()) out << ": " << printable(home.reason);
  out << '\n';
  if (home.answer) writeAnswer(*home.answer, out);
}

void writeHomesOfFile(const HomesOfFile& file, std::ostream& out) {
  out << "  " << printable(str(file.entry->fileName)) << ", \"" << printable(file.description)
      << "\"\n";
  if (!file.namesProperties) {
    out << "    none: it names no JVM_PROPERTIES, so it is for ILAUNCH alone\n";
    return;
  }
  if (file.isHidden) out << "    no hints: a file in front of it has SEARCH_ALL\n";
  for (const Home& home : file.homes) writeHome(home, out);
  if (file.searchesDisk) out << "    then, if no hint helps, the whole disk is searched\n";
}

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
  void writeEmbeddedLaunch(std::uint32_t id);
  void writePlan(const LaunchPlan& plan);
  void writeSideFiles();
  [[nodiscard]] bool has(Verb verb) const;

  DryRun& run_;
  std::ostream& out_;
  const FileIndexEntry* launchScript_ = nullptr;
  std::vector<Statement> statements_;
  std::vector<HomesOfFile> homes_;
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
  std::set<std::uint32_t> written;
  for (const Statement& statement : statements_) {
    if (statement.verb != Verb::ILaunch) continue;
    const std::optional<std::int64_t> id = wholeNumber(statement.argument(0));
    const auto number = static_cast<std::uint32_t>(id.value_or(0));
    if (id && *id > 0 && written.insert(number).second) writeEmbeddedLaunch(number);
  }
}

void Explainer::writeFoundLaunch() {
  const std::optional<ChosenHome> chosen = chooseHome(homes_);
  if (has(Verb::InstallJvm)) {
    out_ << "\nLaunching with the JVM that the installer brings is not shown: only unpacking it "
            "tells where it lies.\n";
  }
  if (!chosen) {
    if (has(Verb::FindJvm)) out_ << "\nNo Java is found by the hints: N1 is 0 behind FIND_JVM.\n";
    return;
  }
  out_ << "\nLaunching with " << printable(str(chosen->file->entry->fileName))
       << " and the Java at " << printable(chosen->home->path)
       << (chosen->home->answer ? "" : ", if that is verified (--try tells)") << '\n';
  writePlan(planLaunch(run_, *launchScript_, *chosen->file->entry, chosen->home->path));
}

void Explainer::writeEmbeddedLaunch(std::uint32_t id) {
  const FileIndexEntry* file = run_.launcherFile.findById(id);
  if (file == nullptr || file->type != FileType::JvmFile) return;
  out_ << "\nLaunching with the embedded JVM file " << id << ", " << printable(str(file->fileName))
       << '\n';
  writePlan(planLaunch(run_, *launchScript_, *file, ""));
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

void explainInstaller(const ExplainOptions& options, const Session& session) {
  Installer(options.installer).requireIndex();
  RunArguments arguments;
  readRunArguments(options.arguments, arguments);
  if (!options.javaHome.empty()) arguments.javaHome = sstr(options.javaHome);
  DryRun run(options.installer, arguments);
  for (const std::string& setting : options.variables) setVariable(run, setting);
  run.platform.runs = options.tries;
  run.files.extractsVerification = options.tries;
  Explainer(run, session.out).write();
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
  command->callback([options, &session] { explainInstaller(*options, session); });
}

}  // namespace vessant
