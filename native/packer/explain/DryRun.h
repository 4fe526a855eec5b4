// A run of an installer, with the arguments of a user, in which nothing happens: the launcher's own
// objects, over a system that notes commands instead of running them and extracts nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "launcher/archive/Extraction.h"
#include "launcher/archive/LauncherFile.h"
#include "launcher/archive/LauncherFormat.h"
#include "launcher/archive/TempFiles.h"
#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/driver/output/Messages.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/linux/LinuxPlatformImpl.h"

namespace vessant {

/// What a user's arguments make of a run, as far as finding and launching a JVM goes.
struct RunArguments {
  SString javaHome = {};
  SString tempDirectory = {};
  SString classPathPrefix = {};
  SString classPathSuffix = {};
  StringDeque passThrough = {};
  bool javaConsole = false;
  /// Options that make the launcher do something else than run its script.
  std::vector<std::string> otherActions = {};
};

/// Takes the arguments apart as the launcher does.
void readRunArguments(const std::vector<std::string>& words, RunArguments& run);

/// Keeps the log lines for whoever wants to know what was tried.
class NotedLog : public LogSink {
 public:
  void log(const SString& text, LogLevel level) override;
  [[nodiscard]] std::vector<std::string> take() { return std::exchange(lines_, {}); }

 private:
  std::vector<std::string> lines_;
};

/// A search without anybody who watches it.
class NoProgress : public ProgressSink {
 public:
  void addProgressDots(std::int32_t /*count*/) override {}
  void showSearchPhase(SearchPhase /*phase*/, const SString& /*text*/) override {}
};

/// A command that the launcher would have run, and what came of it when it was run for real.
struct NotedCommand {
  std::string command;
  std::string directory;
  bool collectsOutput = false;
  /// Variables that were set for it, in order.
  std::vector<std::pair<std::string, std::string>> variables;
  std::string output;
  std::string errors;
  std::int32_t status = 0;
};

/// Notes commands and tells the launcher that they answered nothing. With `runs` set they run for
/// real, and their answers are noted.
class NotedPlatform : public LinuxPlatformImpl {
 public:
  ChildResult executeCommand(const ChildCommand& command, ProgressSink& progress) override;
  void setEnvironmentVariable(const SString& name, const SString& value) override;
  [[nodiscard]] bool hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                  std::uint32_t fileCount) const override;

  bool runs = false;
  [[nodiscard]] std::vector<NotedCommand> take();

 private:
  std::vector<NotedCommand> commands_;
  std::vector<std::pair<std::string, std::string>> variables_;
};

/// Says where copies would be made. Only the verification class is made for real, and only when
/// candidates are run.
class PlannedFiles : public EmbeddedFiles {
 public:
  PlannedFiles(const LauncherFile& launcherFile, const FileExtractor& extractor,
               TempFiles& tempFiles)
      : EmbeddedFiles(launcherFile, extractor, tempFiles), tempFiles_(tempFiles) {}

  const SString& extractedPath(const FileIndexEntry& entry) override;
  [[nodiscard]] SString extractApplicationArchives() const override;

  bool extractsVerification = false;

 private:
  [[nodiscard]] SString planned(const FileIndexEntry& entry) const;

  TempFiles& tempFiles_;
  SString path_;
};

/// Everything that the launcher's searches and launches work on, made as LauncherMain makes it.
/// Runs nothing and writes nothing unless its platform and its files are told to. The destructor
/// removes what was extracted.
struct DryRun {
  /// Throws LauncherException when the installer's index or one of its texts cannot be read.
  DryRun(const std::string& installer, RunArguments& arguments);
  DryRun(const DryRun&) = delete;
  DryRun& operator=(const DryRun&) = delete;
  ~DryRun();

  // Each is made of those above it.
  RunArguments& arguments;
  SString path;
  NotedPlatform platform;
  Messages messages;
  NotedLog log;
  NoProgress progress;
  CancelFlag cancelFlag;
  RunServices services;
  LauncherFile launcherFile;
  TempFiles tempFiles;
  FileExtractor extractor;
  PlannedFiles files;
  std::int32_t lastTrailerByte = kNoModeByte;
  ModeByteProbe modeByte;
  LaunchContext launch;
  JVMSearchContext search;
};

/// A fresh copy of an embedded text's tags: what the launcher notes in them is not kept.
[[nodiscard]] std::unique_ptr<TagFile> readTags(DryRun& run, const FileIndexEntry& entry);

/// What the launcher would hand to the shell, or why it would not.
struct LaunchPlan {
  std::string command;
  /// Empty when it is the user's own.
  std::string directory;
  /// Whether what the program writes goes into the log and not to the user.
  bool collectsOutput = false;
  std::vector<std::pair<std::string, std::string>> variables;
  /// Why there is no command; empty when there is one.
  std::string failure;
};

/// What launching with a JVM file of these tags does, with `home` as its Java home unless that is
/// empty. The tags get what the launcher notes in them.
[[nodiscard]] LaunchPlan planLaunch(DryRun& run, const FileIndexEntry& launchScript,
                                    TagFile& jvmTags, const std::string& home);

/// The directory that a run would unpack something into. The launcher makes the six letters at its
/// end unique; so does the next call, and here all are the same.
[[nodiscard]] std::string plannedDirectory(const DryRun& run);

/// Tags from a text that no file holds. Throws LauncherException when the launcher would.
[[nodiscard]] std::unique_ptr<TagFile> tagsOf(const std::string& text, const std::string& name,
                                              DryRun& run);

/// A file of the author's or the user's own that changes launches.
struct SideFile {
  std::string path;
  const char* purpose;
  bool isThere;
};

/// The files beside the installer that a launch reads.
[[nodiscard]] std::vector<SideFile> sideFilesOf(const DryRun& run);

}  // namespace vessant
