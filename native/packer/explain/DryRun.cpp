#include "packer/explain/DryRun.h"

#include <map>

#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// What stands for the characters by which the launcher makes its directories' names unique.
constexpr const char* kPlannedDirectory = "vsjXXXXXX";

}  // namespace

void NotedLog::log(const SString& text, LogLevel /*level*/) {
  lines_.push_back(str(text));
}

ChildResult NotedPlatform::executeCommand(const ChildCommand& command, ProgressSink& progress) {
  NotedCommand noted{str(command.command),
                     str(command.workingDirectory),
                     command.captureOutput,
                     std::exchange(variables_, {}),
                     "",
                     "",
                     0};
  if (runs) {
    SString output;
    SString errors;
    ChildCommand real = command;
    real.stdoutText = &output;
    real.stderrText = &errors;
    noted.status = LinuxPlatformImpl::executeCommand(real, progress).exitCode;
    noted.output = str(output);
    noted.errors = str(errors);
  }
  commands_.push_back(std::move(noted));
  return {};
}

void NotedPlatform::setEnvironmentVariable(const SString& name, const SString& value) {
  LinuxPlatformImpl::setEnvironmentVariable(name, value);
  variables_.emplace_back(str(name), str(value));
}

bool NotedPlatform::hasFreeSpace(const SString& /*directory*/, std::uint32_t /*byteCount*/,
                                 std::uint32_t /*fileCount*/) const {
  return true;
}

/// What is set behind a command restores what was before it, and belongs to none.
std::vector<NotedCommand> NotedPlatform::take() {
  variables_.clear();
  return std::exchange(commands_, {});
}

const SString& PlannedFiles::extractedPath(const FileIndexEntry& entry) {
  if (extractsVerification && entry.type == FileType::VerificationClass) {
    return EmbeddedFiles::extractedPath(entry);
  }
  path_ = planned(entry);
  return path_;
}

SString PlannedFiles::extractApplicationArchives() const {
  SString last;
  for (const FileIndexEntry& entry : launcherFile().index()) {
    if (entry.type == FileType::ApplicationArchive) last = planned(entry);
  }
  return last;
}

SString PlannedFiles::planned(const FileIndexEntry& entry) const {
  return joinPath(joinPath(tempFiles_.tempRootSetting(), kPlannedDirectory), entry.fileName);
}

DryRun::DryRun(const std::string& installer, RunArguments& runArguments)
    : arguments(runArguments),
      path(absolutePath(sstr(installer))),
      messages(platform),
      services{log, progress, messages, cancelFlag, platform},
      tempFiles(services, arguments.tempDirectory),
      extractor(path, services),
      files(launcherFile, extractor, tempFiles),
      modeByte(path, lastTrailerByte),
      launch{services,
             files,
             tempFiles,
             modeByte,
             path,
             path,
             arguments.classPathPrefix,
             arguments.classPathSuffix},
      search{launch, arguments.javaHome} {
  launcherFile.loadFileIndex(path, nullptr, log, messages);
}

DryRun::~DryRun() {
  tempFiles.cleanupTempFiles();
}

std::unique_ptr<TagFile> readTags(DryRun& run, const FileIndexEntry& entry) {
  const StdFile stream = openFile(run.path, OpenMode::Read);
  if (stream == nullptr) throw failure(str(run.path) + ": cannot be opened");
  auto tags = std::make_unique<TagFile>();
  tags->load(stream.get(), entry.fileName, entry.offset, entry.length, run.log);
  return tags;
}
namespace {

constexpr const char* kConsole = "-console";

using TextOption = SString RunArguments::*;

/// Options with a value that matters here, and those whose value does not.
const std::map<std::string, TextOption>& optionsWithValue() {
  static const std::map<std::string, TextOption> options = {
      {"-vs:javahome", &RunArguments::javaHome},
      {"-vs:tempdir", &RunArguments::tempDirectory},
      {"-cp:p", &RunArguments::classPathPrefix},
      {"-cp:a", &RunArguments::classPathSuffix},
      {"-vs:log", nullptr},
      {"-vs:orig", nullptr},
      {"-vs:in", nullptr},
  };
  return options;
}

bool isOtherAction(const std::string& word) {
  return word == "-vs:in" || word == "-vs:extract" || word == "-vs:version";
}

void readFlag(const std::string& word, RunArguments& run) {
  if (word == "-vs:silent" || word == "-vs:extract" || word == "-vs:version") return;
  const bool isConsole = word == kConsole || word == "-accessibility";
  if (isConsole || word == "-vs:javaconsole") run.javaConsole = true;
  if (word == "-vs:javaconsole") return;
  run.passThrough.add(isConsole ? SString(kConsole) : sstr(word));
}

}  // namespace

void readRunArguments(const std::vector<std::string>& words, RunArguments& run) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (isOtherAction(words[i])) run.otherActions.push_back(words[i]);
    const auto option = optionsWithValue().find(words[i]);
    if (option == optionsWithValue().end()) {
      readFlag(words[i], run);
      continue;
    }
    if (i + 1 == words.size()) continue;
    ++i;
    if (option->second != nullptr) run.*(option->second) = sstr(words[i]);
  }
}

}  // namespace vessant
