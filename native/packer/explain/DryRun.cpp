#include "packer/explain/DryRun.h"

#include <cstdio>
#include <map>

#include "launcher/base/Handles.h"
#include "launcher/base/PathUtil.h"
#include "launcher/launch/JavaArguments.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/launch/LaunchScript.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// What stands for the characters by which the launcher makes its directories' names unique.
constexpr const char* kPlannedDirectory = "vsjXXXXXX";

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

/// A copy of a file beside the installer would be made for %APPLICATION_ARCHIVE%("file"); here it
/// has its place already, so that none is.
void planApplicationArchive(DryRun& run, const TagFile& script) {
  constexpr std::string_view kCall = "%APPLICATION_ARCHIVE%(\"";
  const std::string command = str(script.getValue("COMMAND"));
  const std::size_t call = command.find(kCall);
  if (call == std::string::npos) return;
  const std::size_t start = call + kCall.size();
  const std::string file = command.substr(start, command.find('"', start) - start);
  run.launch.applicationArchive = joinPath(sstr(plannedDirectory(run)), fileNameOf(sstr(file)));
}

}  // namespace

void NotedLog::log(const SString& text, LogLevel /*level*/) {
  lines_.push_back(str(text));
}

/// Answers that nothing came of it, even where the command was run: a search that found what it
/// looks for would end before the last home.
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

/// Of several archives the launcher hands out the last one that it extracted.
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
      extractor(path, launcherFile, services),
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

/// Only what --try has extracted is there to be removed.
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

LaunchPlan planLaunch(DryRun& run, const FileIndexEntry& launchScript, TagFile& jvmTags,
                      const std::string& home) {
  const std::unique_ptr<TagFile> scriptTags = readTags(run, launchScript);
  if (!home.empty()) jvmTags.setValue(jvmtag::kHome, absolutePath(sstr(home)));
  planApplicationArchive(run, *scriptTags);
  LaunchScript script(*scriptTags, true, run.launch);
  JvmTags jvm(jvmTags);
  static_cast<void>(run.platform.take());
  const bool runs = std::exchange(run.platform.runs, false);
  LaunchPlan plan;
  try {
    script.execute(jvm, &run.arguments.passThrough, run.arguments.javaConsole);
    const NotedCommand command = run.platform.take().front();
    plan = {command.command, command.directory, command.collectsOutput, command.variables, ""};
  } catch (const LauncherException& error) {
    plan.failure = str(error.message());
  }
  run.platform.runs = runs;
  return plan;
}

std::string plannedDirectory(const DryRun& run) {
  return str(joinPath(run.tempFiles.tempRootSetting(), kPlannedDirectory));
}

std::unique_ptr<TagFile> tagsOf(const std::string& text, const std::string& name, DryRun& run) {
  std::string bytes = text + "\n";  // fmemopen takes no empty text
  const StdFile stream(::fmemopen(bytes.data(), bytes.size(), "r"));
  if (stream == nullptr) throw failure(name + ": cannot be read");
  auto tags = std::make_unique<TagFile>();
  tags->load(stream.get(), sstr(name), 0, TagFile::kToEndOfFile, run.log);
  return tags;
}

std::vector<SideFile> sideFilesOf(const DryRun& run) {
  std::vector<SideFile> files;
  const auto add = [&](std::string_view suffix, const char* purpose) {
    const SString path = sideFilePath(run.path, suffix);
    files.push_back({str(path), purpose, fileExists(path)});
  };
  add(sidefile::kClassPathFirst, "class path, in front");
  add(sidefile::kClassPath, "class path, in the middle");
  add(sidefile::kClassPathLast, "class path, at the end");
  add(sidefile::kSystemProperties, "system properties");
  add(sidefile::kJavaArguments, "Java arguments");
  return files;
}

}  // namespace vessant
