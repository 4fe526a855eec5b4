#include "packer/explain/HomeList.h"

#include <ostream>

#include <sys/stat.h>
#include <unistd.h>

#include "launcher/base/PathUtil.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/jvm/JVMVerification.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "packer/Session.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// The launcher's judgement.
bool isExpected(const SString& output, const StringPairPtrDeque& expected) {
  NoLog log;
  return readAnswer(output, expected, log).kind == JVMAnswer::Kind::Expected;
}

/// The same for one property alone.
bool isRight(const std::string& got, const StringPair& property) {
  StringPairPtrDeque one;
  auto pair = std::make_unique<StringPair>();
  pair->name = property.name;
  pair->value = property.value;
  one.add(std::move(pair));
  return isExpected(SString(kMagicLine) + "\n" + sstr(got) + "\n", one);
}

/// The lines behind the magic one, or nothing when that is not there.
std::optional<std::vector<std::string>> valuesIn(const SString& output) {
  std::optional<std::vector<std::string>> values;
  SString::Size position = 0;
  while (position < output.length()) {
    SString line;
    readLine(output, position, line);
    if (values) {
      values->push_back(str(line));
    } else if (line == kMagicLine) {
      values.emplace();
    }
  }
  return values;
}

/// The verdict on the whole is the launcher's. Its verdict on each property comes from asking it
/// about one alone.
HomeAnswer answerOf(const NotedCommand& command, const TagFile& tags) {
  const SString output = sstr(command.output);
  NoLog log;
  StringPairPtrDeque expected;
  readExpectedProperties(tags, expected, log);
  const auto values = valuesIn(output);
  HomeAnswer answer{
      command.command, command.status, values.has_value(), isExpected(output, expected), {},
      command.errors};
  std::size_t index = 0;
  for (const StringPair& property : expected) {
    PropertyAnswer line{str(property.name), str(property.value)};
    if (values && index < values->size()) line.got = (*values)[index];
    line.isRight = line.got && isRight(*line.got, property);
    answer.properties.push_back(std::move(line));
    ++index;
  }
  return answer;
}

constexpr std::string_view kResolvedFrom = " which was resolved from ";
constexpr std::string_view kCheckingJvm = "Checking JVM at ";
constexpr std::string_view kCheckingPath = "Checking path hint ";
constexpr std::string_view kCheckingRelative = "Check path hint Relative ";
constexpr std::string_view kSkipping = "Skipping JVM at ";

/// As the launcher looks at it, but with a difference between what is not there and what cannot
/// run.
HomeState stateOf(const std::string& home, const SString& executable) {
  const SString path = joinPath(sstr(home), executable);
  struct stat status = {};
  if (::stat(path.cString(), &status) != 0) return HomeState::Missing;
  const bool isProgram = S_ISREG(status.st_mode) && ::access(path.cString(), X_OK) == 0;
  return isProgram ? HomeState::Exists : HomeState::NotExecutable;
}

/// The candidate that a log line of the search announces.
std::optional<Home> candidateIn(const std::string& line) {
  if (line.starts_with(kCheckingPath)) {
    return Home{line.substr(kCheckingPath.size()), "PATH_HINT"};
  }
  if (line.starts_with(kCheckingRelative)) {
    return Home{line.substr(kCheckingRelative.size()), "PATH_HINT beside the installer"};
  }
  const std::size_t behind = line.rfind(kResolvedFrom);
  if (!line.starts_with(kCheckingJvm) || behind == std::string::npos) return std::nullopt;
  const std::string origin = line.substr(behind + kResolvedFrom.size());
  const bool isVariable = origin.starts_with("platform hint ");
  return Home{line.substr(kCheckingJvm.size(), behind - kCheckingJvm.size()),
              isVariable ? "PLATFORM_HINT " + origin.substr(14)
                         : "PATH " + origin.substr(origin.rfind(' ') + 1)};
}

class HomeReader {
 public:
  HomeReader(DryRun& run, const FileIndexEntry& entry, JVMSearch& search)
      : run_(run), tags_(readTags(run, entry)), file_(*tags_), search_(search) {
    result_.entry = &entry;
  }

  HomesOfFile read(bool isHidden);

 private:
  void tryUserHome();
  void tryHints();
  void note();
  void noteAnswers();

  DryRun& run_;
  std::unique_ptr<TagFile> tags_;
  JVMFile file_;
  JVMSearch& search_;
  HomesOfFile result_;
};

HomesOfFile HomeReader::read(bool isHidden) {
  result_.description = str(file_.description());
  result_.namesProperties = !file_.tag(jvmtag::kProperties).isEmpty();
  result_.searchesDisk = file_.searchAll();
  result_.isHidden = isHidden;
  static_cast<void>(run_.log.take());
  static_cast<void>(run_.platform.take());
  tryUserHome();
  if (!isHidden) tryHints();
  return std::move(result_);
}

void HomeReader::tryUserHome() {
  const SString& home = run_.arguments.javaHome;
  if (home.isEmpty() || !result_.namesProperties) return;
  result_.homes.push_back({str(home), "-vs:javahome"});
  static_cast<void>(file_.verifyAt(home, search_));
  note();
}

/// Nothing ever matches here, so that the search goes on to the end of the hints.
void HomeReader::tryHints() {
  static_cast<void>(file_.searchPlatformHints(search_));
  static_cast<void>(file_.searchPathHints(search_));
  static_cast<void>(file_.searchPlatformJVMPathHints(search_));
  note();
}

/// The search tells of its candidates in its log alone.
void HomeReader::note() {
  for (const std::string& line : run_.log.take()) {
    if (std::optional<Home> home = candidateIn(line)) result_.homes.push_back(std::move(*home));
    if (!line.starts_with(kSkipping) || result_.homes.empty()) continue;
    result_.homes.back().state = HomeState::Skipped;
    result_.homes.back().reason = line.substr(line.rfind(": ") + 2);
  }
  for (Home& home : result_.homes) {
    if (home.state != HomeState::Skipped) home.state = stateOf(home.path, file_.executable());
  }
  noteAnswers();
}

/// Each home that is there and not skipped was run once, in their order.
void HomeReader::noteAnswers() {
  std::vector<NotedCommand> commands = run_.platform.take();
  if (!run_.platform.runs) return;
  auto command = commands.begin();
  for (Home& home : result_.homes) {
    const bool wasRun = home.state == HomeState::Exists || home.state == HomeState::NotExecutable;
    if (home.answer || !wasRun || command == commands.end()) continue;
    home.answer = answerOf(*command++, *tags_);
  }
}

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

}  // namespace

std::vector<HomesOfFile> listHomes(DryRun& run) {
  JVMSearch search{run.search};
  const FileIndexEntry* archive = run.launcherFile.findByType(FileType::VerificationClass);
  if (archive != nullptr) {
    search.verificationClass = {quoted(run.files.extractedPath(*archive)), quoted("Verify")};
  }
  std::vector<HomesOfFile> files;
  bool isHidden = false;
  for (const FileIndexEntry& entry : run.launcherFile.index()) {
    if (entry.type != FileType::JvmFile) continue;
    files.push_back(HomeReader(run, entry, search).read(isHidden));
    isHidden = isHidden || files.back().searchesDisk;
  }
  return files;
}

std::optional<ChosenHome> chooseHome(const std::vector<HomesOfFile>& files) {
  const auto isChosen = [](const Home& home) {
    return home.answer ? home.answer->isTaken : home.state == HomeState::Exists;
  };
  for (const char* wanted : {"-vs:javahome", ""}) {
    for (const HomesOfFile& file : files) {
      if (!file.namesProperties) continue;
      for (const Home& home : file.homes) {
        if (home.origin.starts_with(wanted) && isChosen(home)) return ChosenHome{&file, &home};
      }
    }
  }
  return std::nullopt;
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

}  // namespace vessant
